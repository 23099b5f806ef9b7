// Coordinates, times, dates and addresses: what `out` held before decides nothing, and where the
// header says so, it is left untouched.
#include <cmath>
#include <sstream>

#include "fuzz/target.h"
#include "kalo/nmea/nmeaField.h"
#include "kalo/util/ipAddress.h"
#include "kalo/util/stringUtil.h"

namespace {

using fuzz::require;
using kalo::nmeaField_t;

template <typename T>
bool check(const nmeaField_t& field, bool (nmeaField_t::*decode)(T&) const, T& out) {
    T other = 77;
    out = 78;
    const bool isRead = (field.*decode)(out);
    require((field.*decode)(other) == isRead, "the value before does not matter");
    require(isRead ? fuzz::hasSameBits(out, other) : out == 78 && other == 77,
            "equal values, or none and nothing touched");
    return isRead;
}

// What the header says of an address, with a stream.
bool readAddress(const std::string& text, unsigned& out) {
    std::istringstream stream(text);
    out = 0;
    for (int i = 0; i < 4; ++i) {
        char dot = '.';
        unsigned octet = 0;
        if ((i > 0 && (!(stream >> dot) || dot != '.')) || (stream >> std::ws).peek() == '-' ||
            !(stream >> octet) || octet > 255) {
            return false;
        }
        out = out * 256 + octet;
    }
    return true;
}

// A latitude by the decoders of numbers.
bool readLatitude(const std::string& text, double& out) {
    unsigned degrees = 0;
    double minutes = 0;
    if (text.size() < 3 || !kalo::decode(text.substr(0, 2), degrees, 10) ||
        !kalo::decode(text.substr(2), minutes) || minutes < 0) {
        return false;
    }
    constexpr double pi = 3.141592653589793;
    out = (degrees + minutes / 60) * pi / 180;
    return true;
}

bool readTime(const std::string& text, kalo::timeOfDay_t& out) {
    return text.size() >= 5 && kalo::decode(text.substr(0, 2), out.hour, 10) &&
           kalo::decode(text.substr(2, 2), out.minute, 10) &&
           kalo::decode(text.substr(4), out.second);
}

void checkComparisons(const nmeaField_t& field, const std::string& text) {
    for (std::size_t i = 0; i <= text.size(); ++i) {
        const std::string rest = text.substr(i);
        require(field.endsWith(rest) && field.startsWith(text.substr(0, i)), "its own ends");
        require(field.startsWith(rest) == (text.compare(0, rest.size(), rest) == 0), "its start");
        require(!field.startsWith(text + '0') && !field.endsWith('0' + text), "not a longer text");
        require((field == rest) == (i == 0) && (field != rest) == (i != 0), "equal to itself only");
    }
}

bool isSame(const kalo::timeOfDay_t& left, const kalo::timeOfDay_t& right) {
    return left.hour == right.hour && left.minute == right.minute &&
           fuzz::hasSameBits(left.second, right.second);
}

bool isSame(const kalo::date_t& left, const kalo::date_t& right) {
    return left.year == right.year && left.month == right.month && left.day == right.day;
}

} // namespace

void fuzz::fields(std::string_view input) {
    const nmeaField_t field(input.data(), input.size());
    const nmeaField_t eastern('0' + std::string(input));
    double latitude = 0;
    double longitude = 0;
    double value = 0;
    char letter = 0;
    const bool isLatitude = check(field, &nmeaField_t::decodeLatitude, latitude);
    double expected = 0;
    require(readLatitude(std::string(input), expected) == isLatitude &&
                (!isLatitude || std::fabs(latitude - expected) <= 1e-15 * expected),
            "the latitude of the page");
    require(!isLatitude || (latitude >= 0 && std::isfinite(latitude)), "never negative");
    const bool isLongitude = check(eastern, &nmeaField_t::decodeLongitude, longitude);
    const bool hasDigit = !input.empty() && input[0] >= '0' && input[0] <= '9';
    require(!hasDigit || (isLatitude == isLongitude && (!isLatitude || latitude == longitude)),
            "a longitude has one digit more");
    require(check(field, &nmeaField_t::decodeNS, value) == (input == "N" || input == "S") &&
                (input != "N" || value == 1) && (input != "S" || value == -1),
            "N, S");
    require(check(field, &nmeaField_t::decodeEW, value) == (input == "E" || input == "W") &&
                (input != "E" || value == 1) && (input != "W" || value == -1),
            "E, W");
    require(check<char>(field, &nmeaField_t::decode, letter) == (input.size() == 1), "one byte");
    check(field, &nmeaField_t::decodeAsRadians, value);

    kalo::timeOfDay_t time, sameTime{77, 77, 77};
    const bool isTime = field.decodeHHMMSS(time);
    require(field.decodeHHMMSS(sameTime) == isTime && (!isTime || isSame(time, sameTime)),
            "the same time");
    kalo::timeOfDay_t readByParts;
    require(readTime(std::string(input), readByParts) == isTime &&
                (!isTime || isSame(time, readByParts)),
            "two digits for each part");
    kalo::date_t date, sameDate{77, 77, 77};
    const bool isDate = field.decodeDDMMYY(date, 70);
    require(field.decodeDDMMYY(sameDate, 70) == isDate && (!isDate || isSame(date, sameDate)),
            "the same date");
    require(!isDate || input.size() == 6, "a date has six characters");

    if (input.size() < 100) { // it takes the square of the length
        checkComparisons(field, std::string(input));
    }
    unsigned address = 0;
    unsigned byStream = 0;
    const bool isAddress = field.decodeIpv4Address(address);
    require(readAddress(std::string(input), byStream) == isAddress &&
                (!isAddress || address == byStream),
            "the address of the stream");
    if (check(field, &nmeaField_t::decodeIpv4Address, address)) {
        std::ostringstream text;
        text << kalo::ipAddress_t(address);
        unsigned again = 0;
        require(nmeaField_t(text.str()).decodeIpv4Address(again) && again == address,
                "an address that was written is read again");
    }
}
