#include "kalo/sensors/tss1Msg.h"

#include <cstring>

#include "kalo/sensors/tss1Letters.h"
#include "kalo/util/numberText.h"

namespace kalo {

namespace {

constexpr std::size_t recordLength = 25;

// A sign column and four digits.
bool decodeSigned(const char* field, double scale, double& out) {
    constexpr std::size_t length = 5;
    double count = 0;
    if ((field[0] != ' ' && field[0] != '-') || !decodeText(field, length, count)) {
        return false;
    }
    out = count * scale;
    return true;
}

bool give(bool present, double value, double& out) {
    if (present) {
        out = value;
    }
    return present;
}

} // namespace

void tss1Msg_t::init(const char* data, std::size_t length) {
    validMask = 0;
    if (length < recordLength || data[0] != ':') {
        return;
    }
    validMask |= decodeRoll(data + 14) ? validRoll : 0;
    validMask |= decodePitch(data + 20) ? validPitch : 0;
    validMask |= decodeHeave(data + 8) ? validHeave : 0;
    validMask |= decodeHAccel(data + 1) ? validHAccel : 0;
    validMask |= decodeVAccel(data + 3) ? validVAccel : 0;
    validMask |= decodeStatus(data + 13) ? validStatus : 0;
}

bool tss1Msg_t::getRoll(double& out) const { return give((validMask & validRoll) != 0, roll, out); }

bool tss1Msg_t::getPitch(double& out) const {
    return give((validMask & validPitch) != 0, pitch, out);
}

bool tss1Msg_t::getHeave(double& out) const {
    return give((validMask & validHeave) != 0, heave, out);
}

bool tss1Msg_t::getHorizontalAcceleration(double& out) const {
    return give((validMask & validHAccel) != 0, hAccel, out);
}

bool tss1Msg_t::getVerticalAcceleration(double& out) const {
    return give((validMask & validVAccel) != 0, vAccel, out);
}

bool tss1Msg_t::getStatus(status_t& out) const {
    if ((validMask & validStatus) == 0) {
        return false;
    }
    out = status;
    return true;
}

bool tss1Msg_t::decodeRoll(const char* field) { return decodeSigned(field, rollPitchScale, roll); }

bool tss1Msg_t::decodePitch(const char* field) {
    return decodeSigned(field, rollPitchScale, pitch);
}

bool tss1Msg_t::decodeHeave(const char* field) { return decodeSigned(field, heaveScale, heave); }

bool tss1Msg_t::decodeHAccel(const char* field) {
    unsigned count = 0;
    if (!decodeText(field, 2, count, 16)) {
        return false;
    }
    hAccel = count * hAccelScale;
    return true;
}

bool tss1Msg_t::decodeVAccel(const char* field) {
    unsigned count = 0;
    if (!decodeText(field, 4, count, 16)) {
        return false;
    }
    const int signedCount = static_cast<int>(count) - (count > 32767 ? 65536 : 0);
    vAccel = signedCount * vAccelScale;
    return true;
}

bool tss1Msg_t::decodeStatus(const char* field) {
    const void* letter = std::memchr(tss1StatusLetters, *field, tss1StatusCount);
    if (letter == nullptr) {
        return false;
    }
    status = static_cast<status_t>(static_cast<const char*>(letter) - tss1StatusLetters);
    return true;
}

} // namespace kalo
