#include "tools/command/summaryCommand.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "tools/command/readInput.h"
#include "tools/command/textTable.h"
#include "tools/output/jsonString.h"
#include "tools/record/degrees.h"
#include "tools/terminal/colour.h"
#include "tools/terminal/message.h"
#include "tools/time/instantText.h"

namespace {

using json_t = nlohmann::ordered_json;

constexpr double knot = 1852.0 / 3600;
constexpr double nauticalMile = 1852;

class summaryConsumer_t : public recordConsumer_t {
public:
    explicit summaryConsumer_t(const summaryOptions_t& options) : m_summary(options) {}

    void beginInput(const std::string& name, const recordReader_t& /*reader*/) override {
        m_summary.beginInput(name);
    }
    void take(const record_t& record) override { m_summary.add(record); }
    void endInput(const recordReader_t& reader) override { m_summary.endInput(reader); }

    const summary_t& summary() const { return m_summary; }

private:
    summary_t m_summary;
};

struct system_t {
    std::string_view talker;
    const char* name;
};

constexpr system_t systems[] = {{"GP", "GPS"},    {"GL", "GLONASS"}, {"GA", "Galileo"},
                                {"GB", "BeiDou"}, {"BD", "BeiDou"},  {"GQ", "QZSS"},
                                {"QZ", "QZSS"},   {"GI", "NavIC"},   {"GN", "several"}};

std::string systemOf(const std::string& talker) {
    for (const system_t& system : systems) {
        if (system.talker == talker) {
            return system.name;
        }
    }
    return talker;
}

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

double rateOf(const senderSummary_t& sender) {
    const double duration = sender.period.duration();
    return duration > 0 ? static_cast<double>(sender.count - 1) / duration : 0;
}

// Text for people.

class page_t {
public:
    page_t(const summary_t& summary, int descriptor)
        : m_summary(summary), m_descriptor(descriptor) {
        addRecords();
        addTime();
        addVoyage();
        addSenders();
        addRanges();
        addTables();
    }

    const std::string& text() const { return m_text; }

private:
    void line(const char* head, const std::string& text) {
        m_text +=
            styled(style_t::heading, fmt::format("{:10}", head), m_descriptor) + ' ' + text + '\n';
    }

    void table(const textTable_t& table) {
        if (!table.isEmpty()) {
            m_text += '\n' + table.text(m_descriptor);
        }
    }

    void addRecords() {
        const counts_t& counts = m_summary.counts();
        line("input",
             fmt::format("{} in {} {}", fmt::format("{} bytes", m_summary.bytes()),
                         m_summary.inputs(), m_summary.inputs() == 1 ? "input" : "inputs"));
        line("records", counts.text());
        if (counts.records() > 0) {
            line("decoded", fmt::format("{:.2f} %", 100 * static_cast<double>(counts.decoded()) /
                                                        static_cast<double>(counts.records())));
        }
    }

    void addTime() {
        const period_t& period = m_summary.period();
        if (period.first) {
            line("time", fmt::format("{} to {}, {}", instantText(*period.first),
                                     instantText(*period.last), durationText(period.duration())));
        }
    }

    void addVoyage() {
        const voyage_t& voyage = m_summary.voyage();
        if (voyage.fixes() == 0) {
            return;
        }
        const positionBox_t& box = voyage.box();
        const auto degrees = [](double angle) { return angle * degreesPerRadian; };
        line("position",
             fmt::format("latitude {:.6f} to {:.6f}, longitude {:.6f} to {:.6f}; {} fixes",
                         degrees(box.south()), degrees(box.north()), degrees(box.west()),
                         degrees(box.east()), voyage.fixes()));
        std::string track = fmt::format("{:.1f} m ({:.2f} nautical miles)", voyage.distance(),
                                        voyage.distance() / nauticalMile);
        if (const std::optional<double> speed = voyage.meanSpeed()) {
            track += fmt::format(", mean speed {:.2f} m/s ({:.1f} knots)", *speed, *speed / knot);
        }
        line("track", track + fmt::format(", {} {}", voyage.jumps(),
                                          voyage.jumps() == 1 ? "jump" : "jumps"));
    }

