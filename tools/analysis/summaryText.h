// A summary as texts for people, whatever they are printed on.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/analysis/summary.h"
#include "tools/terminal/textTable.h"

struct summaryLine_t {
    const char* head;
    std::string text;
};

/// What the recording is as a whole.
std::vector<summaryLine_t> summaryLines(const summary_t& summary);

struct summaryTable_t {
    const char* title;
    textTable_t table;
};

/// A text of the input as it is to be shown.
using shownText_t = std::string (*)(std::string_view);

/// Those that have rows: the senders, the ranges of values, the words of sourcetables.
std::vector<summaryTable_t> summaryTables(const summary_t& summary, shownText_t shown);
