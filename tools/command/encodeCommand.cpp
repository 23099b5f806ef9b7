#include "tools/command/encodeCommand.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <optional>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "kalo/sensors/tss1MsgBuilder.h"
#include "kalo/util/stringUtil.h"
#include "tools/command/readInput.h"
#include "tools/record/degrees.h"
#include "tools/terminal/message.h"
#include "tools/terminal/stopSignal.h"

namespace {

using kalo::tss1Msg_t;
using kalo::tss1MsgBuilder_t;

// The texts of one record, by their keys.
using recordTexts_t = std::map<std::string, std::string>;

// A value of the record: its range in counts, and how the builder gets it.
struct motionRow_t {
    const char* key;
    double scale; // of one count
    double least; // counts
    double most;
    const char* range; // for people
    bool isAngle;
    bool isTruncated; // by the builder, which rounds the others
    void (tss1MsgBuilder_t::*set)(double);
};

constexpr const char* statusKey = "status";

constexpr motionRow_t rows[] = {
    {"roll", tss1Msg_t::rollPitchScale, -9999, 9999, "-99.99 to 99.99 degrees", true, false,
     &tss1MsgBuilder_t::setRoll},
    {"pitch", tss1Msg_t::rollPitchScale, -9999, 9999, "-99.99 to 99.99 degrees", true, false,
     &tss1MsgBuilder_t::setPitch},
    {"heave", tss1Msg_t::heaveScale, -9999, 9999, "-99.99 to 99.99 m", false, false,
     &tss1MsgBuilder_t::setHeave},
    {"horizontalAcceleration", tss1Msg_t::hAccelScale, 0, 255, "0 to 9.7665 m/s2", false, true,
     &tss1MsgBuilder_t::setHorizontalAcceleration},
    {"verticalAcceleration", tss1Msg_t::vAccelScale, -32768, 32767, "-20.48 to 20.479375 m/s2",
     false, true, &tss1MsgBuilder_t::setVerticalAcceleration},
};

// What is wrong with a value; empty if the builder has taken it.
std::string setValue(tss1MsgBuilder_t& builder, const motionRow_t& row, const std::string& text,
                     bool radians) {
    double value = 0;
    if (!kalo::decode(text, value)) {
        return fmt::format("{} is not a number: {}", row.key, printable(text));
    }
    value *= row.isAngle && !radians ? radiansPerDegree : 1;
    const double count = std::nearbyint(value / row.scale);
    if (!(count >= row.least && count <= row.most) || (row.least == 0 && value < 0)) {
        return fmt::format("{} is out of range: {} (allowed: {})", row.key, printable(text),
                           row.range);
    }
    // The middle of the count is truncated to the count, on both sides of zero.
    const double middle = (count + (std::signbit(value) ? -0.5 : 0.5)) * row.scale;
    (builder.*row.set)(row.isTruncated ? middle : value);
    return {};
}

// The record with these texts, or what is wrong with them.
std::string build(const recordTexts_t& texts, bool radians, std::string& record) {
    tss1MsgBuilder_t builder;
    for (const motionRow_t& row : rows) {
        const auto found = texts.find(row.key);
        if (found == texts.end() || found->second.empty()) {
            return fmt::format("{} is missing", row.key);
        }
        std::string fault = setValue(builder, row, found->second, radians);
        if (!fault.empty()) {
            return fault;
        }
    }
    const auto status = texts.find(statusKey);
    if (status == texts.end() || status->second.empty()) {
        return "status is missing";
    }
    tss1Msg_t letter;
    if (status->second.size() != 1 || !letter.decodeStatus(status->second.data())) {
        return fmt::format("status is not one of U, u, G, g, H, h, F, f: {}",
                           printable(status->second));
    }
    builder.setStatus(letter.status);
    record = builder.build();
    return {};
}

// Which columns the first line of a table lacks; empty if it names all.
std::string missingColumns(const std::vector<std::string>& head) {
    std::string missing;
    const auto check = [&](const char* key) {
        if (std::find(head.begin(), head.end(), key) == head.end()) {
            missing.append(missing.empty() ? "no column for " : ", ").append(key);
        }
    };
    for (const motionRow_t& row : rows) {
        check(row.key);
    }
    check(statusKey);
    return missing;
}

// Whether the record is, or may be, one of motion.
bool isMotion(const recordTexts_t& texts) {
    const auto type = texts.find("type");
    return type == texts.end() || type->second.empty() || type->second == "TSS1";
}

// One line of RFC 4180; false when a quote does not close.
bool splitCsv(std::string_view line, std::vector<std::string>& cells) {
    cells.assign(1, "");
    bool quoted = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        if (c == '"' && quoted && i + 1 < line.size() && line[i + 1] == '"') {
            cells.back() += line[++i];
        } else if (c == '"') {
            quoted = !quoted;
        } else if (c == ',' && !quoted) {
            cells.emplace_back();
        } else {
            cells.back() += c;
        }
    }
    return !quoted;
}

// Takes the members of one JSON object. A member that is an object or a list has no text. Nothing
// that `decode` prints is nested deeper than `deepest`, and nothing here recurses.
class jsonReader_t : public nlohmann::json_sax<nlohmann::json> {
public:
    explicit jsonReader_t(recordTexts_t& out) : m_out(out) {}

    // Why it stopped.
    const std::string& fault() const { return m_fault; }