    void addSenders() {
        textTable_t all({{"source"},
                         {"prefix"},
                         {"talker"},
                         {"type"},
                         {"count", true},
                         {"per s", true},
                         {"void", true},
                         {"empty", true},
                         {"gap", true},
                         {"first"},
                         {"last"}});
        const bool isOneInput = m_summary.inputs() < 2;
        for (std::size_t i = 0; i < m_summary.sent().size(); ++i) {
            const senderName_t& name = m_summary.senders()[i];
            const senderSummary_t& sender = m_summary.sent()[i];
            const period_t& period = sender.period;
            const double rate = rateOf(sender);
            all.add({isOneInput ? "" : printable(name.source), printable(name.prefix),
                     printable(name.talker), printable(name.type), std::to_string(sender.count),
                     rate > 0 ? fmt::format("{:.3g}", rate) : "",
                     percent(sender.voidCount, sender.count),
                     percent(sender.emptyCount, sender.count),
                     sender.longestGap > 0 ? durationText(sender.longestGap) : "",
                     period.first ? instantText(*period.first) : "",
                     period.last ? instantText(*period.last) : ""});
        }
        table(all);
    }

    void addRanges() {
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
            for (const auto& [type, ranges] : m_summary.ranges()) {
                if (ranges[i].count() > 0) {
                    add(quantityRows[i].title, type, ranges[i], quantityRows[i].unit);
                }
            }
        }
        for (const auto& [talker, range] : m_summary.signals()) {
            add("signal strength", printable(systemOf(talker)), range, "dB-Hz");
        }
        table(all);
    }

    void addTables() {
        const auto words = [&](const char* head, const summary_t::words_t& counts) {
            textTable_t all({{head}, {"streams", true}});
            for (const auto& [word, count] : counts) {
                all.add({word.empty() ? "(none)" : printable(word), std::to_string(count)});
            }
            table(all);
        };
        words("format", m_summary.formats());
        words("network", m_summary.networks());
        words("authentication", m_summary.authTypes());
        textTable_t near({{"mountpoint"}, {"km", true}});
        for (const nearStream_t& stream : m_summary.nearStreams()) {
            constexpr double metresPerKilometre = 1000;
            near.add({printable(stream.mountpoint),
                      fmt::format("{:.1f}", stream.distance / metresPerKilometre)});
        }
        table(near);
    }

    const summary_t& m_summary;
    int m_descriptor;
    std::string m_text;
};

// The same for programs.

json_t textOf(std::string_view text) {
    buffer_t out;
    writeJsonString(out, text);
    return json_t::parse(out.text());
}

void setIfAny(json_t& object, const char* key, std::string_view text) {
    if (!text.empty()) {
        object[key] = textOf(text);
    }
}

void setPeriod(json_t& object, const period_t& period) {
    if (period.first) {
        object["first"] = instantText(*period.first);
        object["last"] = instantText(*period.last);
    }
}

void setRange(json_t& object, const valueRange_t& range) {
    object["count"] = range.count();
    object["least"] = range.least();
    object["median"] = range.median();
    object["greatest"] = range.greatest();
}

json_t voyageOf(const voyage_t& voyage) {
    const positionBox_t& box = voyage.box();
    json_t object = {{"fixes", voyage.fixes()},
                     {"south", box.south() * degreesPerRadian},
                     {"north", box.north() * degreesPerRadian},
                     {"west", box.west() * degreesPerRadian},
                     {"east", box.east() * degreesPerRadian},
                     {"distance", voyage.distance()},
                     {"duration", voyage.duration()},
                     {"jumps", voyage.jumps()}};
    if (const std::optional<double> speed = voyage.meanSpeed()) {
        object["meanSpeed"] = *speed;
    }
    return object;
}

