#include "tools/record/sentenceReaders.h"

reading_t satellitesOfSentence(const source_t<kalo::gsvMsg_t>& source, satelliteList_t& out) {
    unsigned blocks = 0;
    if (!source.view.decodeSatCount(blocks)) {
        return isSent(source.view, from(4)) ? reading_t::lost : reading_t::absent;
    }
    out = source.clue.satellites;
    return source.clue.lostSatellite ? reading_t::partly : reading_t::present;
}

reading_t signalIdOfSentence(const source_t<kalo::gsvMsg_t>& source, unsigned& out) {
    const kalo::gsvMsg_t& view = source.view;
    if (view.fieldCount() % 4 != 1 || view.fieldCount() == 1 ||
        view.field(view.fieldCount() - 1)->isEmpty()) {
        return reading_t::absent;
    }
    return view.decodeSignalId(out) ? reading_t::present : reading_t::lost;
}
