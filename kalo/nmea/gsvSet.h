// The satellites in view, put together from a group of GSV sentences (kalo/nmea/gsvMsg.h).
#pragma once

#include <map>

#include "kalo/export.h"

namespace kalo {

class gsvMsg_t;

/// Collects the satellites of one group after another; a caller keeps one for each talker and
/// signal, as the set looks at neither. The only class of kalo/nmea that keeps state from one
/// sentence to the next. It is neither copied nor moved, and one thread at a time may use it.
class KALO_EXPORT gsvSet_t {
public:
    struct sat_t {
        double azimuth = 0;   ///< radians, 0 to 2 pi
        double elevation = 0; ///< radians, 0 to pi / 2
        bool hasSnr = false;  ///< whether a signal-to-noise ratio was sent
        double snr = 0;       ///< dB-Hz, meaningful with `hasSnr`
    };

    gsvSet_t();
    gsvSet_t(const gsvSet_t&) = delete;
    gsvSet_t& operator=(const gsvSet_t&) = delete;
    ~gsvSet_t();

    /// Offers the next sentence. Number 1 starts a new group, whatever was held before; any other
    /// must follow the last one with the same counts, or is refused and changes nothing. Satellites
    /// whose angles are missing or out of range are left out.
    bool decode(const gsvMsg_t& msg);

    /// The last sentence of the group has come, and as many satellites are held as it announced.
    bool isComplete() const;

    /// By satellite identifier; valid until the next `decode` or `resetState`.
    const std::map<unsigned, sat_t>& sats() const;

    void resetState();

private:
    struct state_t;

    state_t* m_state;
};

} // namespace kalo
