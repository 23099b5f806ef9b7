#include "bench/passes.h"

#include <cstring>
#include <memory>
#include <type_traits>

#include "kalo/kalo.h"
#include "kalo/nmea/sentences.h"

namespace {

using namespace kalo;

template <typename View, typename T>
T outputOf(bool (View::*)(T&) const);

template <auto accessor, typename View>
unsigned long decodeOne(const View& view) {
    decltype(outputOf(accessor)) out{};
    return (view.*accessor)(out) ? 1 : 0;
}

// How many of the accessors give a value.
template <auto... accessors, typename View>
unsigned long decodeAll(const View& view) {
    return (decodeOne<accessors>(view) + ...);
}

// Each view class of the list of sentences, with all its accessors.

unsigned long valuesOf(const ggaMsgBase_t& view) {
    return decodeAll<&ggaMsgBase_t::decodeTimeOfDay, &ggaMsgBase_t::decodeLatitude,
                     &ggaMsgBase_t::decodeLongitude, &ggaMsgBase_t::decodeQuality,
                     &ggaMsgBase_t::decodeSatCount, &ggaMsgBase_t::decodeHdop,
                     &ggaMsgBase_t::decodeGeoidalHeight, &ggaMsgBase_t::decodeGeoidalSeparation,
                     &ggaMsgBase_t::decodeDiffAge, &ggaMsgBase_t::decodeRefStationId>(view);
}

unsigned long valuesOf(const dbtMsg_t& view) { return decodeAll<&dbtMsg_t::decodeDepth>(view); }
unsigned long valuesOf(const dptMsg_t& view) { return decodeAll<&dptMsg_t::decodeDepth>(view); }
unsigned long valuesOf(const dtmMsg_t& view) {
    return decodeAll<&dtmMsg_t::decodeLocalDatum, &dtmMsg_t::decodeLocalDatumSubdivision,
                     &dtmMsg_t::decodeLatitudeOffset, &dtmMsg_t::decodeLongitudeOffset,
                     &dtmMsg_t::decodeAltitudeOffset, &dtmMsg_t::decodeReferenceDatum>(view);
}
unsigned long valuesOf(const gbsMsg_t& view) {
    return decodeAll<&gbsMsg_t::decodeTimeOfDay, &gbsMsg_t::decodeLatitudeError,
                     &gbsMsg_t::decodeLongitudeError, &gbsMsg_t::decodeAltitudeError,
                     &gbsMsg_t::decodeFailedSatId, &gbsMsg_t::decodeFailedSatProbability,
                     &gbsMsg_t::decodeFailedSatBias, &gbsMsg_t::decodeBiasStdDev>(view);
}
unsigned long valuesOf(const gllMsg_t& view) {
    return decodeAll<&gllMsg_t::decodeLatitude, &gllMsg_t::decodeLongitude,
                     &gllMsg_t::decodeTimeOfDay, &gllMsg_t::decodeValidity,
                     &gllMsg_t::decodeFixMode>(view);
}
unsigned long valuesOf(const gstMsg_t& view) {
    return decodeAll<&gstMsg_t::decodeTimeOfDay, &gstMsg_t::decodeRangeRms,
                     &gstMsg_t::decodeSemiMajor, &gstMsg_t::decodeSemiMinor,
                     &gstMsg_t::decodeOrientation, &gstMsg_t::decodeLatitudeError,
                     &gstMsg_t::decodeLongitudeError, &gstMsg_t::decodeAltitudeError>(view);
}
unsigned long valuesOf(const hdtMsg_t& view) { return decodeAll<&hdtMsg_t::decodeHeading>(view); }
unsigned long valuesOf(const mwdMsg_t& view) {
    return decodeAll<&mwdMsg_t::decodeTrueWindDirection, &mwdMsg_t::decodeMagneticWindDirection,
                     &mwdMsg_t::decodeWindSpeed>(view);
}
unsigned long valuesOf(const mwvMsg_t& view) {
    return decodeAll<&mwvMsg_t::decodeWindDirection, &mwvMsg_t::decodeReference,
                     &mwvMsg_t::decodeWindSpeed, &mwvMsg_t::decodeValidity>(view);
}
unsigned long valuesOf(const rmcMsg_t& view) {
    return decodeAll<&rmcMsg_t::decodeTimeOfDay, &rmcMsg_t::decodeValidity,
                     &rmcMsg_t::decodeLatitude, &rmcMsg_t::decodeLongitude,
                     &rmcMsg_t::decodeSpeedOverGround, &rmcMsg_t::decodeCourseOverGround,
                     &rmcMsg_t::decodeDate, &rmcMsg_t::decodeMagneticVariation,
                     &rmcMsg_t::decodeFixMode>(view);
}
unsigned long valuesOf(const rotMsg_t& view) {
    return decodeAll<&rotMsg_t::decodeRateOfTurn, &rotMsg_t::decodeValidity>(view);
}
unsigned long valuesOf(const thsMsg_t& view) {
    return decodeAll<&thsMsg_t::decodeHeading, &thsMsg_t::decodeValidity>(view);
}
unsigned long valuesOf(const vtgMsg_t& view) {
    return decodeAll<&vtgMsg_t::decodeTrueCourseOverGround,
                     &vtgMsg_t::decodeMagneticCourseOverGround, &vtgMsg_t::decodeSpeedOverGround,
                     &vtgMsg_t::decodeFixMode>(view);
}
unsigned long valuesOf(const zdaMsg_t& view) {
    return decodeAll<&zdaMsg_t::decodeTimeOfDay, &zdaMsg_t::decodeDate,
                     &zdaMsg_t::decodeLocalOffset>(view);
}
unsigned long valuesOf(const pzwbGstMsg_t& view) {
    return decodeAll<&pzwbGstMsg_t::decodeTimeOfDay, &pzwbGstMsg_t::decodeRangeRms,
                     &pzwbGstMsg_t::decodeSemiMajor, &pzwbGstMsg_t::decodeSemiMinor,
                     &pzwbGstMsg_t::decodeOrientation, &pzwbGstMsg_t::decodeLatitudeError,
                     &pzwbGstMsg_t::decodeLongitudeError, &pzwbGstMsg_t::decodeAltitudeError,
                     &pzwbGstMsg_t::decodeFtest>(view);
}
unsigned long valuesOf(const pzwbMdeMsg_t& view) {
    return decodeAll<&pzwbMdeMsg_t::decodeTimeOfDay, &pzwbMdeMsg_t::decodePrn,
                     &pzwbMdeMsg_t::decodeMeasType, &pzwbMdeMsg_t::decodeNoncentrality,
                     &pzwbMdeMsg_t::decodeMde, &pzwbMdeMsg_t::decodeLatitudeError,
                     &pzwbMdeMsg_t::decodeLongitudeError, &pzwbMdeMsg_t::decodeAltitudeError>(view);
}
unsigned long valuesOf(const psimLbpMsg_t& view) {
    return decodeAll<
        &psimLbpMsg_t::decodeTimeOfDay, &psimLbpMsg_t::decodeType, &psimLbpMsg_t::decodeStatus,
        &psimLbpMsg_t::decodeCoordType, &psimLbpMsg_t::decodeRawX, &psimLbpMsg_t::decodeRawY,
        &psimLbpMsg_t::decodeDepth, &psimLbpMsg_t::decodeSemiMajor, &psimLbpMsg_t::decodeSemiMinor,
        &psimLbpMsg_t::decodeOrientation, &psimLbpMsg_t::decodeRangeRms>(view);
}
unsigned long valuesOf(const psimSsbMsg_t& view) {
    return decodeAll<&psimSsbMsg_t::decodeTimeOfDay, &psimSsbMsg_t::decodeBeaconId,
                     &psimSsbMsg_t::decodeBeaconNumber, &psimSsbMsg_t::decodeStatus,
                     &psimSsbMsg_t::decodeErrorCode, &psimSsbMsg_t::decodeCoordType,
                     &psimSsbMsg_t::decodeOrientation, &psimSsbMsg_t::decodeFilterCode,
                     &psimSsbMsg_t::decodeRawX, &psimSsbMsg_t::decodeRawY,
                     &psimSsbMsg_t::decodeDepth, &psimSsbMsg_t::decodeExpectedAccuracy,
                     &psimSsbMsg_t::decodeAddInfoType, &psimSsbMsg_t::decodeRawAddInfo1,
                     &psimSsbMsg_t::decodeRawAddInfo2>(view);
}
unsigned long valuesOf(const ptpsrMsg_t& view) {
    return decodeAll<
        &ptpsrMsg_t::decodeSentenceFormatter, &ptpsrMsg_t::decodeTimeOfDay,
        &ptpsrMsg_t::decodeAttitudeAvailability, &ptpsrMsg_t::decodePOSAntennaPositionType,
        &ptpsrMsg_t::decodeHeading, &ptpsrMsg_t::decodeInclination,
        &ptpsrMsg_t::decodeSlopeDistance, &ptpsrMsg_t::decodeHeadingRMS,
        &ptpsrMsg_t::decodeInclinationRMS, &ptpsrMsg_t::decodeAzimuthOffset,
        &ptpsrMsg_t::decodeNumGPSSatellites, &ptpsrMsg_t::decodeNumGLONASSSatellites,
        &ptpsrMsg_t::decodeNumBeiDouSatellites, &ptpsrMsg_t::decodeNumGalileoSatellites,
        &ptpsrMsg_t::decodeNumOtherSatellites>(view);
}

// Lists, into a vector that keeps its memory as a caller's would.
unsigned long valuesOf(const gsaMsg_t& view) {
    static thread_local std::vector<unsigned> ids;
    ids.clear();
    return (view.decodeSatIds(ids) ? ids.size() : 0) +
           decodeAll<&gsaMsg_t::decodeManualMode, &gsaMsg_t::decodeFixMode, &gsaMsg_t::decodePdop,
                     &gsaMsg_t::decodeHdop, &gsaMsg_t::decodeVdop, &gsaMsg_t::decodeSignalId>(view);
}

unsigned long valuesOf(const gsvMsg_t& view) {
    unsigned number = 0;
    unsigned blocks = 0;
    double value = 0;
    unsigned long sum = decodeAll<&gsvMsg_t::decodeMessageCount, &gsvMsg_t::decodeMessageNumber,
                                  &gsvMsg_t::decodeTotalSatCount, &gsvMsg_t::decodeSignalId>(view);
    for (unsigned i = 0; view.decodeSatCount(blocks) && i < blocks; ++i) {
        sum += (view.decodeSatPrn(i, number) ? 1U : 0U) +
               (view.decodeSatElevation(i, value) ? 1U : 0U) +
               (view.decodeSatAzimuth(i, value) ? 1U : 0U) +
               (view.decodeSatSnr(i, value) ? 1U : 0U);
    }
    return sum;
}

template <typename View>
unsigned long onStack(const nmeaFormat_t& format) {
    return valuesOf(View(format));
}

template <typename View>
unsigned long ofView(const nmeaMsg_t& view) {
    return valuesOf(static_cast<const View&>(view));
}

struct row_t {
    const char* name;
    unsigned long (*onStack)(const nmeaFormat_t& format) = nullptr;
    unsigned long (*ofView)(const nmeaMsg_t& view) = nullptr;
};

// By the value of the type, from 1 on; without functions where there is no view.
constexpr auto rows = arrayOfSentences([](auto sentence) -> row_t {
    using view_t = typename decltype(sentence)::view_t;
    if constexpr (std::is_same_v<view_t, noView_t>) {
        return {sentence.name.data()};
    } else {
        return {sentence.name.data(), onStack<view_t>, ofView<view_t>};
    }
});

// Null for a type without a view.
const row_t* rowOf(nmeaMsgType_t type) {
    const row_t* row = type == msgTypeUnknown ? nullptr : &rows[static_cast<std::size_t>(type) - 1];
    return row != nullptr && row->onStack != nullptr ? row : nullptr;
}

unsigned long framingReused(const sentences_t& sentences) {
    nmeaFormat_t format;
    unsigned long sum = 0;
    for (const std::string_view text : sentences) {
        format.init(text.data(), text.size());
        sum += format.fieldCount();
    }
    return sum;
}

unsigned long framingFresh(const sentences_t& sentences) {
    unsigned long sum = 0;
    for (const std::string_view text : sentences) {
        sum += nmeaFormat_t(text.data(), text.size()).fieldCount();
    }
    return sum;
}

unsigned long valuesOnStack(const sentences_t& sentences) {
    nmeaFormat_t format;
    unsigned long sum = 0;
    for (const std::string_view text : sentences) {
        format.init(text.data(), text.size());
        const row_t* row = rowOf(format.type());
        sum += row == nullptr ? 1 : row->onStack(format);
    }
    return sum;
}

unsigned long valuesByCreate(const sentences_t& sentences) {
    nmeaFormat_t format;
    unsigned long sum = 0;
    for (const std::string_view text : sentences) {
        format.init(text.data(), text.size());
        const std::unique_ptr<nmeaMsg_t> view(nmeaMsg_t::create(format));
        sum += view == nullptr ? 1 : rowOf(view->type())->ofView(*view);
    }
    return sum;
}

// Frames a GSV sentence and offers it to the set of its talker.
unsigned long setAssembly(const sentences_t& sentences) {
    gsvSet_t set;
    nmeaFormat_t format;
    unsigned long complete = 0;
    for (const std::string_view text : sentences) {
        format.init(text.data(), text.size());
        set.decode(gsvMsg_t(format));
        complete += set.isComplete() ? 1 : 0;
    }
    return complete;
}

// One conversion each way for a sentence, over 40 years.
unsigned long gpsTimes(const sentences_t& sentences) {
    const gps2utc_t parameters{17, 18, 137, 7};
    double sum = 0;
    for (std::size_t i = 0; i < sentences.size(); ++i) {
        const gpsTime_t time(static_cast<unsigned>(i % 2000), static_cast<double>(i % 604800));
        sum += gpsTime_t(time.toUnix(), parameters).seconds;
    }
    return static_cast<unsigned long>(sum);
}

unsigned long motionValues(const sentences_t& records) {
    tss1Msg_t motion;
    unsigned long sum = 0;
    for (const std::string_view text : records) {
        motion.init(text.data(), text.size());
        sum += motion.validMask;
    }
    return sum;
}

unsigned long trackingValues(const sentences_t& records) {
    unsigned long sum = 0;
    for (const std::string_view text : records) {
        const atsAsciiMsg_t tracking(text.data(), text.size());
        date_t date;
        timeOfDay_t time;
        double value = 0;
        sum += (tracking.decodeDate(date) ? 1U : 0U) + (tracking.decodeTimeOfDay(time) ? 1U : 0U) +
               (tracking.decodeBeaconX(value) ? 1U : 0U) +
               (tracking.decodeBeaconY(value) ? 1U : 0U) +
               (tracking.decodeBeaconDepth(value) ? 1U : 0U) +
               (tracking.decodeVesselHeading(value) ? 1U : 0U);
    }
    return sum;
}

unsigned long tableValues(const sentences_t& records) {
    ntripStreamDecoder_t stream;
    unsigned long sum = 0;
    for (const std::string_view text : records) {
        auto length = static_cast<unsigned>(text.size());
        sum += decodeNtripRecordType(text.data(), length) == ntripRecordStream ? 1U : 0U;
        stream.init(text.data(), length);
        ntripCarrierType_t carrier{};
        float latitude = 0;
        sum += (stream.decodeCarrierType(carrier) ? 1U : 0U) +
               (stream.decodeField(9, latitude) ? 1U : 0U);
    }
    return sum;
}

} // namespace

