// Readers of values that are no plain accessor of a sentence's view.
#pragma once

#include "kalo/nmea/gsvMsg.h"
#include "tools/record/ownReaders.h"
#include "tools/record/plausible.h"
#include "tools/record/valueRow.h"

/// An accessor of a companion, which gives the raw values of its view a meaning. Those are values
/// themselves, so nothing is lost where they have no such meaning; but one that has it and cannot
/// be right counts as not decoded.
template <typename View, auto accessor, bool (*isPlausible)(double) = isFinite>
reading_t companion(const View& view, double& out) {
    using companion_t = decltype(viewOf(accessor));
    if (!(companion_t(view).*accessor)(out)) {
        return reading_t::absent;
    }
    return isPlausible(out) ? reading_t::present : reading_t::lost;
}

/// Those of the clue; none where the fields do not make whole blocks.
reading_t satellitesOfSentence(const recordView_t<kalo::gsvMsg_t>& record, satelliteList_t& out);

/// The last field, in a sentence that has one for it.
reading_t signalIdOfSentence(const recordView_t<kalo::gsvMsg_t>& record, unsigned& out);
