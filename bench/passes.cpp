#include "bench/passes.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <stdexcept>

#include "kalo/kalo.h"

namespace {

using namespace kalo;

template <typename View, typename T>
T outputOf(bool (View::*)(T&) const);

template <auto accessor, typename View>
unsigned long decodes(const View& view) {
    decltype(outputOf(accessor)) out{};
    return (view.*accessor)(out) ? 1 : 0;
}

// A type with all its accessors.
template <typename View, auto... accessors>
struct values_t {
    static unsigned long ofView(const nmeaMsg_t& msg) {
        const View& view = static_cast<const View&>(msg);
        return (decodes<accessors, View>(view) + ...);
    }
    static unsigned long onStack(const nmeaFormat_t& format) { return ofView(View(format)); }
};

template <typename Gga>
using gga_t =
    values_t<Gga, &Gga::decodeTimeOfDay, &Gga::decodeLatitude, &Gga::decodeLongitude,
             &Gga::decodeQuality, &Gga::decodeSatCount, &Gga::decodeHdop, &Gga::decodeGeoidalHeight,
             &Gga::decodeGeoidalSeparation, &Gga::decodeDiffAge, &Gga::decodeRefStationId>;

using dbtValues_t = values_t<dbtMsg_t, &dbtMsg_t::decodeDepth>;
using dptValues_t = values_t<dptMsg_t, &dptMsg_t::decodeDepth>;
using dtmValues_t =
    values_t<dtmMsg_t, &dtmMsg_t::decodeLocalDatum, &dtmMsg_t::decodeLocalDatumSubdivision,
             &dtmMsg_t::decodeLatitudeOffset, &dtmMsg_t::decodeLongitudeOffset,
             &dtmMsg_t::decodeAltitudeOffset, &dtmMsg_t::decodeReferenceDatum>;
using gbsValues_t = values_t<gbsMsg_t, &gbsMsg_t::decodeTimeOfDay, &gbsMsg_t::decodeLatitudeError,
                             &gbsMsg_t::decodeLongitudeError, &gbsMsg_t::decodeAltitudeError,
                             &gbsMsg_t::decodeFailedSatId, &gbsMsg_t::decodeFailedSatProbability,
                             &gbsMsg_t::decodeFailedSatBias, &gbsMsg_t::decodeBiasStdDev>;
using gllValues_t =
    values_t<gllMsg_t, &gllMsg_t::decodeLatitude, &gllMsg_t::decodeLongitude,
             &gllMsg_t::decodeTimeOfDay, &gllMsg_t::decodeValidity, &gllMsg_t::decodeFixMode>;
using gstValues_t = values_t<gstMsg_t, &gstMsg_t::decodeTimeOfDay, &gstMsg_t::decodeRangeRms,
                             &gstMsg_t::decodeSemiMajor, &gstMsg_t::decodeSemiMinor,
                             &gstMsg_t::decodeOrientation, &gstMsg_t::decodeLatitudeError,
                             &gstMsg_t::decodeLongitudeError, &gstMsg_t::decodeAltitudeError>;
using hdtValues_t = values_t<hdtMsg_t, &hdtMsg_t::decodeHeading>;
using mwdValues_t = values_t<mwdMsg_t, &mwdMsg_t::decodeTrueWindDirection,
                             &mwdMsg_t::decodeMagneticWindDirection, &mwdMsg_t::decodeWindSpeed>;
using mwvValues_t = values_t<mwvMsg_t, &mwvMsg_t::decodeWindDirection, &mwvMsg_t::decodeReference,
                             &mwvMsg_t::decodeWindSpeed, &mwvMsg_t::decodeValidity>;
using rmcValues_t =
    values_t<rmcMsg_t, &rmcMsg_t::decodeTimeOfDay, &rmcMsg_t::decodeValidity,
             &rmcMsg_t::decodeLatitude, &rmcMsg_t::decodeLongitude,
             &rmcMsg_t::decodeSpeedOverGround, &rmcMsg_t::decodeCourseOverGround,
             &rmcMsg_t::decodeDate, &rmcMsg_t::decodeMagneticVariation, &rmcMsg_t::decodeFixMode>;
using rotValues_t = values_t<rotMsg_t, &rotMsg_t::decodeRateOfTurn, &rotMsg_t::decodeValidity>;
using thsValues_t = values_t<thsMsg_t, &thsMsg_t::decodeHeading, &thsMsg_t::decodeValidity>;
using vtgValues_t = values_t<vtgMsg_t, &vtgMsg_t::decodeTrueCourseOverGround,
                             &vtgMsg_t::decodeMagneticCourseOverGround,
                             &vtgMsg_t::decodeSpeedOverGround, &vtgMsg_t::decodeFixMode>;
using zdaValues_t = values_t<zdaMsg_t, &zdaMsg_t::decodeTimeOfDay, &zdaMsg_t::decodeDate,
                             &zdaMsg_t::decodeLocalOffset>;
using pzwbGstValues_t =
    values_t<pzwbGstMsg_t, &pzwbGstMsg_t::decodeTimeOfDay, &pzwbGstMsg_t::decodeRangeRms,
             &pzwbGstMsg_t::decodeSemiMajor, &pzwbGstMsg_t::decodeSemiMinor,
             &pzwbGstMsg_t::decodeOrientation, &pzwbGstMsg_t::decodeLatitudeError,
             &pzwbGstMsg_t::decodeLongitudeError, &pzwbGstMsg_t::decodeAltitudeError,
             &pzwbGstMsg_t::decodeFtest>;
using pzwbMdeValues_t =
    values_t<pzwbMdeMsg_t, &pzwbMdeMsg_t::decodeTimeOfDay, &pzwbMdeMsg_t::decodePrn,
             &pzwbMdeMsg_t::decodeMeasType, &pzwbMdeMsg_t::decodeNoncentrality,
             &pzwbMdeMsg_t::decodeMde, &pzwbMdeMsg_t::decodeLatitudeError,
             &pzwbMdeMsg_t::decodeLongitudeError, &pzwbMdeMsg_t::decodeAltitudeError>;
using psimLbpValues_t =
    values_t<psimLbpMsg_t, &psimLbpMsg_t::decodeTimeOfDay, &psimLbpMsg_t::decodeType,
             &psimLbpMsg_t::decodeStatus, &psimLbpMsg_t::decodeCoordType, &psimLbpMsg_t::decodeRawX,
             &psimLbpMsg_t::decodeRawY, &psimLbpMsg_t::decodeDepth, &psimLbpMsg_t::decodeSemiMajor,
             &psimLbpMsg_t::decodeSemiMinor, &psimLbpMsg_t::decodeOrientation,
             &psimLbpMsg_t::decodeRangeRms>;
using psimSsbValues_t =
    values_t<psimSsbMsg_t, &psimSsbMsg_t::decodeTimeOfDay, &psimSsbMsg_t::decodeBeaconId,
             &psimSsbMsg_t::decodeBeaconNumber, &psimSsbMsg_t::decodeStatus,
             &psimSsbMsg_t::decodeErrorCode, &psimSsbMsg_t::decodeCoordType,
             &psimSsbMsg_t::decodeOrientation, &psimSsbMsg_t::decodeFilterCode,
             &psimSsbMsg_t::decodeRawX, &psimSsbMsg_t::decodeRawY, &psimSsbMsg_t::decodeDepth,
             &psimSsbMsg_t::decodeExpectedAccuracy, &psimSsbMsg_t::decodeAddInfoType,
             &psimSsbMsg_t::decodeRawAddInfo1, &psimSsbMsg_t::decodeRawAddInfo2>;
using ptpsrValues_t =
    values_t<ptpsrMsg_t, &ptpsrMsg_t::decodeSentenceFormatter, &ptpsrMsg_t::decodeTimeOfDay,
             &ptpsrMsg_t::decodeAttitudeAvailability, &ptpsrMsg_t::decodePOSAntennaPositionType,
             &ptpsrMsg_t::decodeHeading, &ptpsrMsg_t::decodeInclination,
             &ptpsrMsg_t::decodeSlopeDistance, &ptpsrMsg_t::decodeHeadingRMS,
             &ptpsrMsg_t::decodeInclinationRMS, &ptpsrMsg_t::decodeAzimuthOffset,
             &ptpsrMsg_t::decodeNumGPSSatellites, &ptpsrMsg_t::decodeNumGLONASSSatellites,
             &ptpsrMsg_t::decodeNumBeiDouSatellites, &ptpsrMsg_t::decodeNumGalileoSatellites,
             &ptpsrMsg_t::decodeNumOtherSatellites>;

// Lists, into a vector that keeps its memory as a caller's would.
struct gsaValues_t {
    static unsigned long ofView(const nmeaMsg_t& msg) {
        static thread_local std::vector<unsigned> ids;
        const auto& view = static_cast<const gsaMsg_t&>(msg);
        ids.clear();
        return (view.decodeSatIds(ids) ? ids.size() : 0) +
               decodes<&gsaMsg_t::decodeManualMode, gsaMsg_t>(view) +
               decodes<&gsaMsg_t::decodeFixMode, gsaMsg_t>(view) +
               decodes<&gsaMsg_t::decodePdop, gsaMsg_t>(view) +
               decodes<&gsaMsg_t::decodeHdop, gsaMsg_t>(view) +
               decodes<&gsaMsg_t::decodeVdop, gsaMsg_t>(view) +
               decodes<&gsaMsg_t::decodeSignalId, gsaMsg_t>(view);
    }
    static unsigned long onStack(const nmeaFormat_t& format) { return ofView(gsaMsg_t(format)); }
};

struct gsvValues_t {
    static unsigned long ofView(const nmeaMsg_t& msg) {
        const auto& view = static_cast<const gsvMsg_t&>(msg);
        unsigned number = 0;
        unsigned blocks = 0;
        double value = 0;
        unsigned long sum = (view.decodeMessageCount(number) ? 1U : 0U) +
                            (view.decodeMessageNumber(number) ? 1U : 0U) +
                            (view.decodeTotalSatCount(number) ? 1U : 0U) +
                            (view.decodeSignalId(number) ? 1U : 0U);
        for (unsigned i = 0; view.decodeSatCount(blocks) && i < blocks; ++i) {
            sum += (view.decodeSatPrn(i, number) ? 1U : 0U) +
                   (view.decodeSatElevation(i, value) ? 1U : 0U) +
                   (view.decodeSatAzimuth(i, value) ? 1U : 0U) +
                   (view.decodeSatSnr(i, value) ? 1U : 0U);
        }
        return sum;
    }
    static unsigned long onStack(const nmeaFormat_t& format) { return ofView(gsvMsg_t(format)); }
};

struct row_t {
    nmeaMsgType_t type;
    const char* name;
    unsigned long (*onStack)(const nmeaFormat_t& format);
    unsigned long (*ofView)(const nmeaMsg_t& view);
};

template <typename Values>
constexpr row_t row(nmeaMsgType_t type, const char* name) {
    return {type, name, Values::onStack, Values::ofView};
}

// A row for each type with a view.
constexpr row_t rows[] = {
    row<dbtValues_t>(msgTypeDbt, "DBT"),
    row<dptValues_t>(msgTypeDpt, "DPT"),
    row<dtmValues_t>(msgTypeDtm, "DTM"),
    row<gbsValues_t>(msgTypeGbs, "GBS"),
    row<gga_t<ggaMsg_t>>(msgTypeGga, "GGA"),
    row<gllValues_t>(msgTypeGll, "GLL"),
    row<gsaValues_t>(msgTypeGsa, "GSA"),
    row<gstValues_t>(msgTypeGst, "GST"),
    row<gsvValues_t>(msgTypeGsv, "GSV"),
    row<hdtValues_t>(msgTypeHdt, "HDT"),
    row<mwdValues_t>(msgTypeMwd, "MWD"),
    row<mwvValues_t>(msgTypeMwv, "MWV"),
    row<rmcValues_t>(msgTypeRmc, "RMC"),
    row<rotValues_t>(msgTypeRot, "ROT"),
    row<thsValues_t>(msgTypeThs, "THS"),
    row<vtgValues_t>(msgTypeVtg, "VTG"),
    row<zdaValues_t>(msgTypeZda, "ZDA"),
    row<psimLbpValues_t>(msgTypePsimLbp, "PSIMLBP"),
    row<psimSsbValues_t>(msgTypePsimSsb, "PSIMSSB"),
    row<ptpsrValues_t>(msgTypePtpsr, "PTPSR"),
    row<gga_t<pzwbGgaMsg_t>>(msgTypePzwbGga, "PZWBGGA"),
    row<pzwbGstValues_t>(msgTypePzwbGst, "PZWBGST"),
    row<pzwbMdeValues_t>(msgTypePzwbMde, "PZWBMDE"),
};

const row_t* rowOf(nmeaMsgType_t type) {
    static const auto byType = [] {
        std::vector<const row_t*> table;
        for (const row_t& row : rows) {
            const auto index = static_cast<std::size_t>(row.type);
            table.resize(std::max(table.size(), index + 1));
            table[index] = &row;
        }
        return table;
    }();
    const auto index = static_cast<std::size_t>(type);
    return index < byType.size() ? byType[index] : nullptr;
}

unsigned long valuesOf(const nmeaMsg_t& view) {
    const row_t* row = rowOf(view.type());
    if (row == nullptr) {
        throw std::logic_error("a type with a view has no row");
    }
    return row->ofView(view);
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
        sum += view == nullptr ? 1 : valuesOf(*view);
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
        passes.push_back({row.name, "every value", valuesOnStack});
    }
    passes.push_back({"GSV", "framing and set assembly", setAssembly});
    passes.push_back({"ZDA", "GPS time to Unix and back, one each", gpsTimes});
    passes.push_back({"TSS1", "every value", motionValues});
    passes.push_back({"ATS", "values", trackingValues});
    passes.push_back({"STR", "kind, fields and two values", tableValues});
    return passes;
}
