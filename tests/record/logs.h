// Logs that ranges and pieces are cut from: the shipped recording, those of the folder that the
// variable KALO_RECORDINGS names, and logs that are made here because they are larger, or harder to
// cut. KALO_CUTS is the highest number of parts that recordings are cut into.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <fmt/format.h>

#include "tests/sentence.h"

struct log_t {
    std::string name;
    std::string text;
};

inline std::string textOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

inline std::vector<log_t> logsIn(const std::string& folder) {
    std::vector<log_t> logs;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file() && entry.file_size() > 0) {
            logs.push_back({entry.path().string(), textOf(entry.path().string())});
        }
    }
    std::sort(logs.begin(), logs.end(),
              [](const log_t& a, const log_t& b) { return a.name < b.name; });
    return logs;
}

inline std::vector<log_t> shippedLogs() { return logsIn(KALO_EXAMPLES "/recordings"); }

/// Those of KALO_RECORDINGS; empty without the variable.
inline std::vector<log_t> recordings() {
    const char* const folder = std::getenv("KALO_RECORDINGS");
    return folder != nullptr ? logsIn(folder) : std::vector<log_t>();
}

inline unsigned mostCuts(unsigned usual) {
    const char* const text = std::getenv("KALO_CUTS");
    return text != nullptr ? static_cast<unsigned>(std::atoi(text)) : usual;
}

inline std::string clockText(unsigned second) {
    return fmt::format("{:02}{:02}{:02}", second / 3600 % 24, second / 60 % 60, second % 60);
}

/// A position without a date for each second from a time of day on, with `extra(i)` in front of the
/// i-th.
template <typename Extra>
std::string positions(unsigned begin, unsigned count, Extra extra) {
    std::string text;
    for (unsigned i = 0; i < count; ++i) {
        text += extra(i);
        text += sentence("$GPGLL,5012.34632,N,00000.24624,E," + clockText(begin + i) + ",A");
    }
    return text;
}

/// A stamp for this day, without the year.
inline std::string stamped(const std::string& day, unsigned second) {
    return fmt::format("{}/2026 {:02}:{:02}:{:02} ", day, second / 3600 % 24, second / 60 % 60,
                       second % 60);
}

/// Logs larger than what is read in front of a range. Each tells or hides the day in another way.
inline std::vector<log_t> madeLogs() {
    constexpr unsigned count = 6000;
    constexpr unsigned evening = 23 * 3600;
    const auto nothing = [](unsigned /*i*/) { return std::string(); };
    const auto once = [](const std::string& text) {
        return [text](unsigned i) { return i == 0 ? text : std::string(); };
    };
    const std::string ownDate = sentence("$GPZDA,225959,14,03,2026,00,00");
    std::vector<log_t> logs = {
        {"no date at all", positions(evening, count, nothing)},
        {"a date at the start only", positions(evening, count, once(ownDate))},
        {"a date each ten minutes, over midnight",
         positions(evening, count,
                   [](unsigned i) {
                       return i % 600 > 0 ? std::string()
                                          : sentence(fmt::format("$GPZDA,{},{},03,2026,00,00",
                                                                 clockText(evening + i),
                                                                 evening + i < 86400 ? 14 : 15));
                   })},
        {"stamps of a clock that is ten days ahead, and a date in the middle",
         positions(evening, count,
                   [&](unsigned i) {
                       return (i == count / 2 ? ownDate : "") +
                              fmt::format("2026-03-{}T{:02}:{:02}:{:02}Z ",
                                          evening + i < 86400 ? 24 : 25, (i + evening) / 3600 % 24,
                                          (i + evening) / 60 % 60, (i + evening) % 60);
                   })},
        {"stamps whose order of day and month is told at the start only, not used in between",
         positions(evening, count,
                   [&](unsigned i) {
                       return (i % 600 > 0 ? "" : ownDate) + (i < 10 ? stamped("04/13", evening + i)
                                                              : i > count * 9 / 10
                                                                  ? stamped("05/04", evening + i)
                                                                  : "");
                   })},
        {"stamps whose order of day and month is told in the middle only",
         positions(evening, count,
                   [&](unsigned i) {
                       return (i % 600 > 0 ? "" : ownDate) +
                              stamped(i == count / 2 ? "04/13" : "05/04", evening + i);
                   })},
        {"the answer of a caster that goes on for the whole log",
         "SOURCETABLE 200 OK\r\n" + positions(evening, count,
                                              [](unsigned i) {
                                                  return i % 50 > 0
                                                             ? std::string()
                                                             : std::string("Server: here\r\n");
                                              })},
        {"groups of satellites, some without an end",
         ownDate + positions(evening, count,
                             [](unsigned i) {
                                 std::string text;
                                 for (unsigned number = 1; number <= 3; ++number) {
                                     if ((i + number) % 13 != 0) {
                                         text += sentence(fmt::format(
                                             "$G{}GSV,3,{},09,{:02},10,100,40,{:02},20,200,30,"
                                             "{:02},30,300,20",
                                             i % 2 > 0 ? 'P' : 'L', number, number * 3,
                                             number * 3 + 1, number * 3 + 2));
                                     }
                                 }
                                 return text;
                             })},
        {"a line end of more than 64 KiB",
         sentence("$GPDPT,1") + "$GPDPT,2" + std::string(70000, '\r') + "\n$GPDPT,3\r\n"},
        {"lines of more than 64 KiB, and others",
         ownDate + positions(evening, 60, [](unsigned i) {
             return i % 4 > 0 ? std::string() : std::string(20000 * (i % 12 + 1), 'x') + "\r\n";
         })}};
    // Other line ends, and empty lines.
    for (const std::string end : {"\n", "\r", "\r\r\n", "\r\r", "\n\n \n"}) {
        std::string text = ownDate + positions(evening, 2000, nothing);
        for (std::size_t at = text.find("\r\n"); at != std::string::npos;
             at = text.find("\r\n", at + end.size())) {
            text.replace(at, 2, end);
        }
        logs.push_back({fmt::format("lines that end in {} bytes of {}", end.size(),
                                    end == "\r" || end == "\r\r" ? "CR" : "CR and LF"),
                        text});
    }
    return logs;
}
