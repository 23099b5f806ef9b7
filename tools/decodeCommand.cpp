#include "tools/decodeCommand.h"

#include <algorithm>
#include <cstdio>
#include <memory>

#include <unistd.h>

#include "tools/input.h"
#include "tools/message.h"
#include "tools/output.h"
#include "tools/stopSignal.h"
#include "tools/summary.h"

namespace {

class decoder_t {
public:
    explicit decoder_t(const decodeOptions_t& options)
        : m_options(options), m_output(STDOUT_FILENO) {}

    int run() {
        for (const std::string& file : m_options.files) {
            decodeInput(file);
            if (m_output.isClosed() || stopSignal() != 0) {
                break;
            }
        }
        m_output.flush();
        if (m_output.isClosed()) {
            return exitStatus(m_output);
        }
        if (!m_options.quiet) {
            fmt::print(stderr, "kalo: {}\n", m_summary.text());
        }
        return stopSignal() != 0 ? exitSignal + stopSignal() : m_status;
    }

private:
    void decodeInput(const std::string& name) {
        input_t input(name);
        lineSplitter_t lines(m_options.record.strict);
        recordSplitter_t records(m_options.record);
        std::string start; // the first bytes, as long as they do not tell what they are
        content_t content = content_t::undecided;
        while (!m_output.isClosed() && !input.failed()) {
            // A live reader gets what there is before the next bytes are waited for.
            if (!input.isReady()) {
                m_output.flush();
                input.wait();
            }
            std::string_view data = input.read();
            if (data.empty()) {
                break;
            }
            if (content == content_t::undecided) {
                const char* format = nullptr;
                data = start.append(data);
                content = contentOf(start, format);
                if (content == content_t::compressed) {
                    complain(name, fmt::format("looks like {}, which is not read; unpack it first",
                                               format));
                    m_status = exitFailure;
                    return;
                }
                if (content == content_t::undecided) {
                    continue;
                }
            }
            lines.append(data);
            decodeLines(name, lines, records);
            m_output.flushIfDue();
        }
        if (stopSignal() == 0) {
            if (content == content_t::undecided) {
                lines.append(start);
            }
            lines.finish();
            decodeLines(name, lines, records);
        }
        if (input.failed()) {
            complain(name, input.reason());
            m_status = exitFailure;
        }
        m_summary.blankLines += lines.blankLines();
    }

    void decodeLines(const std::string& source, lineSplitter_t& lines, recordSplitter_t& records) {
        line_t line;
        record_t record;
        while (!m_output.isClosed() && lines.next(line)) {
            records.start(line);
            while (records.next(record)) {
                decodeRecord(source, record);
            }
            m_output.flushIfLarge();
        }
    }

    void decodeRecord(const std::string& source, const record_t& record) {
        std::unique_ptr<const kalo::nmeaMsg_t> view;
        const recordType_t* type = nullptr;
        if (record.sentence != nullptr) {
            view.reset(kalo::nmeaMsg_t::create(*record.sentence));
            type = sentenceType(record.sentence->type());
        }
        m_summary.count(record.fault, view != nullptr);
        if (isWanted(record, type)) {
            writeJson(m_output.buffer(), source, record, type, view.get(), m_options.json);
        }
    }

    bool isWanted(const record_t& record, const recordType_t* type) const {
        if (m_options.onlyValid && record.fault != fault_t::none) {
            return false;
        }
        const std::vector<const recordType_t*>& types = m_options.types;
        return types.empty() ||
               (type != nullptr && std::find(types.begin(), types.end(), type) != types.end());
    }

    const decodeOptions_t& m_options;
    output_t m_output;
    summary_t m_summary;
    int m_status = 0;
};

} // namespace

int decodeCommand(const decodeOptions_t& options) { return decoder_t(options).run(); }
