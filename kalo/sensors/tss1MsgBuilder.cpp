#include "kalo/sensors/tss1MsgBuilder.h"

#include <cmath>
#include <cstdio>
#include <limits>

#include "kalo/sensors/tss1Letters.h"

namespace kalo {

namespace {

// A double on every platform: x87 arithmetic keeps more digits in its registers, with which a count
// falls short of the one that was decoded.
double quotientOf(double value, double scale) {
    const volatile double quotient = value / scale;
    return quotient;
}

// Truncated toward zero, and to what `Count` holds.
template <typename Count>
Count countsOf(double value, double scale) {
    const double counts = quotientOf(value, scale);
    if (std::isnan(counts)) {
        return 0;
    }
    if (counts <= static_cast<double>(std::numeric_limits<Count>::min())) {
        return std::numeric_limits<Count>::min();
    }
    if (counts >= static_cast<double>(std::numeric_limits<Count>::max())) {
        return std::numeric_limits<Count>::max();
    }
    return static_cast<Count>(counts);
}

void appendHex(std::string& record, int digits, std::uint32_t count) {
    char text[9];
    static_cast<void>(
        std::snprintf(text, sizeof text, "%0*lX", digits, static_cast<unsigned long>(count)));
    record += text;
}

// The sign column and the digits, of which a value beyond its range has more than four.
void appendSigned(std::string& record, double value, double scale) {
    char digits[std::numeric_limits<double>::max_exponent10 + 2];
    static_cast<void>(
        std::snprintf(digits, sizeof digits, "%.0f", quotientOf(std::fabs(value), scale)));
    record += value < 0 ? '-' : ' ';
    const std::string text = digits;
    constexpr std::size_t width = 4;
    record.append(text.size() < width ? width - text.size() : 0, '0');
    record += text;
}

} // namespace

void tss1MsgBuilder_t::setRoll(double radians) {
    roll = radians;
    validMask |= tss1Msg_t::validRoll;
}

void tss1MsgBuilder_t::setPitch(double radians) {
    pitch = radians;
    validMask |= tss1Msg_t::validPitch;
}

void tss1MsgBuilder_t::setHeave(double metres) {
    heave = metres;
    validMask |= tss1Msg_t::validHeave;
}

void tss1MsgBuilder_t::setHorizontalAcceleration(double metresPerSecondSquared) {
    hAccel = metresPerSecondSquared;
    validMask |= tss1Msg_t::validHAccel;
}

void tss1MsgBuilder_t::setVerticalAcceleration(double metresPerSecondSquared) {
    vAccel = metresPerSecondSquared;
    validMask |= tss1Msg_t::validVAccel;
}

void tss1MsgBuilder_t::setStatus(tss1Msg_t::status_t mode) {
    status = mode;
    validMask |= tss1Msg_t::validStatus;
}

void tss1MsgBuilder_t::reset() { *this = tss1MsgBuilder_t(); }

std::string tss1MsgBuilder_t::build() const {
    const auto statusIndex = static_cast<unsigned>(status);
    if (validMask != tss1Msg_t::validAll || statusIndex >= tss1StatusCount) {
        return {};
    }
    const auto horizontal = countsOf<std::uint32_t>(hAccel, tss1Msg_t::hAccelScale);
    const auto vertical = countsOf<std::int32_t>(vAccel, tss1Msg_t::vAccelScale);
    std::string record = ":";
    appendHex(record, 2, horizontal);
    appendHex(record, 4, static_cast<std::uint32_t>(vertical < 0 ? vertical + 65536 : vertical));
    record += ' ';
    appendSigned(record, heave, tss1Msg_t::heaveScale);
    record += tss1StatusLetters[statusIndex];
    appendSigned(record, roll, tss1Msg_t::rollPitchScale);
    record += ' ';
    appendSigned(record, pitch, tss1Msg_t::rollPitchScale);
    record += "\r\n";
    return record;
}

} // namespace kalo
