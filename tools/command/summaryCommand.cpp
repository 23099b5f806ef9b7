#include "tools/command/summaryCommand.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "tools/analysis/summaryText.h"
#include "tools/command/readInput.h"
#include "tools/output/jsonString.h"
#include "tools/record/degrees.h"
#include "tools/terminal/colour.h"
#include "tools/terminal/message.h"
#include "tools/terminal/textTable.h"
#include "tools/time/instantText.h"

namespace {

using json_t = nlohmann::ordered_json;

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

// For programs.

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
    if (const double rate = sender.rate(); rate > 0) {
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
    for (const auto& [system, range] : summary.signals()) {
        json_t signal = {{"system", textOf(system)}};
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

// For people.

std::string textFor(int descriptor, const summary_t& summary) {
    std::string text;
    for (const summaryLine_t& line : summaryLines(summary)) {
        text += styled(style_t::heading, fmt::format("{:10}", line.head), descriptor) + ' ' +
                line.text + '\n';
    }
    for (const summaryTable_t& table : summaryTables(summary, printable)) {
        text += '\n' + table.table.text(descriptor);
    }
    return text;
}

} // namespace

int summaryCommand(const summaryCommandOptions_t& options) {
    output_t output(options.output, options.files);
    summaryConsumer_t consumer(options.summary);
    const bool areRead = readRecords(options.files, options.read, output, consumer);
    const summary_t& summary = consumer.summary();
    output.buffer().append(options.asJson ? jsonOf(summary).dump(2) + '\n'
                                          : textFor(output.descriptor(), summary));
    return finish(output, areRead ? 0 : exitFailure, areRead);
}
