#include "tools/command/decodeCommand.h"

#include <algorithm>

#include "tools/analysis/counts.h"
#include "tools/command/readInput.h"
#include "tools/command/recordPieces.h"
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
    void clearCounts() { m_counts = {}; }

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
        : m_writer(std::move(records), options), m_out(out) {}

    void writeHead() { m_writer.writeHead(m_out); }
    void setSource(std::string_view name) { m_source = name; }
    void write(const record_t& record, scratch_t& scratch) {
        m_writer.write(record, m_source, scratch, m_out);
    }

private:
    tableWriter_t m_writer;
    buffer_t& m_out;
    std::string m_source;
};

// The text that a piece of an input becomes.
template <typename Writer>
class textLines_t {
public:
    template <typename MakeWriter>
    textLines_t(output_t& output, MakeWriter makeWriter)
        : m_output(output), m_writer(makeWriter(m_text)) {}

    Writer& writer() { return m_writer; }
    void clear() { m_text.clear(); }
    // Without a copy.
    void deliver() {
        m_output.flush();
        std::swap(m_output.buffer(), m_text);
        m_output.flush();
        std::swap(m_output.buffer(), m_text);
    }

private:
    output_t& m_output;
    buffer_t m_text;
    Writer m_writer;
};

// The lines of tables in a folder that a piece of an input becomes.
class folderLines_t {
public:
    folderLines_t(tableFiles_t& files, const decodeOptions_t& options)
        : m_files(files), m_lines(options.table, *options.read.dictionary) {}

    tableLines_t& writer() { return m_lines; }
    void clear() { m_lines.clear(); }
    void deliver() { m_files.take(m_lines); }

private:
    tableFiles_t& m_files;
    tableLines_t m_lines;
};

// One piece, in lines of either kind.
template <typename Lines>
class decodedPiece_t : public pieceConsumer_t {
public:
    template <typename MakeLines>
    decodedPiece_t(const recordChoice_t& choice, counts_t& counts, MakeLines makeLines)
        : m_counts(counts), m_lines(makeLines()), m_consumer(choice, m_lines.writer()) {}

    void beginInput(const std::string& name, const recordReader_t& reader) override {
        m_consumer.beginInput(name, reader);
    }
    void take(const record_t& record) override { m_consumer.take(record); }
    void endInput(const recordReader_t& reader) override { m_consumer.endInput(reader); }

    void clear() override {
        m_lines.clear();
        m_consumer.clearCounts();
    }
    void deliver() override {
        m_lines.deliver();
        m_counts.add(m_consumer.counts());
    }

private:
    using writer_t = std::remove_reference_t<decltype(std::declval<Lines>().writer())>;

    counts_t& m_counts; // of the run
    Lines m_lines;
    decodeConsumer_t<writer_t> m_consumer;
};

// Returns the exit status. `makeLines` makes the lines of a piece; `hasFailed` is asked when all
// records were written.
template <typename Writer, typename MakeLines, typename HasFailed>
int decodeTo(Writer& writer, const decodeOptions_t& options, output_t& output, MakeLines makeLines,
             HasFailed hasFailed) {
    counts_t counts;
    const auto makePiece = [&] {
        return std::make_unique<decodedPiece_t<decltype(makeLines())>>(options.choice, counts,
                                                                       makeLines);
    };
    decodeConsumer_t<Writer> consumer(options.choice, writer);
    const bool areRead = options.pieces.jobs > 1
                             ? readRecordPieces(options.files, options.read, options.pieces, output,
                                                consumer, makePiece)
                             : readRecords(options.files, options.read, output, consumer);
    output.flush();
    const int status = finish(output, areRead && !hasFailed() ? 0 : exitFailure, areRead);
    if (!options.quiet && !output.isClosed()) {
        counts.add(consumer.counts());
        say("kalo: " + counts.text());
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
    return decodeTo(
        files, options, none, [&] { return folderLines_t(files, options); },
        [&files] { return files.failed(); });
}

// `makeWriter` makes a writer that appends to a buffer.
template <typename Writer, typename MakeWriter>
int decodeToOutput(Writer& writer, const decodeOptions_t& options, output_t& output,
                   MakeWriter makeWriter) {
    return decodeTo(
        writer, options, output, [&] { return textLines_t<Writer>(output, makeWriter); },
        [] { return false; });
}

} // namespace

int decodeCommand(const decodeOptions_t& options) {
    if (!options.outputFolder.empty()) {
        return decodeToFolder(options);
    }
    output_t output(options.output, options.files);
    if (options.format == format_t::json) {
        const auto makeWriter = [&](buffer_t& out) { return jsonWriter_t(out, options.values); };
        jsonWriter_t json = makeWriter(output.buffer());
        return decodeToOutput(json, options, output, makeWriter);
    }
    const auto makeWriter = [&](buffer_t& out) {
        return tableOutput_t(tableNamed(options.choice.types[0], *options.read.dictionary),
                             options.table, out);
    };
    tableOutput_t table = makeWriter(output.buffer());
    table.writeHead();
    return decodeToOutput(table, options, output, makeWriter);
}
