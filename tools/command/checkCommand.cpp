#include "tools/command/checkCommand.h"

#include <algorithm>

#include <fmt/format.h>

#include "tools/analysis/findingGroups.h"
#include "tools/command/readInput.h"
#include "tools/output/jsonString.h"
#include "tools/terminal/colour.h"
#include "tools/terminal/message.h"

namespace {

// The findings of a run, printed at once or in groups at the end.
class findings_t : public findingTaker_t {
public:
    findings_t(const checkCommandOptions_t& options, output_t& output)
        : m_options(options), m_output(output) {}

    void take(finding_t finding) override {
        if (isIgnored(finding.id)) {
            return;
        }
        (isFault(finding.id) ? m_faults : m_notes) += finding.count;
        if (m_options.printsEach && m_options.format != checkFormat_t::junit) {
            print(finding);
            return;
        }
        m_groups.take(std::move(finding));
    }

    /// `areRead` is false if an input could not be read to its end.
    void finish(bool areRead) {
        if (m_options.format == checkFormat_t::junit) {
            printJunit(areRead);
            return;
        }
        for (const finding_t& group : m_groups.all()) {
            print(group);
        }
    }

    std::uint64_t faults() const { return m_faults; }
    std::uint64_t notes() const { return m_notes; }

private:
    bool isFault(findingId_t id) const { return m_options.areNotesFaults || kindOf(id).isFault; }
    const char* severity(findingId_t id) const { return isFault(id) ? "fault" : "note"; }

    std::string styledSeverity(findingId_t id) const {
        return m_options.format != checkFormat_t::text
                   ? severity(id)
                   : styled(isFault(id) ? style_t::fault : style_t::note, severity(id),
                            m_output.descriptor());
    }

    void print(const finding_t& finding) {
        m_output.buffer().append(m_options.format == checkFormat_t::json ? jsonOf(finding)
                                                                         : textOf(finding));
        m_output.flushIfLarge();
    }

    std::string textOf(const finding_t& finding) const {
        std::string text =
            fmt::format("{}:{} (offset {}): {}: {} [{}]", printable(finding.first.source),
                        finding.first.line, finding.first.offset, styledSeverity(finding.id),
                        messageOf(finding), kindOf(finding.id).name);
        if (finding.count > 1) {
            text += fmt::format("; {} times, last at {}:{}", finding.count,
                                printable(finding.last.source), finding.last.line);
        }
        if (!finding.raw.empty()) {
            text += "\n    " + printable(finding.raw);
        }
        return text + '\n';
    }

    std::string jsonOf(const finding_t& finding) const {
        buffer_t out;
        const auto addText = [&](std::string_view key, std::string_view text) {
            out.append(key);
            writeJsonString(out, text);
        };
        const auto addPlace = [&](std::string_view key, const recordPlace_t& place) {
            out.append(key);
            addText("{\"source\":", place.source);
            out.append(fmt::format(",\"line\":{},\"offset\":{}}}", place.line, place.offset));
        };
        addText("{\"kind\":", kindOf(finding.id).name);
        addText(",\"severity\":", severity(finding.id));
        addText(",\"message\":", messageOf(finding));
        out.append(fmt::format(",\"count\":{}", finding.count));
        addPlace(",\"first\":", finding.first);
        addPlace(",\"last\":", finding.last);
        if (!finding.raw.empty()) {
            addText(",\"raw\":", finding.raw);
        }
        out.append("}\n");
        return std::string(out.text());
    }

    static std::string xmlOf(std::string_view text) {
        std::string xml;
        for (const char c : text) {
            switch (c) {
            case '&': xml += "&amp;"; break;
            case '<': xml += "&lt;"; break;
            case '>': xml += "&gt;"; break;
            case '"': xml += "&quot;"; break;
            default: xml += c; break;
            }
        }
        return xml;
    }

    bool isIgnored(findingId_t id) const {
        const auto& ignored = m_options.ignored;
        return std::find(ignored.begin(), ignored.end(), id) != ignored.end();
    }

    void printJunit(bool areRead) {
        std::size_t failures = 0;
        std::size_t skipped = 0;
        std::string cases;
        for (std::size_t i = 0; i < findingKindCount; ++i) {
            const auto id = static_cast<findingId_t>(i);
            std::string text;
            for (const finding_t& group : m_groups.all()) {
                text += group.id == id ? textOf(group) : "";
            }
            cases +=
                fmt::format("  <testcase classname=\"kalo.check\" name=\"{}\"", kindOf(id).name);
            if (isIgnored(id)) {
                ++skipped;
                cases += ">\n    <skipped/>\n  </testcase>\n";
            } else if (text.empty()) {
                cases += "/>\n";
            } else if (isFault(id)) {
                ++failures;
                cases += fmt::format(">\n    <failure message=\"{}\">{}</failure>\n  </testcase>\n",
                                     xmlOf(kindOf(id).meaning), xmlOf(text));
            } else {
                cases +=
                    fmt::format(">\n    <system-out>{}</system-out>\n  </testcase>\n", xmlOf(text));
            }
        }
        cases += "  <testcase classname=\"kalo.check\" name=\"inputs-are-read\"";
        cases += areRead ? "/>\n"
                         : ">\n    <error message=\"an input could not be read to its end\"/>"
                           "\n  </testcase>\n";
        m_output.buffer().append(
            fmt::format("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                        "<testsuite name=\"kalo check\" tests=\"{}\" failures=\"{}\" errors=\"{}\" "
                        "skipped=\"{}\">\n{}</testsuite>\n",
                        findingKindCount + 1, failures, areRead ? 0 : 1, skipped, cases));
    }

    const checkCommandOptions_t& m_options;
    output_t& m_output;
    findingGroups_t m_groups;
    std::uint64_t m_faults = 0;
    std::uint64_t m_notes = 0;
};

class checkConsumer_t : public recordConsumer_t {
public:
    checkConsumer_t(const checkOptions_t& options, findingTaker_t& taker)
        : m_checker(options, taker) {}

    void beginInput(const std::string& name, const recordReader_t& reader) override {
        m_checker.beginInput(name, reader);
    }
    void take(const record_t& record) override { m_checker.add(record); }
    void endInput(const recordReader_t& /*reader*/) override { m_checker.endInput(); }

private:
    checker_t m_checker;
};

} // namespace

int checkCommand(const checkCommandOptions_t& options) {
    output_t output(options.output, options.files);
    findings_t findings(options, output);
    checkConsumer_t consumer(options.check, findings);
    const bool areRead = readRecords(options.files, options.read, output, consumer);
    findings.finish(areRead);
    if (options.format == checkFormat_t::text) {
        output.buffer().append(fmt::format(
            "{} {}, {} {}\n", findings.faults(), findings.faults() == 1 ? "fault" : "faults",
            findings.notes(), findings.notes() == 1 ? "note" : "notes"));
    }
    return finish(output, areRead && findings.faults() == 0 ? 0 : exitFailure, areRead);
}
