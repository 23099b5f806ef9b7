#include "tools/command/reportCommand.h"

#include <algorithm>

#include "tools/analysis/findingGroups.h"
#include "tools/command/readInput.h"
#include "tools/report/reportPage.h"

namespace {

bool isPart(const reportCommandOptions_t& options) { return options.since || options.until; }

summaryOptions_t summaryOptionsOf(const reportCommandOptions_t& options) {
    summaryOptions_t summary = options.summary;
    summary.isPart = isPart(options);
    return summary;
}

class reportConsumer_t : public recordConsumer_t {
public:
    explicit reportConsumer_t(const reportCommandOptions_t& options)
        : m_options(options), m_summary(summaryOptionsOf(options)),
          m_checker(options.check, m_findings), m_data(options.maxPoints) {}

    void beginInput(const std::string& name, const recordReader_t& reader) override {
        m_summary.beginInput(name);
        m_checker.beginInput(name, reader);
        m_data.beginInput(name);
    }

    void take(const record_t& record) override {
        if (!isInTime(record)) {
            m_checker.pass();
            return;
        }
        m_summary.add(record);
        m_checker.add(record);
        m_data.add(record);
    }

    void endInput(const recordReader_t& reader) override {
        m_summary.endInput(reader);
        m_checker.endInput();
        m_data.endInput(reader);
    }

    void write(buffer_t& out, const reportText_t& text) const {
        writeReportPage(out, text, m_summary, m_findings, m_data);
    }

private:
    bool isInTime(const record_t& record) const {
        if (!isPart(m_options)) {
            return true;
        }
        const std::optional<double> moment = momentOf(record);
        return moment && !(m_options.since && *moment < *m_options.since) &&
               !(m_options.until && *moment > *m_options.until);
    }

    const reportCommandOptions_t& m_options;
    summary_t m_summary;
    findingGroups_t m_findings;
    checker_t m_checker;
    reportData_t m_data;
};

// As it can be given to a shell again.
std::string commandOf(const std::vector<std::string>& arguments) {
    std::string command = "kalo report";
    for (const std::string& argument : arguments) {
        const bool isPlain = !argument.empty() && argument.find_first_not_of(
                                                      "abcdefghijklmnopqrstuvwxyz"
                                                      "ABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                                      "0123456789-_./:,=+@%") == std::string::npos;
        command += ' ';
        if (isPlain) {
            command += argument;
            continue;
        }
        command += '\'';
        for (const char c : argument) {
            command += c == '\'' ? std::string("'\\''") : std::string(1, c);
        }
        command += '\'';
    }
    return command;
}

} // namespace

int reportCommand(const reportCommandOptions_t& options) {
    output_t output(options.output, options.files);
    reportConsumer_t consumer(options);
    const bool areRead = readRecords(options.files, options.read, output, consumer);
    consumer.write(output.buffer(), {KALO_VERSION, commandOf(options.arguments), isPart(options)});
    return finish(output, areRead ? 0 : exitFailure, areRead);
}
