// Logs are read into records, and what is printed of them is looked at.
#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include "fuzz/target.h"
#include "tools/record/recordReader.h"

namespace fuzz {

/// Calls `take(record)` for each record of an input that arrives in these pieces.
template <typename Take>
void readRecords(const std::vector<std::string_view>& pieces, const readOptions_t& options,
                 Take take) {
    recordReader_t reader(options);
    record_t record;
    const auto takeRecords = [&] {
        while (reader.next(record)) {
            take(record);
        }
    };
    for (const std::string_view piece : pieces) {
        reader.feed(piece);
        takeRecords();
    }
    reader.finish();
    takeRecords();
    require(!reader.next(record), "the end stays the end");
}

/// JSON in UTF-8, in which no object has two members of one name.
inline void requireJson(std::string_view text) {
    std::vector<std::set<std::string>> names;
    const auto look = [&](int /*depth*/, nlohmann::json::parse_event_t event,
                          const nlohmann::json& value) {
        using event_t = nlohmann::json::parse_event_t;
        if (event == event_t::object_start) {
            names.emplace_back();
        } else if (event == event_t::object_end) {
            names.pop_back();
        } else if (event == event_t::key) {
            require(names.back().insert(value.get<std::string>()).second, "no name twice");
        }
        return true;
    };
    require(!nlohmann::json::parse(text, look, false).is_discarded(), "valid JSON in UTF-8");
}

/// Each line of `text` is such JSON, and ends with a line feed.
inline void requireJsonLines(std::string_view text) {
    for (const std::string_view line : linesOf(text)) {
        require(line.back() == '\n', "a whole line");
        requireJson(line);
    }
}

} // namespace fuzz
