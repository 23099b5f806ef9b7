// An IPv4 address, as `nmeaField_t::decodeIpv4Address` gives it, and its text.
#pragma once

#include <cstdint>
#include <iosfwd>

#include "kalo/export.h"

namespace kalo {

/// An IPv4 address as a number whose most significant byte is the first of the dotted
/// form: 10.0.0.1 is 0x0A000001. A plain value.
class KALO_EXPORT ipAddress_t {
public:
    explicit ipAddress_t(std::uint32_t address);

    std::uint32_t address() const;

private:
    std::uint32_t m_address;
};

} // namespace kalo

/// Writes the dotted form, each part with the number formatting of the stream.
/// Caveat: the operator stands outside all namespaces. Inside a namespace with output operators of
/// its own it is not found: put `using ::operator<<;` there.
KALO_EXPORT std::ostream& operator<<(std::ostream& stream, const kalo::ipAddress_t& address);
