#include "tools/analysis/summaryText.h"

#include <functional>

#include <fmt/format.h>

#include "tools/record/degrees.h"
#include "tools/time/instantText.h"

namespace {

constexpr double knot = 1852.0 / 3600;
constexpr double nauticalMile = 1852;

// A share in percent. 0 and 100 are printed only if they are exact.
std::string percent(std::uint64_t part, std::uint64_t whole) {
    if (part == 0 || part == whole) {
        return part == 0 ? "" : "100 %";
    }
    constexpr double hundred = 100;
    const double share = hundred * static_cast<double>(part) / static_cast<double>(whole);
    return share < 0.1 ? "<0.1 %" : share > 99.9 ? ">99.9 %" : fmt::format("{:.1f} %", share);
}

std::string number(double value) { return fmt::format("{:.6g}", value); }

using addLine_t = std::function<void(const char* head, const std::string& text)>;

void addRecords(const summary_t& summary, const addLine_t& add) {
    const counts_t& counts = summary.counts();
    add("input", fmt::format("{} in {} {}", fmt::format("{} bytes", summary.bytes()),
                             summary.inputs(), summary.inputs() == 1 ? "input" : "inputs"));
    add("records", counts.text());
    if (counts.records() > 0) {
        add("decoded", fmt::format("{:.2f} %", 100 * static_cast<double>(counts.decoded()) /
                                                   static_cast<double>(counts.records())));
    }
}

void addTime(const summary_t& summary, const addLine_t& add) {
    const period_t& period = summary.period();
    if (period.first) {
        add("time", fmt::format("{} to {}, {}", instantText(*period.first),
                                instantText(*period.last), durationText(period.duration())));
    }
}

void addVoyage(const summary_t& summary, const addLine_t& add) {
    const voyage_t& voyage = summary.voyage();
    if (voyage.fixes() == 0) {
        return;
    }
    const positionBox_t& box = voyage.box();
    const auto degrees = [](double angle) { return angle * degreesPerRadian; };
    add("position",
        fmt::format("latitude {:.6f} to {:.6f}, longitude {:.6f} to {:.6f}; {} {}",
                    degrees(box.south()), degrees(box.north()), degrees(box.west()),
                    degrees(box.east()), voyage.fixes(), voyage.fixes() == 1 ? "fix" : "fixes"));
    std::string track = fmt::format("{:.1f} m ({:.2f} nautical miles)", voyage.distance(),
                                    voyage.distance() / nauticalMile);
    if (const std::optional<double> speed = voyage.meanSpeed()) {
        track += fmt::format(", mean speed {:.2f} m/s ({:.1f} knots)", *speed, *speed / knot);
    }
    add("track",
        track + fmt::format(", {} {}", voyage.jumps(), voyage.jumps() == 1 ? "jump" : "jumps"));
}

textTable_t sendersOf(const summary_t& summary, shownText_t shown) {
    using width_t = textTable_t::width_t;
    textTable_t all({{"source", false, width_t::cut},
                     {"prefix", false, width_t::cut},
                     {"talker"},
                     {"type"},
                     {"count", true},
                     {"per s", true},
                     {"void", true},
                     {"empty", true},
                     {"gap", true},
                     {"first", false, width_t::leftOut},
                     {"last", false, width_t::leftOut}});
    const bool isOneInput = summary.inputs() < 2;
    for (std::size_t i = 0; i < summary.sent().size(); ++i) {
        const senderName_t& name = summary.senders()[i];
        const senderSummary_t& sender = summary.sent()[i];
        const period_t& period = sender.period;
        const double rate = sender.rate();
        all.add({isOneInput ? "" : shown(name.source), shown(name.prefix), shown(name.talker),
                 shown(name.type), std::to_string(sender.count),
                 rate > 0 ? fmt::format("{:.3g}", rate) : "",
                 percent(sender.voidCount, sender.count), percent(sender.emptyCount, sender.count),
                 sender.longestGap > 0 ? durationText(sender.longestGap) : "",
                 period.first ? instantText(*period.first) : "",
                 period.last ? instantText(*period.last) : ""});
    }
    return all;
}

textTable_t rangesOf(const summary_t& summary, shownText_t shown) {
    textTable_t all({{"value"},
                     {"type"},
                     {"count", true},
                     {"least", true},
                     {"median", true},
                     {"greatest", true},
                     {"unit"}});
    const auto add = [&](const std::string& what, const std::string& type,
                         const valueRange_t& range, const char* unit) {
        all.add({what, type, std::to_string(range.count()), number(range.least()),
                 fmt::format("{:.4g}", range.median()), number(range.greatest()), unit});
    };
    for (std::size_t i = 0; i < quantityCount; ++i) {
        for (const auto& [type, ranges] : summary.ranges()) {
            if (ranges[i].count() > 0) {
                add(quantityRows[i].title, type, ranges[i], quantityRows[i].unit);
            }
        }
    }
    for (const auto& [system, range] : summary.signals()) {
        add("signal strength", shown(system), range, "dB-Hz");
    }
    return all;
}

textTable_t wordsOf(const char* head, const summary_t::words_t& counts, shownText_t shown) {
    textTable_t all({{head}, {"streams", true}});
    for (const auto& [word, count] : counts) {
        all.add({word.empty() ? "(none)" : shown(word), std::to_string(count)});
    }
    return all;
}

textTable_t nearOf(const summary_t& summary, shownText_t shown) {
    textTable_t near({{"mountpoint"}, {"km", true}});
    for (const nearStream_t& stream : summary.nearStreams()) {
        constexpr double metresPerKilometre = 1000;
        near.add({shown(stream.mountpoint),
                  fmt::format("{:.1f}", stream.distance / metresPerKilometre)});
    }
    return near;
}

} // namespace

std::vector<summaryLine_t> summaryLines(const summary_t& summary) {
    std::vector<summaryLine_t> lines;
    const addLine_t add = [&](const char* head, const std::string& text) {
        lines.push_back({head, text});
    };
    addRecords(summary, add);
    addTime(summary, add);
    addVoyage(summary, add);
    return lines;
}

std::vector<summaryTable_t> summaryTables(const summary_t& summary, shownText_t shown) {
    std::vector<summaryTable_t> tables;
    const auto add = [&](const char* title, textTable_t table) {
        if (!table.isEmpty()) {
            tables.push_back({title, std::move(table)});
        }
    };
    add("Senders", sendersOf(summary, shown));
    add("Ranges of values", rangesOf(summary, shown));
    add("Formats of the streams", wordsOf("format", summary.formats(), shown));
    add("Networks of the streams", wordsOf("network", summary.networks(), shown));
    add("Authentication of the streams", wordsOf("authentication", summary.authTypes(), shown));
    add("Nearest streams", nearOf(summary, shown));
    return tables;
}