json_t senderOf(const senderName_t& name, const senderSummary_t& sender) {
    json_t object = {{"source", textOf(name.source)}};
    setIfAny(object, "prefix", name.prefix);
    setIfAny(object, "talker", name.talker);
    object["type"] = textOf(name.type);
    object["count"] = sender.count;
    object["void"] = sender.voidCount;
    object["empty"] = sender.emptyCount;
    setPeriod(object, sender.period);
    if (const double rate = rateOf(sender); rate > 0) {
        object["rate"] = rate;
        object["longestGap"] = sender.longestGap;
    }
    return object;
}

json_t wordsOf(const summary_t::words_t& words) {
    json_t object = json_t::object();
    for (const auto& [word, count] : words) {
        object[textOf(word).get<std::string>()] = count;
    }
    return object;
}

json_t jsonOf(const summary_t& summary) {
    const counts_t& counts = summary.counts();
    json_t all = {{"inputs", summary.inputs()},
                  {"bytes", summary.bytes()},
                  {"records", counts.records()},
                  {"decoded", counts.decoded()},
                  {"untyped", counts.untyped()},
                  {"malformed", json_t::object()},
                  {"blankLines", counts.blankLines()},
                  {"undated", counts.undated()},
                  {"satelliteGroups",
                   {{"complete", counts.completeGroups()},
                    {"partial", counts.partialGroups()},
                    {"incomplete", counts.incompleteGroups()}}}};
    for (std::size_t i = 1; i < faultCount; ++i) {
        const auto fault = static_cast<fault_t>(i);
        if (counts.malformed(fault) > 0) {
            all["malformed"][faultText(fault)] = counts.malformed(fault);
        }
    }
    setPeriod(all, summary.period());
    if (summary.voyage().fixes() > 0) {
        all["track"] = voyageOf(summary.voyage());
    }
    all["senders"] = json_t::array();
    for (std::size_t i = 0; i < summary.sent().size(); ++i) {
        all["senders"].push_back(senderOf(summary.senders()[i], summary.sent()[i]));
    }
    all["values"] = json_t::array();
    for (const auto& [type, ranges] : summary.ranges()) {
        for (std::size_t i = 0; i < quantityCount; ++i) {
            if (ranges[i].count() > 0) {
                const quantityRow_t& row = quantityRows[i];
                json_t value = {{"type", type}, {"value", row.name}, {"unit", row.unit}};
                setRange(value, ranges[i]);
                all["values"].push_back(value);
            }
        }
    }
    all["signals"] = json_t::array();
    for (const auto& [talker, range] : summary.signals()) {
        json_t signal = {{"talker", textOf(talker)}, {"system", textOf(systemOf(talker))}};
        setRange(signal, range);
        all["signals"].push_back(signal);
    }
    if (!summary.formats().empty()) {
        all["sourcetable"] = {{"formats", wordsOf(summary.formats())},
                              {"networks", wordsOf(summary.networks())},
                              {"authTypes", wordsOf(summary.authTypes())}};
        for (const nearStream_t& stream : summary.nearStreams()) {
            all["sourcetable"]["near"].push_back(
                {{"mountpoint", textOf(stream.mountpoint)}, {"distance", stream.distance}});
        }
    }
    return all;
}

} // namespace

int summaryCommand(const summaryCommandOptions_t& options) {
    output_t output(options.output, options.files);
    summaryConsumer_t consumer(options.summary);
    const bool areRead = readRecords(options.files, options.read, output, consumer);
    const summary_t& summary = consumer.summary();
    output.buffer().append(options.asJson ? jsonOf(summary).dump(2) + '\n'
                                          : page_t(summary, output.descriptor()).text());
    return finish(output, areRead ? 0 : exitFailure, areRead);
}
