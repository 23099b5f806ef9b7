#include "tools/command/decodeCommand.h"

#include <algorithm>

#include "tools/analysis/counts.h"
#include "tools/command/readInput.h"
#include "tools/output/tableFiles.h"
#include "tools/record/registry.h"
#include "tools/terminal/message.h"

namespace {

template <typename T, typename U>
bool chooses(const std::vector<T>& list, const U& value) {
    return list.empty() || std::find(list.begin(), list.end(), value) != list.end();
}

// Counts the records, and hands those that are chosen to a writer.
template <typename Writer>
class decodeConsumer_t : public recordConsumer_t {
public:
    decodeConsumer_t(const recordChoice_t& choice, Writer& writer)
        : m_choice(choice), m_writer(writer) {
        m_choosesAll = m_choice.types.empty() && m_choice.talkers.empty() &&
                       m_choice.prefixes.empty() && !m_choice.onlyValid &&
                       !m_choice.onlyMalformed && !m_choice.since && !m_choice.until;
    }

    void beginInput(const std::string& name, const recordReader_t& /*reader*/) override {
        m_writer.setSource(name);
    }

    void take(const record_t& record) override {
        m_counts.add(record);
        if (m_choosesAll || isChosen(record)) {
            m_writer.write(record, m_scratch);
        }
    }

    void endInput(const recordReader_t& reader) override { m_counts.add(reader); }

    const counts_t& counts() const { return m_counts; }

private:
    bool isChosen(const record_t& record) const {
        const bool isMalformed = record.fault != fault_t::none;
        return !(m_choice.onlyValid && isMalformed) && !(m_choice.onlyMalformed && !isMalformed) &&
               chooses(m_choice.types, typeNameOf(record)) &&
               chooses(m_choice.talkers, record.talker) &&
               chooses(m_choice.prefixes, record.prefix) && isInTime(record);
    }

    // A record without a time of its own is chosen by its receive stamp, otherwise by the last
    // known time of the input. Without any time it is printed.
    bool isInTime(const record_t& record) const {
        const std::optional<double> moment = momentOf(record);
        return !moment || !((m_choice.since && *moment < *m_choice.since) ||
                            (m_choice.until && *moment > *m_choice.until));
    }

    const recordChoice_t& m_choice;
    bool m_choosesAll;
    Writer& m_writer;
    counts_t m_counts;
    scratch_t m_scratch;
};

// One table, to an output.
class tableOutput_t {
public:
    tableOutput_t(recordTable_t records, const tableOptions_t& options, buffer_t& out)
        : m_writer(std::move(records), options), m_out(out) {
        m_writer.writeHead(m_out);
    }

    void setSource(std::string_view name) { m_source = name; }
    void write(const record_t& record, scratch_t& scratch) {
        m_writer.write(record, m_source, scratch, m_out);
    }

private:
    tableWriter_t m_writer;
    buffer_t& m_out;
    std::string m_source;
};

// Returns the exit status; `hasFailed` is asked when all records were written.
template <typename Writer, typename HasFailed>
int decodeTo(Writer& writer, const decodeOptions_t& options, output_t& output,
             HasFailed hasFailed) {
    decodeConsumer_t<Writer> consumer(options.choice, writer);
    const bool areRead = readRecords(options.files, options.read, output, consumer);
    output.flush();
    const int status = finish(output, areRead && !hasFailed() ? 0 : exitFailure, areRead);
    if (!options.quiet && !output.isClosed()) {
        say("kalo: " + consumer.counts().text());
    }
    return status;
}

int decodeToFolder(const decodeOptions_t& options) {
    const tableFolder_t folder = {options.outputFolder, options.files};
    tableFiles_t files(folder, options.table, *options.read.dictionary);
    if (!files.makeFolder()) {
        return exitFailure;
    }
    output_t none;
    none.flushWith([&files] { files.flush(); });
    return decodeTo(files, options, none, [&files] { return files.failed(); });
}

} // namespace

int decodeCommand(const decodeOptions_t& options) {
    if (!options.outputFolder.empty()) {
        return decodeToFolder(options);
    }
    output_t output(options.output, options.files);
    const auto neverFails = [] { return false; };
    if (options.format != format_t::json) {
        tableOutput_t table(tableNamed(options.choice.types[0], *options.read.dictionary),
                            options.table, output.buffer());
        return decodeTo(table, options, output, neverFails);
    }
    jsonWriter_t json(output.buffer(), options.values);
    return decodeTo(json, options, output, neverFails);
}
