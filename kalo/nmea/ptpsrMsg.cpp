#include "kalo/nmea/ptpsrMsg.h"

#include "kalo/nmea/fieldAccess.h"

namespace kalo {

ptpsrMsg_t::ptpsrMsg_t(const nmeaFormat_t& format) : nmeaMsg_t(msgTypePtpsr, format) {}

ptpsrMsg_t::~ptpsrMsg_t() = default;

bool ptpsrMsg_t::decodeTimeOfDay(timeOfDay_t& out) const { return decodeTime(*this, 2, out); }

bool ptpsrMsg_t::decodeSentenceFormatter(std::string& out) const {
    return decodeString(*this, 1, out);
}

bool ptpsrMsg_t::decodeAttitudeAvailability(char& out) const { return decodeLetter(*this, 3, out); }

bool ptpsrMsg_t::decodePOSAntennaPositionType(char& out) const {
    return decodeLetter(*this, 4, out);
}

bool ptpsrMsg_t::decodeHeading(double& out) const { return decodeReal(*this, 5, out); }

bool ptpsrMsg_t::decodeInclination(double& out) const { return decodeReal(*this, 6, out); }

bool ptpsrMsg_t::decodeSlopeDistance(double& out) const { return decodeReal(*this, 7, out); }

bool ptpsrMsg_t::decodeHeadingRMS(double& out) const { return decodeReal(*this, 8, out); }

bool ptpsrMsg_t::decodeInclinationRMS(double& out) const { return decodeRadians(*this, 9, out); }

bool ptpsrMsg_t::decodeAzimuthOffset(double& out) const { return decodeRadians(*this, 10, out); }

bool ptpsrMsg_t::decodeNumGPSSatellites(unsigned short& out) const {
    return decodeField(*this, 11, decodeShortText, out);
}

bool ptpsrMsg_t::decodeNumGLONASSSatellites(unsigned short& out) const {
    return decodeField(*this, 12, decodeShortText, out);
}

bool ptpsrMsg_t::decodeNumBeiDouSatellites(unsigned short& out) const {
    return decodeField(*this, 13, decodeShortText, out);
}

bool ptpsrMsg_t::decodeNumGalileoSatellites(unsigned short& out) const {
    return decodeField(*this, 14, decodeShortText, out);
}

bool ptpsrMsg_t::decodeNumOtherSatellites(unsigned short& out) const {
    return decodeField(*this, 15, decodeShortText, out);
}

} // namespace kalo
