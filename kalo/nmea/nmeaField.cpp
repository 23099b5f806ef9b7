#include "kalo/nmea/nmeaField.h"

#include <sstream>

#include "kalo/time/dateTime.h"
#include "kalo/time/timeUtil.h"
#include "kalo/util/stringUtil.h"

namespace kalo {

namespace {

constexpr double pi = 3.141592653589793;

// Degrees of `degreeDigits` digits followed by minutes, as radians.
bool decodeCoordinate(const std::string& text, std::size_t degreeDigits, double& out) {
    if (text.size() <= degreeDigits) {
        return false;
    }
    unsigned degrees = 0;
    double minutes = 0;
    if (!kalo::decode(text.substr(0, degreeDigits), degrees, 10) ||
        !kalo::decode(text.substr(degreeDigits), minutes) || minutes < 0) {
        return false;
    }
    out = (degrees + minutes / 60) * pi / 180;
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

// One number of an address. A stream would wrap a negative one into the range.
bool extractOctet(std::istream& stream, unsigned& out) {
    stream >> std::ws;
    if (stream.peek() == '-') {
        return false;
    }
    stream >> out;
    return !stream.fail() && out <= 255;
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

bool nmeaField_t::decode(short& out, int base) const { return kalo::decode(m_text, out, base); }

bool nmeaField_t::decode(unsigned short& out, int base) const {
    return kalo::decode(m_text, out, base);
}

bool nmeaField_t::decode(int& out, int base) const { return kalo::decode(m_text, out, base); }

bool nmeaField_t::decode(unsigned& out, int base) const { return kalo::decode(m_text, out, base); }

bool nmeaField_t::decode(long long& out, int base) const { return kalo::decode(m_text, out, base); }

bool nmeaField_t::decode(unsigned long long& out, int base) const {
    return kalo::decode(m_text, out, base);
}

bool nmeaField_t::decode(float& out) const { return kalo::decode(m_text, out); }

bool nmeaField_t::decode(double& out) const { return kalo::decode(m_text, out); }

bool nmeaField_t::decodeLatitude(double& out) const { return decodeCoordinate(m_text, 2, out); }

bool nmeaField_t::decodeLongitude(double& out) const { return decodeCoordinate(m_text, 3, out); }

bool nmeaField_t::decodeNS(double& out) const { return decodeSign(*this, 'N', 'S', out); }

bool nmeaField_t::decodeEW(double& out) const { return decodeSign(*this, 'E', 'W', out); }

bool nmeaField_t::decodeAsRadians(double& out) const {
    double degrees = 0;
    if (!decode(degrees)) {
        return false;
    }
    out = pi * degrees / 180;
    return true;
}

bool nmeaField_t::decodeHHMMSS(timeOfDay_t& out) const {
    return m_text.size() >= 5 && kalo::decode(m_text.substr(0, 2), out.hour, 10) &&
           kalo::decode(m_text.substr(2, 2), out.minute, 10) &&
           kalo::decode(m_text.substr(4), out.second);
}

bool nmeaField_t::decodeDDMMYY(date_t& out, unsigned cutoff) const {
    if (m_text.size() != 6 || !kalo::decode(m_text.substr(0, 2), out.day, 10) ||
        !kalo::decode(m_text.substr(2, 2), out.month, 10) ||
        !kalo::decode(m_text.substr(4, 2), out.year, 10)) {
        return false;
    }
    out.year = twoDigitYearToAD(out.year, cutoff);
    return true;
}

bool nmeaField_t::decodeIpv4Address(unsigned& out) const {
    std::istringstream stream(m_text);
    unsigned address = 0;
    for (int i = 0; i < 4; ++i) {
        char dot = '.';
        unsigned octet = 0;
        if ((i > 0 && (!(stream >> dot) || dot != '.')) || !extractOctet(stream, octet)) {
            return false;
        }
        address = address << 8 | octet;
    }
    out = address;
    return true;
}

} // namespace kalo
