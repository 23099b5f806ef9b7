#include "kalo/sensors/atsAsciiMsg.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "kalo/time/timeUtil.h"
#include "kalo/util/numberText.h"
#include "kalo/util/stringUtil.h"
#include "kalo/util/units.h"

namespace kalo {

namespace {

constexpr unsigned slotCount = 20;
constexpr unsigned positionalCount = 4;

enum slot_t : unsigned {
    slotDay = 0,
    slotMonth = 1,
    slotYear = 2,
    slotTime = 3,
    slotBeacon = 4,
    slotBeaconX = 5,
    slotBeaconY = 6,
    slotBeaconDepth = 7,
    slotVesselPitch = 8,
    slotVesselRoll = 9,
    slotVesselHeading = 10,
    slotErrorCode = 11,
    slotAnglePitch = 12,
    slotAngleRoll = 13,
    slotCurrentSpeed = 14,
    slotCurrentDirection = 15,
    slotPositionX = 16,
    slotPositionY = 17,
    slotPositionHdop = 18,
    slotPositionQuality = 19
};

// A tag has one or two letters: these and their count as one number, which is compared at once. 0
// is no tag's.
constexpr unsigned tagCode(std::string_view tag) {
    unsigned code = static_cast<unsigned>(tag.size());
    for (const char c : tag) {
        code = code << 8 | static_cast<unsigned char>(c);
    }
    return tag.size() > 2 ? 0 : code;
}

struct fieldInfo_t {
    constexpr fieldInfo_t(unsigned ofSlot, std::string_view ofTag)
        : slot(ofSlot), tag(tagCode(ofTag)) {}

    unsigned slot;
    unsigned tag;
};

constexpr fieldInfo_t fieldInfo[] = {
    {slotBeacon, "B"},           {slotBeaconX, "X"},       {slotBeaconY, "Y"},
    {slotBeaconDepth, "D"},      {slotVesselPitch, "P"},   {slotVesselRoll, "R"},
    {slotVesselHeading, "H"},    {slotErrorCode, "E"},     {slotAnglePitch, "AP"},
    {slotAngleRoll, "AR"},       {slotCurrentSpeed, "CS"}, {slotCurrentDirection, "CD"},
    {slotPositionX, "SX"},       {slotPositionY, "SY"},    {slotPositionHdop, "SH"},
    {slotPositionQuality, "SQ"},
};

constexpr std::string_view monthNames[] = {"JAN", "FEB", "MAR", "APR", "MAY", "JUN",
                                           "JUL", "AUG", "SEP", "OCT", "NOV", "DEC"};

constexpr std::string_view hexDigits = "0123456789ABCDEFabcdef";

// Cuts the next token off the front of `text`: separators are skipped, what follows up to the next
// one is the token, empty at the end.
std::string_view takeToken(std::string_view& text, char separator) {
    text.remove_prefix(std::min(text.find_first_not_of(separator), text.size()));
    const std::string_view token = text.substr(0, text.find(separator));
    text.remove_prefix(token.size());
    return token;
}

bool decodeUpTo(std::string_view text, unsigned most, unsigned& out) {
    return decodeText(text.data(), text.size(), out, 10) && out <= most;
}

// What is between the "*" and the end against the exclusive-or of what is before it.
bool isChecksum(std::string_view before, std::string_view behind) {
    const std::size_t digits = std::min(behind.find_first_not_of(hexDigits), behind.size());
    unsigned stated = 0;
    if (digits != 2 || !decodeText(behind.data(), digits, stated, 16)) {
        return false;
    }
    unsigned computed = 0;
    for (const char c : before) {
        computed ^= static_cast<unsigned char>(c);
    }
    return stated == computed;
}

} // namespace

struct atsAsciiMsg_t::state_t {
    bool checksumError = false;
    std::array<std::string, slotCount> slots;

