// Any sequence of sentences, one a line, is taken as a new set takes it from the last sentence with
// number 1 on; a refused one changes nothing.
#include <cmath>
#include <memory>
#include <set>

#include "fuzz/target.h"
#include "kalo/nmea/gsvMsg.h"
#include "kalo/nmea/gsvSet.h"

namespace {

using kalo::gsvSet_t;

template <typename Sats>
bool isSame(const Sats& left, const Sats& right) {
    const auto isSameSat = [](const auto& a, const auto& b) {
        return a.first == b.first && fuzz::hasSameBits(a.second.azimuth, b.second.azimuth) &&
               fuzz::hasSameBits(a.second.elevation, b.second.elevation) &&
               a.second.hasSnr == b.second.hasSnr &&
               (!a.second.hasSnr || fuzz::hasSameBits(a.second.snr, b.second.snr));
    };
    return left.size() == right.size() &&
           std::equal(left.begin(), left.end(), right.begin(), isSameSat);
}

bool isSameSet(const gsvSet_t& left, const gsvSet_t& right) {
    return left.isComplete() == right.isComplete() && isSame(left.sats(), right.sats());
}

// What the header says, once more.
class model_t {
public:
    bool decode(const kalo::gsvMsg_t& view) {
        unsigned count = 0, number = 0, total = 0, blocks = 0;
        const bool isReadable = view.decodeMessageCount(count) &&
                                view.decodeMessageNumber(number) &&
                                view.decodeTotalSatCount(total) && view.decodeSatCount(blocks);
        const bool continues = count == m_count && total == m_total && number == m_last + 1;
        if (!isReadable || (number != 1 && !continues)) {
            return false;
        }
        if (number == 1) {
            m_seen.clear();
        }
        m_count = count;
        m_total = total;
        m_last = number;
        for (unsigned i = 0; i < blocks; ++i) {
            unsigned prn = 0;
            double elevation = -1, azimuth = -1;
            if (view.decodeSatPrn(i, prn) && view.decodeSatElevation(i, elevation) &&
                view.decodeSatAzimuth(i, azimuth) && elevation >= 0 && elevation < 1.5708 &&
                azimuth >= 0 && azimuth < 6.2832) {
                m_seen.insert(prn);
            }
        }
        return true;
    }

    bool isComplete() const { return m_count > 0 && m_last == m_count && m_seen.size() == m_total; }
    const std::set<unsigned>& seen() const { return m_seen; }

private:
    unsigned m_count = 0;
    unsigned m_total = 0;
    unsigned m_last = 0;
    std::set<unsigned> m_seen;
};

} // namespace

void fuzz::gsvSet(std::string_view input) {
    gsvSet_t set;
    gsvSet_t reset;
    model_t model;
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
        const auto before = set.sats();
        const bool isTaken = set.decode(view);
        require(model.decode(view) == isTaken && model.isComplete() == set.isComplete() &&
                    model.seen().size() == set.sats().size() &&
                    std::all_of(set.sats().begin(), set.sats().end(),
                                [&](const auto& sat) { return model.seen().count(sat.first) > 0; }),
                "taken as the header says");
        require(fresh->decode(view) == isTaken || number == 1, "taken as by a new set");
        require(reset.decode(view) == isTaken || number == 1, "taken as by a set that was reset");
        require(isTaken || isSame(set.sats(), before), "a refused sentence changes nothing");
        if (number == 1 && !isTaken) { // the group before it goes on
            return;
        }
        require(isSameSet(set, *fresh) && isSameSet(set, reset), "the same satellites");
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
