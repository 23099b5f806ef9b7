#include "tools/record/sentenceReaders.h"

reading_t satellitesOfSentence(const recordView_t<kalo::gsvMsg_t>& record, satelliteList_t& out) {
    unsigned blocks = 0;
    if (!record.view.decodeSatCount(blocks)) {
        return isSent(record.view, from(4)) ? reading_t::lost : reading_t::absent;
    }
    out = record.clue.satellites;
    return record.clue.lostSatellite ? reading_t::partly : reading_t::present;
}

reading_t signalIdOfSentence(const recordView_t<kalo::gsvMsg_t>& record, unsigned& out) {
    const kalo::gsvMsg_t& view = record.view;
    if (view.fieldCount() % 4 != 1 || view.fieldCount() == 1 ||
        view.field(view.fieldCount() - 1)->isEmpty()) {
        return reading_t::absent;
    }
    return view.decodeSignalId(out) ? reading_t::present : reading_t::lost;
}