    void parse(std::string_view line);
};

// Positional tokens up to the first that is missing, then the tagged ones.
void atsAsciiMsg_t::state_t::parse(std::string_view line) {
    for (unsigned i = 0; i < positionalCount; ++i) {
        const std::string_view token = takeToken(line, ' ');
        if (token.empty()) {
            return;
        }
        slots[i] = token;
    }
    while (!line.empty()) {
        const std::string_view token = takeToken(line, ' ');
        const std::size_t colon = token.find(':');
        if (colon == std::string_view::npos) {
            continue;
        }
        const unsigned tag = tagCode(token.substr(0, colon));
        for (const fieldInfo_t& row : fieldInfo) {
            if (row.tag == tag) {
                slots[row.slot] = token.substr(colon + 1);
            }
        }
    }
}

atsAsciiMsg_t::atsAsciiMsg_t() : m_state(new state_t) {}

atsAsciiMsg_t::atsAsciiMsg_t(const char* data, std::size_t length) : atsAsciiMsg_t() {
    std::string_view line(data, length);
    const std::size_t star = line.find('*');
    if (star == std::string_view::npos) {
        line = line.substr(0, line.find_last_not_of("\r\n") + 1);
    } else {
        m_state->checksumError = !isChecksum(line.substr(0, star), line.substr(star + 1));
        line = line.substr(0, star);
    }
    m_state->parse(line);
}

atsAsciiMsg_t::atsAsciiMsg_t(const atsAsciiMsg_t& other) : atsAsciiMsg_t() { *this = other; }

atsAsciiMsg_t& atsAsciiMsg_t::operator=(const atsAsciiMsg_t& other) {
    if (this != &other) {
        *m_state = *other.m_state;
    }
    return *this;
}

atsAsciiMsg_t::~atsAsciiMsg_t() { delete m_state; }

bool atsAsciiMsg_t::checksumError() const { return m_state->checksumError; }

bool atsAsciiMsg_t::decodeDate(date_t& out) const {
    constexpr unsigned firstFullYear = 1970;
    constexpr unsigned lastDay = 31;
    unsigned year = 0;
    if (!decodeField(slotYear, year)) {
        return false;
    }
    if (year <= 99) {
        year = twoDigitYearToAD(year, defaultTwoDigitYearCutoff);
    } else if (year < firstFullYear) {
        return false;
    }
    const auto* month =
        std::find(std::begin(monthNames), std::end(monthNames), toUpper(m_state->slots[slotMonth]));
    unsigned day = 0;
    if (month == std::end(monthNames) || !decodeField(slotDay, day) || day > lastDay) {
        return false;
    }
    out.year = year;
    out.month = static_cast<std::uint32_t>(month - std::begin(monthNames)) + 1;
    out.day = day;
    return true;
}

bool atsAsciiMsg_t::decodeTimeOfDay(timeOfDay_t& out) const {
    std::string_view text = m_state->slots[slotTime];
    unsigned hour = 0;
    unsigned minute = 0;
    unsigned second = 0;
    unsigned milliseconds = 0;
    if (!decodeUpTo(takeToken(text, ':'), 23, hour) ||
        !decodeUpTo(takeToken(text, ':'), 59, minute) ||
        !decodeUpTo(takeToken(text, ':'), 59, second)) {
        return false;
    }
    const std::string_view fraction = takeToken(text, ':');
    if (!fraction.empty() && !decodeUpTo(fraction, 999, milliseconds)) {
        return false;
    }
    out.hour = hour;
    out.minute = minute;
    out.second = second + milliseconds / 1000.0;
    return true;
}

bool atsAsciiMsg_t::decodeField(unsigned slot, std::string& out) const {
    if (slot >= slotCount || m_state->slots[slot].empty()) {
        return false;
    }
    out = m_state->slots[slot];
    return true;
}

bool atsAsciiMsg_t::decodeField(unsigned slot, unsigned& out) const {
    return slot < slotCount && kalo::decode(m_state->slots[slot], out, 10);
}

bool atsAsciiMsg_t::decodeField(unsigned slot, double& out) const {
    return slot < slotCount && kalo::decode(m_state->slots[slot], out);
}

bool atsAsciiMsg_t::decodeAsRadians(unsigned slot, double& out) const {
    double degrees = 0;
    if (!decodeField(slot, degrees)) {
        return false;
    }
    out = radiansFromDegrees(degrees);
    return true;
}

bool atsAsciiMsg_t::decodeBeaconId(std::string& out) const { return decodeField(slotBeacon, out); }

bool atsAsciiMsg_t::decodeBeaconNumber(unsigned& out) const { return decodeField(slotBeacon, out); }

bool atsAsciiMsg_t::decodeBeaconX(double& out) const { return decodeField(slotBeaconX, out); }

bool atsAsciiMsg_t::decodeBeaconY(double& out) const { return decodeField(slotBeaconY, out); }

bool atsAsciiMsg_t::decodeBeaconDepth(double& out) const {
    return decodeField(slotBeaconDepth, out);
}

bool atsAsciiMsg_t::decodeVesselPitch(double& out) const {
    return decodeAsRadians(slotVesselPitch, out);
}

bool atsAsciiMsg_t::decodeVesselRoll(double& out) const {
    return decodeAsRadians(slotVesselRoll, out);
}

bool atsAsciiMsg_t::decodeVesselHeading(double& out) const {
    return decodeAsRadians(slotVesselHeading, out);
}

bool atsAsciiMsg_t::decodeErrorCode(std::string& out) const {
    return decodeField(slotErrorCode, out);
}

bool atsAsciiMsg_t::decodeAnglePitchTelemetry(double& out) const {
    return decodeAsRadians(slotAnglePitch, out);
}

bool atsAsciiMsg_t::decodeAngleRollTelemetry(double& out) const {
    return decodeAsRadians(slotAngleRoll, out);
}

bool atsAsciiMsg_t::decodeCurrentFlowSpeed(double& out) const {
    return decodeField(slotCurrentSpeed, out);
}

bool atsAsciiMsg_t::decodeCurrentFlowDirection(double& out) const {
    return decodeAsRadians(slotCurrentDirection, out);
}

bool atsAsciiMsg_t::decodeVesselPositionX(double& out) const {
    return decodeField(slotPositionX, out);
}

bool atsAsciiMsg_t::decodeVesselPositionY(double& out) const {
    return decodeField(slotPositionY, out);
}

bool atsAsciiMsg_t::decodeVesselPositionHdop(double& out) const {
    return decodeField(slotPositionHdop, out);
}

bool atsAsciiMsg_t::decodeVesselPositionQuality(unsigned& out) const {
    return decodeField(slotPositionQuality, out);
}

} // namespace kalo
