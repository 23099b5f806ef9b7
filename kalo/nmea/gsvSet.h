// The satellites in view, collected from a group of GSV sentences (kalo/nmea/gsvMsg.h).
#pragma once

#include <map>

#include "kalo/export.h"

namespace kalo {

class gsvMsg_t;

/// Collects the satellites of one group of GSV sentences after another. Groups of different talkers
/// and signals arrive interleaved, and the set looks at neither: keep one set for each talker and
/// signal, and offer each sentence (here `view`, a `gsvMsg_t`) to the set that it belongs to.
///
///     std::map<std::pair<std::string, unsigned>, gsvSet_t> sets;
///     // for each view:
///     unsigned signal = 0;
///     const bool isSent = view.decodeSignalId(signal);
///     gsvSet_t& set = sets[{view.addressField()->toString(), isSent ? signal : 0}];
///     if (set.decode(view) && set.isComplete()) {
///         use(set.sats());
///     }
///
/// This is the only class of kalo/nmea that keeps state from one sentence to the next. It cannot be
/// copied or moved, and only one thread at a time may use it.
class KALO_EXPORT gsvSet_t {
public:
    /// What is known of one satellite.
    struct sat_t {
        double azimuth = 0;   ///< radians, 0 to 2 pi
        double elevation = 0; ///< radians, 0 to pi / 2
        bool hasSnr = false;  ///< whether a signal-to-noise ratio was sent
        double snr = 0;       ///< dB-Hz, valid only if `hasSnr`
    };

    gsvSet_t();
    gsvSet_t(const gsvSet_t&) = delete;
    gsvSet_t& operator=(const gsvSet_t&) = delete;
    ~gsvSet_t();

    /// Offers the next sentence. Returns whether it was accepted; a refused one changes nothing.
    ///
    /// Sentence number 1 starts a new group, whatever came before it. Any other must be the next
    /// one of its group and repeat its counts. A sentence whose counts cannot be read is refused.
    /// Satellites whose angles are missing or out of range are left out. If memory runs out, the
    /// same sentence can be offered once more.
    bool decode(const gsvMsg_t& msg);

    /// Whether the last sentence of the group was accepted and the set holds as many satellites as
    /// the group announced.
    bool isComplete() const;

    /// The satellites so far, by identifier. Valid until the next `decode` or `resetState`.
    const std::map<unsigned, sat_t>& sats() const;

    /// Forgets the group: what follows must start with number 1.
    void resetState();

private:
    struct state_t;

    state_t* m_state;
};

} // namespace kalo
