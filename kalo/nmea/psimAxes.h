// What the sources of psimSsbMsg and psimLbpMsg have in common: two raw coordinates, X and Y, whose
// order depends on the sentence's letters. Not installed.
#pragma once

namespace kalo {

/// X in the layout `whereX`, Y in the layout `whereY`, which has the axes exchanged. False, with
/// `out` untouched, in every other layout.
template <typename View, typename Layout>
bool decodeAxis(const View& view, Layout layout, Layout whereX, Layout whereY, double& out) {
    return layout == whereX ? view.decodeRawX(out) : layout == whereY && view.decodeRawY(out);
}

} // namespace kalo
