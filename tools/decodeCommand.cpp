#include "tools/decodeCommand.h"

#include <algorithm>
#include <cstdio>
#include <memory>

#include <unistd.h>

#include "kalo/nmea/rmcMsg.h"
#include "tools/dating.h"
#include "tools/input.h"
#include "tools/message.h"
#include "tools/output.h"
#include "tools/readInput.h"
#include "tools/satelliteSets.h"
#include "tools/stamp.h"
#include "tools/stopSignal.h"
#include "tools/summary.h"

namespace {

// What is kept for one input.
struct inputState_t {
    const std::string& name;
    lineSplitter_t lines;
    recordSplitter_t records;
    dating_t dating;
    satelliteSets_t satellites;

    inputState_t(const std::string& input, const decodeOptions_t& options)
        : name(input), lines(options.record.strict), records(options.record), dating(options.date) {
    }
};

// Who sent it: the address without its start character and the three letters of the type.
std::string_view talkerOf(std::string_view address) {
    const bool proprietary = address.size() > 1 && address[1] == 'P';
    return proprietary || address.size() <= 4 ? "" : address.substr(1, address.size() - 4);
}

// What a record tells about time; nothing without a time of day.
std::optional<timeClue_t> clueOf(const kalo::nmeaMsg_t& view) {
    timeClue_t clue;
    if (!readTimeOfDay(view, clue.time)) {
        return {};
    }
    kalo::date_t date;
    if (view.decodeDate(date)) {
        clue.date = date;
    }
    char validity = 0;
    clue.isVoid = view.type() == kalo::msgTypeRmc &&
                  static_cast<const kalo::rmcMsg_t&>(view).decodeValidity(validity) &&
                  validity == 'V';
    return clue;
}

std::optional<timeClue_t> clueOf(const kalo::atsAsciiMsg_t& tracking) {
    timeClue_t clue;
    if (!readTimeOfDay(tracking, clue.time)) {
        return {};
    }
    kalo::date_t date;
    if (tracking.decodeDate(date)) {
        clue.date = date;
    }
    return clue;
}

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
        inputState_t state(name, m_options);
        const bool isRead = readBlocks(input, m_output, [&](std::string_view block) {
            state.lines.append(block);
            decodeLines(state);
        });
        m_status = isRead ? m_status : exitFailure;
        if (stopSignal() == 0) {
            state.lines.finish();
            decodeLines(state);
        }
        state.satellites.finish();
        m_summary.blankLines += state.lines.blankLines();
        m_summary.completeSets += state.satellites.complete();
        m_summary.incompleteSets += state.satellites.incomplete();
        m_summary.undated += state.dating.undated();
    }

    void decodeLines(inputState_t& state) {
        line_t line;
        record_t record;
        while (!m_output.isClosed() && state.lines.next(line)) {
            state.records.start(line);
            while (state.records.next(record)) {
                decodeRecord(state, record);
            }
            m_output.flushIfLarge();
        }
    }

    void decodeRecord(inputState_t& state, const record_t& record) {
        jsonRecord_t json;
        json.input = state.name;
        json.record = &record;
        source_t values;
        values.text = record.text;
        values.motion = record.motion;
        values.tracking = record.tracking;
        values.table = record.table;
        std::unique_ptr<const kalo::nmeaMsg_t> view;
        std::optional<timeClue_t> clue;
        if (record.sentence != nullptr) {
            view.reset(kalo::nmeaMsg_t::create(*record.sentence));
            values.sentence = view.get();
            json.type = sentenceType(record.sentence->type());
            json.talker = talkerOf(record.sentence->field(0)->toString());
            clue = view == nullptr ? std::nullopt : clueOf(*view);
        } else if (record.motion != nullptr) {
            json.type = &motionType;
        } else if (record.tracking != nullptr) {
            json.type = &trackingType;
            clue = record.fault == fault_t::none ? clueOf(*record.tracking) : std::nullopt;
        } else if (record.table != nullptr) {
            json.type = &tableType(record.tableLine);
        }
        const bool hasValues =
            json.type != nullptr && (record.sentence == nullptr || view != nullptr);
        json.values = hasValues ? &values : nullptr;
        m_summary.count(record.fault, hasValues);
        std::optional<instant_t> instant;
        if (clue) {
            clue->stamp = stampTime(record.received);
            instant = state.dating.date(*clue);
        }
        json.instant = instant ? &*instant : nullptr;
        write(json);
        if (view != nullptr && view->type() == kalo::msgTypeGsv) {
            decodeSatellites(state, json, static_cast<const kalo::gsvMsg_t&>(*view));
        }
    }

    // The sentence may have completed a group, which then is a record of its own.
    void decodeSatellites(inputState_t& state, const jsonRecord_t& sentence,
                          const kalo::gsvMsg_t& view) {
        satelliteSet_t set;
        if (!state.satellites.offer(view, set)) {
            return;
        }
        record_t record;
        record.line = sentence.record->line;
        record.received = sentence.record->received;
        source_t values;
        values.satellites = &set;
        jsonRecord_t json = sentence;
        json.record = &record;
        json.type = &satellitesType;
        json.values = &values;
        write(json);
    }

    void write(const jsonRecord_t& json) {
        if (m_options.onlyValid && json.record->fault != fault_t::none) {
            return;
        }
        const std::vector<const recordType_t*>& types = m_options.types;
        if (types.empty() || (json.type != nullptr &&
                              std::find(types.begin(), types.end(), json.type) != types.end())) {
            writeJson(m_output.buffer(), json, m_options.json);
        }
    }

    const decodeOptions_t& m_options;
    output_t m_output;
    summary_t m_summary;
    int m_status = 0;
};

} // namespace

int decodeCommand(const decodeOptions_t& options) { return decoder_t(options).run(); }
