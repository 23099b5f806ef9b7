// Coordinates, times, dates and addresses: what `out` held before decides nothing, and where the
// header says so, it is left untouched.
#include <cmath>
#include <sstream>

#include "fuzz/target.h"
#include "kalo/nmea/nmeaField.h"
#include "kalo/util/ipAddress.h"

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
    require(!isLatitude || (latitude >= 0 && std::isfinite(latitude)), "never negative");
    const bool isLongitude = check(eastern, &nmeaField_t::decodeLongitude, longitude);
    const bool hasDigit = !input.empty() && input[0] >= '0' && input[0] <= '9';
    require(!hasDigit || (isLatitude == isLongitude && (!isLatitude || latitude == longitude)),
            "a longitude has one digit more");
    require(check(field, &nmeaField_t::decodeNS, value) == (input == "N" || input == "S"), "N, S");
    require(check(field, &nmeaField_t::decodeEW, value) == (input == "E" || input == "W"), "E, W");
    require(check<char>(field, &nmeaField_t::decode, letter) == (input.size() == 1), "one byte");
    check(field, &nmeaField_t::decodeAsRadians, value);

    kalo::timeOfDay_t time, sameTime{77, 77, 77};
    const bool isTime = field.decodeHHMMSS(time);
    require(field.decodeHHMMSS(sameTime) == isTime && (!isTime || isSame(time, sameTime)),
            "the same time");
    kalo::date_t date, sameDate{77, 77, 77};
    const bool isDate = field.decodeDDMMYY(date, 70);
    require(field.decodeDDMMYY(sameDate, 70) == isDate && (!isDate || isSame(date, sameDate)),
            "the same date");
    require(!isDate || input.size() == 6, "a date has six characters");

    unsigned address = 0;
    if (check(field, &nmeaField_t::decodeIpv4Address, address)) {
        std::ostringstream text;
        text << kalo::ipAddress_t(address);
        unsigned again = 0;
        require(nmeaField_t(text.str()).decodeIpv4Address(again) && again == address,
                "an address that was written is read again");
    }
}
