// What an ATS acoustic tracking record holds.
#pragma once

#include "kalo/sensors/atsAsciiMsg.h"
#include "tools/record/ownReaders.h"
#include "tools/record/valueRow.h"

struct trackingRecord_t {
    using view_t = kalo::atsAsciiMsg_t;
    static constexpr std::string_view name = "ATS";
    static constexpr std::string_view meaning = "acoustic tracking";
    static constexpr std::tuple rows{
        row_t<ownTime>{"timeOfDay", noUnit, fields(3), "UTC time", "token 4"},
        row_t<ownDate>{"date", noUnit, fields(0, 1, 2), "UTC date", "token 1-3"},
        row_t<&view_t::decodeBeaconId>{"beaconId", noUnit, fields(4), "identifier of the beacon",
                                       "B"},
        row_t<&view_t::decodeBeaconNumber>{"beaconNumber", noUnit, fields(4),
                                           "the identifier, if it is a number", "B"},
        row_t<&view_t::decodeBeaconX>{"beaconX", asSent, fields(5), "position of the beacon", "X"},
        row_t<&view_t::decodeBeaconY>{"beaconY", asSent, fields(6), "position of the beacon", "Y"},
        row_t<&view_t::decodeBeaconDepth>{"beaconDepth", asSent, fields(7), "", "D"},
        row_t<&view_t::decodeVesselPitch>{"vesselPitch", angle, fields(8), "", "P"},
        row_t<&view_t::decodeVesselRoll>{"vesselRoll", angle, fields(9), "", "R"},
        row_t<&view_t::decodeVesselHeading>{"vesselHeading", angle, fields(10), "", "H"},
        row_t<&view_t::decodeErrorCode>{"errorCode", noUnit, fields(11), "code, as sent", "E"},
        row_t<&view_t::decodeAnglePitchTelemetry>{"anglePitchTelemetry", angle, fields(12),
                                                  "pitch, sent by telemetry", "AP"},
        row_t<&view_t::decodeAngleRollTelemetry>{"angleRollTelemetry", angle, fields(13),
                                                 "roll, sent by telemetry", "AR"},
        row_t<&view_t::decodeCurrentFlowSpeed>{"currentFlowSpeed", asSent, fields(14),
                                               "of the water current", "CS"},
        row_t<&view_t::decodeCurrentFlowDirection>{"currentFlowDirection", angle, fields(15),
                                                   "of the water current", "CD"},
        row_t<&view_t::decodeVesselPositionX>{"vesselPositionX", asSent, fields(16),
                                              "position of the vessel", "SX"},
        row_t<&view_t::decodeVesselPositionY>{"vesselPositionY", asSent, fields(17),
                                              "position of the vessel", "SY"},
        row_t<&view_t::decodeVesselPositionHdop>{"vesselPositionHdop", noUnit, fields(18),
                                                 "horizontal dilution of precision", "SH"},
        row_t<&view_t::decodeVesselPositionQuality>{"vesselPositionQuality", noUnit, fields(19),
                                                    "code, as sent", "SQ"}};
};