    bool null() override { return take("null"); }
    bool boolean(bool value) override { return take(value ? "true" : "false"); }
    bool number_integer(number_integer_t value) override { return take(std::to_string(value)); }
    bool number_unsigned(number_unsigned_t value) override { return take(std::to_string(value)); }
    bool number_float(number_float_t /*value*/, const string_t& text) override {
        return take(text);
    }
    bool string(string_t& value) override { return take(value); }
    bool binary(binary_t& /*value*/) override { return false; }
    bool start_object(std::size_t /*size*/) override { return begin(true); }
    bool key(string_t& name) override {
        if (m_depth == 1) {
            m_key = name;
        }
        return true;
    }
    bool end_object() override { return end(); }
    bool start_array(std::size_t /*size*/) override { return begin(false); }
    bool end_array() override { return end(); }
    bool parse_error(std::size_t /*position*/, const std::string& token,
                     const nlohmann::detail::exception& error) override {
        constexpr int numberOverflow = 406;
        if (error.id == numberOverflow && m_depth > 0) {
            m_fault = fmt::format("{} is out of range: {}", printable(m_key), printable(token));
        }
        return false;
    }

private:
    bool take(const std::string& text) {
        if (m_depth == 1) {
            m_out[m_key] = text;
        }
        return m_depth > 0; // a value that is not an object is not a record
    }
    bool begin(bool isObject) {
        constexpr int deepest = 3;
        const bool isRecord = m_depth > 0 || isObject;
        ++m_depth;
        if (isRecord && m_depth > deepest) {
            m_fault = "nested deeper than any record of kalo decode";
        }
        return isRecord && m_depth <= deepest;
    }
    bool end() {
        --m_depth;
        return true;
    }

    recordTexts_t& m_out;
    std::string m_key;
    std::string m_fault = "not a JSON object";
    int m_depth = 0;
};

// Reads the lines of one input, JSON or CSV by the first of them.
class reader_t {
public:
    // What is wrong with a line; empty when it is a record, whose texts `out` then has, or the
    // head of a table, with nothing in `out`.
    std::string read(std::string_view line, std::optional<recordTexts_t>& out) {
        out.reset();
        if (!m_isJson) {
            constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
            line.remove_prefix(
                line.substr(0, byteOrderMark.size()) == byteOrderMark ? byteOrderMark.size() : 0);
            const std::size_t first = line.find_first_not_of(" \t");
            if (first == std::string_view::npos) {
                return {};
            }
            m_isJson = line[first] == '{' || line[first] == '[';
        }
        return *m_isJson ? readJson(line, out) : readCsv(line, out);
    }

private:
    static std::string readJson(std::string_view line, std::optional<recordTexts_t>& out) {
        jsonReader_t reader(out.emplace());
        if (!nlohmann::json::sax_parse(line.begin(), line.end(), &reader)) {
            out.reset();
            return reader.fault();
        }
        return {};
    }

    std::string readCsv(std::string_view line, std::optional<recordTexts_t>& out) {
        std::vector<std::string> cells;
        const bool isClosed = splitCsv(line, cells);
        if (m_head.empty()) {
            m_head = cells;
            std::string fault = isClosed ? missingColumns(cells) : missingQuote;
            m_isHeadUsable = fault.empty();
            return fault;
        }
        if (!m_isHeadUsable) { // already reported
            return {};
        }
        if (!isClosed) {
            return missingQuote;
        }
        if (cells.size() != m_head.size()) {
            return fmt::format("{} columns, but the first line has {}", cells.size(),
                               m_head.size());
        }
        out.emplace();
        for (std::size_t i = 0; i < cells.size(); ++i) {
            (*out)[m_head[i]] = cells[i];
        }
        return {};
    }

    static constexpr const char* missingQuote = "missing closing quote";

    std::optional<bool> m_isJson;
    std::vector<std::string> m_head;
    bool m_isHeadUsable = false;
};

class encoder_t {
public:
    explicit encoder_t(const encodeOptions_t& options)
        : m_options(options), m_output(options.output, options.files) {}

    int run() {
        std::string name;
        std::optional<reader_t> reader;
        const lineUser_t user = {[&](const std::string& source) {
                                     name = source;
                                     reader.emplace();
                                 },
                                 [&](const line_t& line) { encodeLine(name, line, *reader); }};
        bool areRead = true;
        for (const std::string& file : m_options.files) {
            if (m_output.isClosed() || stopSignal() != 0) {
                break;
            }
            areRead = readLines(file, m_output, user) && areRead;
        }
        return finish(m_output, areRead && m_areEncoded ? 0 : exitFailure, areRead);
    }

private:
    void encodeLine(const std::string& name, const line_t& line, reader_t& reader) {
        std::optional<recordTexts_t> texts;
        std::string record;
        std::string fault = line.tooLong ? "longer than 64 KiB" : reader.read(line.text, texts);
        if (fault.empty() && texts && isMotion(*texts)) {
            fault = build(*texts, m_options.radians, record);
        }
        if (!fault.empty()) {
            complain(name, fmt::format("line {}: {}", line.number, fault));
            m_areEncoded = false;
        }
        m_output.buffer().append(record);
    }

    const encodeOptions_t& m_options;
    output_t m_output;
    bool m_areEncoded = true;
};

} // namespace

int encodeCommand(const encodeOptions_t& options) { return encoder_t(options).run(); }
