// What is in a recording: counts, rates, ranges of values, the track of the vessel.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tools/analysis/counts.h"
#include "tools/analysis/senders.h"
#include "tools/analysis/valueRange.h"
#include "tools/analysis/voyage.h"
#include "tools/record/recordReader.h"

struct summaryOptions_t {
    std::optional<place_t> near; ///< the place for which the nearest streams are listed
    double maxSpeed = 100;       ///< m/s; a faster step is a jump
    /// Not all records are given: what a reader counts in its whole input does not belong here.
    bool isPart = false;
};

/// A period, in Unix seconds; empty until the first instant.
struct period_t {
    std::optional<double> first;
    std::optional<double> last;

    void add(double moment);
    double duration() const { return first ? *last - *first : 0; }
};

/// The values of one type, in the units that are printed.
using ranges_t = std::array<valueRange_t, quantityCount>;

/// What one sender has sent.
struct senderSummary_t {
    std::uint64_t count = 0;
    std::uint64_t voidCount = 0;  ///< records that say themselves that they are not valid
    std::uint64_t emptyCount = 0; ///< sentences without a digit in any field
    period_t period;
    double longestGap = 0; ///< seconds between two consecutive records
    std::optional<double> latest;
    ranges_t* ranges = nullptr;      ///< of its type, once there are values
    const char* system = nullptr;    ///< of the satellite that came last
    valueRange_t* signals = nullptr; ///< of this system

    /// Records a second; 0 if that is not known.
    double rate() const {
        const double duration = period.duration();
        return duration > 0 ? static_cast<double>(count - 1) / duration : 0;
    }
};

/// A stream of a sourcetable, and how far from the wanted place it is.
struct nearStream_t {
    std::string mountpoint;
    double distance = 0; ///< metres
};

class summary_t {
public:
    /// Memory stays bounded: words of sourcetables beyond the limit count under an empty name.
    static constexpr std::size_t most = 4096;
    static constexpr std::size_t mostNear = 10;

    using words_t = std::map<std::string, std::uint64_t>;

    explicit summary_t(const summaryOptions_t& options)
        : m_options(options), m_voyage(options.maxSpeed) {}

    void beginInput(const std::string& name);
    void add(const record_t& record);
    void endInput(const recordReader_t& reader);

    std::uint64_t inputs() const { return m_inputs; }
    std::uint64_t bytes() const { return m_bytes; }
    const counts_t& counts() const { return m_counts; }
    const period_t& period() const { return m_period; }
    /// The tracks of all inputs together.
    const voyage_t& voyage() const { return m_voyage; }

    const senders_t& senders() const { return m_names; }
    /// By the number of the sender.
    const std::vector<senderSummary_t>& sent() const { return m_sent; }
    /// By type.
    const std::map<std::string, ranges_t>& ranges() const { return m_ranges; }
    /// Signal strengths in dB-Hz by satellite system, or by talker where that is not known.
    const std::map<std::string, valueRange_t>& signals() const { return m_signals; }

    const words_t& formats() const { return m_formats; }
    const words_t& networks() const { return m_networks; }
    const words_t& authTypes() const { return m_authTypes; }
    /// Nearest first.
    const std::vector<nearStream_t>& nearStreams() const { return m_near; }

private:
    void addMeasurements(const record_t& record, std::size_t number);
    void addStream(const record_t& record);
    void addFix(const fix_t* fix);

    summaryOptions_t m_options;
    std::uint64_t m_inputs = 0;
    std::uint64_t m_bytes = 0;
    counts_t m_counts;
    period_t m_period;
    voyage_t m_voyage;
    senders_t m_names;
    std::vector<senderSummary_t> m_sent;
    std::map<std::string, ranges_t> m_ranges;
    std::map<std::string, valueRange_t> m_signals;
    words_t m_formats;
    words_t m_networks;
    words_t m_authTypes;
    std::vector<nearStream_t> m_near;

    scratch_t m_scratch;
    measurements_t m_measured;
    epochs_t m_epochs;
};
