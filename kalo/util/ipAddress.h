// Writes an IPv4 address, as `nmeaField_t::decodeIpv4Address` gives it, in dotted form.
#pragma once

#include <cstdint>
#include <iosfwd>

#include "kalo/export.h"

namespace kalo {

/// An IPv4 address as a number. Its most significant byte is the first number of the dotted form:
/// 10.0.0.1 is 0x0A000001. A plain value.
class KALO_EXPORT ipAddress_t {
public:
    explicit ipAddress_t(std::uint32_t address);

    std::uint32_t address() const;

private:
    std::uint32_t m_address;
};

} // namespace kalo

/// Writes the dotted form. The stream's number format applies to each part.
///
/// Caveat: the operator is declared outside all namespaces. A namespace with output operators of
/// its own hides it. Declare this there:
///
///     using ::operator<<;
KALO_EXPORT std::ostream& operator<<(std::ostream& stream, const kalo::ipAddress_t& address);
