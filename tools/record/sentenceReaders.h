// Readers of values for which an accessor of the view is not enough.
#pragma once

#include "kalo/nmea/gsvMsg.h"
#include "tools/record/ownReaders.h"
#include "tools/record/plausible.h"
#include "tools/record/valueRow.h"

/// An accessor of a companion, which interprets the raw values of its view. The raw values are
/// printed as well, so nothing is lost if they do not have this meaning. A value that has this
/// meaning but is out of range counts as not decoded.
template <typename View, auto accessor, bool (*isPlausible)(double) = isFinite>
reading_t companion(const View& view, double& out) {
    using companion_t = decltype(viewOf(accessor));
    if (!(companion_t(view).*accessor)(out)) {
        return reading_t::absent;
    }
    return isPlausible(out) ? reading_t::present : reading_t::lost;
}

/// The satellites of the clue; none if the fields are not whole blocks.
reading_t satellitesOfSentence(const recordView_t<kalo::gsvMsg_t>& record, satelliteList_t& out);

/// The last field, if the sentence has a field for the signal identifier.
reading_t signalIdOfSentence(const recordView_t<kalo::gsvMsg_t>& record, unsigned& out);
