#include "kalo/nmea/nmeaField.h"

#include <charconv>
#include <sstream>

#include "kalo/nmea/fieldText.h"

namespace kalo {

namespace {

// The four numbers of an address by the rules of streams, which accept white space around them.
bool extractAddress(const std::string& text, unsigned (&octets)[4]) {
    std::istringstream stream(text);
    for (unsigned& octet : octets) {
        char dot = '.';
        if (&octet != octets && (!(stream >> dot) || dot != '.')) {
            return false;
        }
        // A stream would wrap a negative number into the range.
        stream >> std::ws;
        if (stream.peek() == '-' || !(stream >> octet)) {
            return false;
        }
    }
    return true;
}

// The same without a stream, for an address without white space and signs.
bool parseAddress(const std::string& text, unsigned (&octets)[4]) {
    const char* at = text.data();
    const char* const end = at + text.size();
    for (unsigned& octet : octets) {
        if (&octet != octets && (at == end || *at++ != '.')) {
            return false;
        }
        const std::from_chars_result result = std::from_chars(at, end, octet);
        if (result.ec != std::errc()) {
            return false;
        }
        at = result.ptr;
    }
    return true;
}

} // namespace

nmeaField_t::nmeaField_t(const char* data, std::size_t length) : m_text(data, length) {}

nmeaField_t::nmeaField_t(const std::string& text) : m_text(text) {}

void nmeaField_t::init(const char* data, std::size_t length) { m_text.assign(data, length); }

nmeaField_t& nmeaField_t::operator=(const std::string& text) {
    m_text = text;
    return *this;
}

bool nmeaField_t::isEmpty() const { return m_text.empty(); }

const char* nmeaField_t::data() const { return m_text.data(); }

std::size_t nmeaField_t::size() const { return m_text.size(); }

const std::string& nmeaField_t::toString() const { return m_text; }

bool nmeaField_t::operator==(const std::string& text) const { return m_text == text; }

bool nmeaField_t::operator!=(const std::string& text) const { return m_text != text; }

bool nmeaField_t::startsWith(const std::string& text) const {
    return m_text.compare(0, text.size(), text) == 0;
}

bool nmeaField_t::endsWith(const std::string& text) const {
    return m_text.size() >= text.size() &&
           m_text.compare(m_text.size() - text.size(), text.size(), text) == 0;
}

bool nmeaField_t::decode(std::string& out) const {
    out = m_text;
    return true;
}

bool nmeaField_t::decode(char& out) const { return decodeLetterText(m_text, out); }

bool nmeaField_t::decode(short& out, int base) const {
    return decodeText(m_text.data(), m_text.size(), out, base);
}

bool nmeaField_t::decode(unsigned short& out, int base) const {
    return decodeText(m_text.data(), m_text.size(), out, base);
}

bool nmeaField_t::decode(int& out, int base) const {
    return decodeText(m_text.data(), m_text.size(), out, base);
}

bool nmeaField_t::decode(unsigned& out, int base) const {
    return decodeText(m_text.data(), m_text.size(), out, base);
}

bool nmeaField_t::decode(long long& out, int base) const {
    return decodeText(m_text.data(), m_text.size(), out, base);
}

bool nmeaField_t::decode(unsigned long long& out, int base) const {
    return decodeText(m_text.data(), m_text.size(), out, base);
}

bool nmeaField_t::decode(float& out) const { return decodeText(m_text.data(), m_text.size(), out); }

bool nmeaField_t::decode(double& out) const { return decodeRealText(m_text, out); }

bool nmeaField_t::decodeLatitude(double& out) const { return decodeLatitudeText(m_text, out); }

bool nmeaField_t::decodeLongitude(double& out) const { return decodeLongitudeText(m_text, out); }

bool nmeaField_t::decodeNS(double& out) const { return decodeNSText(m_text, out); }

bool nmeaField_t::decodeEW(double& out) const { return decodeEWText(m_text, out); }

bool nmeaField_t::decodeAsRadians(double& out) const { return decodeRadiansText(m_text, out); }

bool nmeaField_t::decodeHHMMSS(timeOfDay_t& out) const { return decodeHHMMSSText(m_text, out); }

bool nmeaField_t::decodeDDMMYY(date_t& out, unsigned cutoff) const {
    return decodeDDMMYYText(m_text, out, cutoff);
}

bool nmeaField_t::decodeIpv4Address(unsigned& out) const {
    unsigned octets[4] = {};
    if ((!isClassicLocale() || !parseAddress(m_text, octets)) && !extractAddress(m_text, octets)) {
        return false;
    }
    unsigned address = 0;
    for (const unsigned octet : octets) {
        if (octet > 255) {
            return false;
        }
        address = address << 8 | octet;
    }
    out = address;
    return true;
}

} // namespace kalo
