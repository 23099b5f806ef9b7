// Any sequence of sentences, one a line, is taken as a new set takes it from the last sentence with
// number 1 on; a refused one changes nothing.
#include <cmath>
#include <memory>

#include "fuzz/target.h"
#include "kalo/nmea/gsvMsg.h"
#include "kalo/nmea/gsvSet.h"

namespace {

using kalo::gsvSet_t;

bool isSame(const gsvSet_t& left, const gsvSet_t& right) {
    const auto isSameSat = [](const auto& a, const auto& b) {
        return a.first == b.first && fuzz::hasSameBits(a.second.azimuth, b.second.azimuth) &&
               fuzz::hasSameBits(a.second.elevation, b.second.elevation) &&
               a.second.hasSnr == b.second.hasSnr &&
               (!a.second.hasSnr || fuzz::hasSameBits(a.second.snr, b.second.snr));
    };
    return left.isComplete() == right.isComplete() && left.sats().size() == right.sats().size() &&
           std::equal(left.sats().begin(), left.sats().end(), right.sats().begin(), isSameSat);
}

} // namespace

void fuzz::gsvSet(std::string_view input) {
    gsvSet_t set;
    gsvSet_t reset;
    auto fresh = std::make_unique<gsvSet_t>();
    for (const std::string_view line : linesOf(input)) {
        const kalo::nmeaFormat_t format(line.data(), line.size());
        const kalo::gsvMsg_t view(format);
        unsigned number = 0;
        unsigned total = 0;
        if (view.decodeMessageNumber(number) && number == 1) {
            fresh = std::make_unique<gsvSet_t>();
            reset.resetState();
        }
        const std::size_t before = set.sats().size();
        const bool isTaken = set.decode(view);
        require(fresh->decode(view) == isTaken || number == 1, "taken as by a new set");
        require(reset.decode(view) == isTaken || number == 1, "taken as by a set that was reset");
        if (number == 1 && !isTaken) { // the group before it goes on
            return;
        }
        require(isSame(set, *fresh) && isSame(set, reset), "the same satellites");
        require(isTaken || set.sats().size() == before, "a refused sentence changes nothing");
        require(!(isTaken && set.isComplete()) ||
                    (view.decodeTotalSatCount(total) && total == set.sats().size()),
                "a complete set has as many satellites as announced");
        for (const auto& [prn, sat] : set.sats()) {
            require(sat.elevation >= 0 && sat.elevation < 1.5708 && sat.azimuth >= 0 &&
                        sat.azimuth < 6.2832,
                    "angles in range");
        }
    }
}
