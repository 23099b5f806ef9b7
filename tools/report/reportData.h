// What a report draws, gathered from the records as they come. Its tables are those of
// `summary_t` and `checker_t`.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tools/analysis/senders.h"
#include "tools/record/measurements.h"
#include "tools/record/recordReader.h"
#include "tools/report/beaconPlace.h"
#include "tools/report/intervals.h"
#include "tools/report/presenceTimes.h"
#include "tools/report/trackLines.h"

/// Whose wind it is, by the letter of a sentence that can send both.
enum class windReference_t : unsigned { none, relative, trueWind, count };

/// What a sender says about one quantity.
struct series_t {
    senderName_t sender; ///< `source` is empty once inputs are joined
    quantity_t quantity = quantity_t::none;
    windReference_t reference = windReference_t::none;
    intervals_t values; ///< in the unit that is printed
};

/// When the records of a sender came.
struct presence_t {
    senderName_t sender;              ///< `source` is empty once inputs are joined
    std::vector<std::size_t> numbers; ///< of the sender in each input, as `summary_t` has them
    presenceTimes_t times;
};

/// A satellite in view.
struct satelliteInView_t {
    struct place_t {
        double time = 0; ///< Unix seconds; 0 if it is not known
        double azimuth = 0;
        double elevation = 0; ///< degrees
    };
    std::string talker;
    unsigned prn = 0;
    std::vector<place_t> way;
    std::uint64_t everyNth = 1; ///< of its places are in `way`
    std::uint64_t placeCount = 0;
    place_t last;
    std::uint64_t signalCount = 0;
    double weakest = 0; ///< dB-Hz
    double strongest = 0;
    double signalSum = 0;
};

/// A stream of a sourcetable.
struct stream_t {
    std::array<std::string, 9> texts; ///< in the order of `streamColumns`
    std::optional<float> latitude;    ///< degrees
    std::optional<float> longitude;
    std::optional<unsigned> bitrate; ///< bit/s
};
constexpr std::array<const char*, 9> streamColumns = {"mountpoint",    "identifier",  "format",
                                                      "formatDetails", "carrierType", "navSystem",
                                                      "network",       "authType",    "country"};

struct inputSize_t {
    std::string name;
    std::uint64_t bytes = 0;
};

class reportData_t {
public:
    // Memory is bounded: what comes beyond these numbers is counted and not kept.
    static constexpr std::size_t mostSeries = 512;
    static constexpr std::size_t mostPresences = 512;
    static constexpr std::size_t mostSatellites = 256;
    static constexpr std::size_t placesOfSatellite = 120;
    static constexpr std::size_t mostBeaconPlaces = 2000;
    static constexpr std::size_t mostStreams = 2000;
    static constexpr std::size_t mostInputs = 1000;

    /// `maxPoints` are kept of each series and of the track.
    explicit reportData_t(std::size_t maxPoints);

    void beginInput(const std::string& name);
    void add(const record_t& record);
    void endInput(const recordReader_t& reader);

    const std::vector<inputSize_t>& inputs() const { return m_inputs; }
    const trackLines_t& track() const { return m_track; }
    const std::vector<series_t>& series() const { return m_series; }
    const std::vector<presence_t>& presences() const { return m_presences; }
    const std::map<std::pair<std::string, unsigned>, satelliteInView_t>& satellites() const {
        return m_satellites;
    }
    /// Of every so many places of beacons one is kept.
    std::uint64_t beaconEveryNth() const { return m_beaconEveryNth; }
    const std::vector<beaconPlace_t>& beaconPlaces() const { return m_beaconPlaces; }
    /// Places of beacons in degrees, sent when the place of the vessel was not known.
    std::uint64_t otherBeacons() const { return m_otherBeacons; }
    const std::vector<stream_t>& streams() const { return m_streams; }

    /// Records with a time but no date, also those outside the period of the report.
    std::uint64_t undated() const { return m_undated; }
    std::uint64_t unkeptSeries() const { return m_unkeptSeries; }
    std::uint64_t unkeptStreams() const { return m_unkeptStreams; }

private:
    static constexpr std::size_t referenceCount = static_cast<std::size_t>(windReference_t::count);
    static constexpr std::size_t unknown = static_cast<std::size_t>(-1);
    static constexpr std::size_t unkept = unknown - 1;
    using places_t = std::array<std::size_t, quantityCount * referenceCount>;

    void addMeasurements(double moment, std::size_t sender);
    void addSatellites(const record_t& record, std::optional<double> moment);
    std::optional<place_t> vesselAt(std::optional<double> moment) const;
    void addBeacon(const record_t& record, std::optional<double> moment);
    void addStream(const record_t& record);
    void addFix(const fix_t* fix);
    std::size_t seriesOf(std::size_t sender, quantity_t quantity, windReference_t reference);
    template <typename Item, typename IsSame>
    static void joinInputs(std::vector<Item>& items, std::size_t begin, IsSame isSame);

    std::size_t m_maxPoints;
    std::uint64_t m_inputCount = 0;
    std::vector<inputSize_t> m_inputs;
    senders_t m_senders;
    std::size_t m_firstSeries = 0; // of this input
    std::size_t m_firstPresence = 0;
    std::vector<places_t> m_seriesPlaces; // by sender
    std::vector<std::size_t> m_presencePlaces;
    std::vector<series_t> m_series;
    std::vector<presence_t> m_presences;
    std::uint64_t m_undated = 0;
    std::uint64_t m_unkeptSeries = 0;
    trackLines_t m_track;
    std::optional<place_t> m_vessel; // its last position in this input
    double m_vesselTime = 0;
    std::map<std::pair<std::string, unsigned>, satelliteInView_t> m_satellites;
    std::uint64_t m_beaconEveryNth = 1;
    std::uint64_t m_beaconCount = 0;
    std::uint64_t m_otherBeacons = 0;
    std::vector<beaconPlace_t> m_beaconPlaces;
    std::vector<stream_t> m_streams;
    std::uint64_t m_unkeptStreams = 0;

    scratch_t m_scratch;
    measurements_t m_measured;
    epochs_t m_epochs;
};
