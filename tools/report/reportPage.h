// A report as one HTML page: the data that it draws as JSON, between the parts of the page that are
// always the same.
#pragma once

#include <string>

#include "tools/analysis/findingGroups.h"
#include "tools/analysis/summary.h"
#include "tools/output/buffer.h"
#include "tools/report/reportData.h"

struct reportText_t {
    std::string version;
    std::string command; ///< that made the report
    bool isPart = false; ///< of the time of the recordings
};

void writeReportPage(buffer_t& out, const reportText_t& text, const summary_t& summary,
                     const findingGroups_t& findings, const reportData_t& data);
