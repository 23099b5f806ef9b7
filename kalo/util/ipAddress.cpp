#include "kalo/util/ipAddress.h"

#include <ostream>

namespace kalo {

ipAddress_t::ipAddress_t(std::uint32_t address) : m_address(address) {}

std::uint32_t ipAddress_t::address() const { return m_address; }

} // namespace kalo

std::ostream& operator<<(std::ostream& stream, const kalo::ipAddress_t& address) {
    const std::uint32_t bits = address.address();
    return stream << (bits >> 24) << '.' << (bits >> 16 & 0xFF) << '.' << (bits >> 8 & 0xFF) << '.'
                  << (bits & 0xFF);
}