unsigned long referencePass(const sentences_t& sentences) {
    unsigned long sum = 0;
    if (sentences.empty()) {
        return sum;
    }
    for (const std::string_view text : sentences) {
        const void* lineEnd = std::memchr(text.data(), '\n', text.size());
        const auto* const end = static_cast<const char*>(lineEnd);
        for (const char* at = text.data(); at != nullptr && at < end; ++sum) {
            at = static_cast<const char*>(std::memchr(at, ',', static_cast<std::size_t>(end - at)));
            at = at == nullptr ? nullptr : at + 1;
        }
        unsigned char sumOfBytes = 0;
        for (const char* at = text.data(); at < end; ++at) {
            sumOfBytes = static_cast<unsigned char>(sumOfBytes ^ static_cast<unsigned char>(*at));
            asm volatile("" : "+r"(sumOfBytes)); // byte by byte, whatever the compiler could do
        }
        sum += sumOfBytes;
    }
    return sum;
}

std::vector<pass_t> mixedPasses() {
    return {{"all", "framing, object re-used", framingReused},
            {"all", "framing, fresh object", framingFresh},
            {"all", "every value, view on the stack", valuesOnStack},
            {"all", "every value, through create", valuesByCreate}};
}

std::vector<pass_t> typePasses() {
    std::vector<pass_t> passes;
    for (const row_t& row : rows) {
        if (row.onStack != nullptr) {
            passes.push_back({row.name, "every value", valuesOnStack});
        }
    }
    passes.push_back({"GSV", "framing and set assembly", setAssembly});
    passes.push_back({"ZDA", "GPS time to Unix and back, one each", gpsTimes});
    passes.push_back({"TSS1", "every value", motionValues});
    passes.push_back({"ATS", "values", trackingValues});
    passes.push_back({"STR", "kind, fields and two values", tableValues});
    return passes;
}
