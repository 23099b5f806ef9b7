#include "tools/command/decodeCommand.h"

#include <algorithm>

#include <unistd.h>

#include "tools/analysis/counts.h"
#include "tools/command/readInput.h"
#include "tools/command/recordInputs.h"
#include "tools/record/registry.h"
#include "tools/terminal/message.h"

namespace {

template <typename T, typename U>
bool chooses(const std::vector<T>& list, const U& value) {
    return list.empty() || std::find(list.begin(), list.end(), value) != list.end();
}

class jsonConsumer_t : public recordConsumer_t {
public:
    jsonConsumer_t(const decodeOptions_t& options, buffer_t& out)
        : m_choice(options.choice), m_json(out, options.values) {
        m_choosesAll = m_choice.types.empty() && m_choice.talkers.empty() &&
                       m_choice.prefixes.empty() && !m_choice.onlyValid &&
                       !m_choice.onlyMalformed && !m_choice.since && !m_choice.until;
    }

    void beginInput(const std::string& name, const recordReader_t& /*reader*/) override {
        m_json.setSource(name);
    }

    void take(const record_t& record) override {
        m_counts.add(record);
        if (m_choosesAll || isChosen(record)) {
            m_json.write(record, m_scratch);
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
    jsonWriter_t m_json;
    counts_t m_counts;
    scratch_t m_scratch;
};

} // namespace

int decodeCommand(const decodeOptions_t& options) {
    output_t output(STDOUT_FILENO);
    jsonConsumer_t consumer(options, output.buffer());
    const bool areRead = readRecords(options.files, options.read, output, consumer);
    const int status = finish(output, areRead ? 0 : exitFailure);
    if (!options.quiet && !output.isClosed()) {
        say("kalo: " + consumer.counts().text());
    }
    return status;
}
