#include "kalo/nmea/nmeaField.h"

#include <charconv>
#include <sstream>

#include "kalo/time/timeUtil.h"
#include "kalo/util/numberText.h"
#include "kalo/util/units.h"

namespace kalo {

namespace {

// Degrees of `degreeDigits` digits followed by minutes, as radians.
bool decodeCoordinate(const std::string& text, std::size_t degreeDigits, double& out) {
    if (text.size() <= degreeDigits) {
        return false;
    }
    unsigned degrees = 0;
    double minutes = 0;
    if (!decodeText(text.data(), degreeDigits, degrees, 10) ||
        !decodeText(text.data() + degreeDigits, text.size() - degreeDigits, minutes) ||
        minutes < 0) {
        return false;
    }
    out = radiansFromDegrees(degrees + minutes / 60);
    return true;
}

bool decodeSign(const nmeaField_t& field, char positive, char negative, double& out) {
    char letter = 0;
    if (!field.decode(letter) || (letter != positive && letter != negative)) {
        return false;
    }
    out = letter == positive ? 1.0 : -1.0;
    return true;
}

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

bool nmeaField_t::decode(char& out) const {
    if (m_text.size() != 1) {
        return false;
    }
    out = m_text[0];
    return true;
}

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

bool nmeaField_t::decode(double& out) const {
    return decodeText(m_text.data(), m_text.size(), out);
}

bool nmeaField_t::decodeLatitude(double& out) const { return decodeCoordinate(m_text, 2, out); }

bool nmeaField_t::decodeLongitude(double& out) const { return decodeCoordinate(m_text, 3, out); }

bool nmeaField_t::decodeNS(double& out) const { return decodeSign(*this, 'N', 'S', out); }

bool nmeaField_t::decodeEW(double& out) const { return decodeSign(*this, 'E', 'W', out); }

bool nmeaField_t::decodeAsRadians(double& out) const {
    double degrees = 0;
    if (!decode(degrees)) {
        return false;
    }
    out = radiansFromDegrees(degrees);
    return true;
}

bool nmeaField_t::decodeHHMMSS(timeOfDay_t& out) const {
    return m_text.size() >= 5 && decodeText(m_text.data(), 2, out.hour, 10) &&
           decodeText(m_text.data() + 2, 2, out.minute, 10) &&
           decodeText(m_text.data() + 4, m_text.size() - 4, out.second);
}

bool nmeaField_t::decodeDDMMYY(date_t& out, unsigned cutoff) const {
    if (m_text.size() != 6 || !decodeText(m_text.data(), 2, out.day, 10) ||
        !decodeText(m_text.data() + 2, 2, out.month, 10) ||
        !decodeText(m_text.data() + 4, 2, out.year, 10)) {
        return false;
    }
    out.year = twoDigitYearToAD(out.year, cutoff);
    return true;
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
