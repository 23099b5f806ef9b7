#include "tools/recordSplitter.h"

#include <algorithm>
#include <cctype>

#include "kalo/util/stringUtil.h"
#include "tools/recordTable.h"
#include "tools/stamp.h"

namespace {

constexpr std::string_view lineEnd = "\r\n";

bool startsWith(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
}

bool isStartCharacter(char c) { return c == '$' || c == '!'; }

bool isCapital(char c) { return c >= 'A' && c <= 'Z'; }

bool isDigit(char c) { return c >= '0' && c <= '9'; }

bool isHexDigit(char c) { return std::isxdigit(static_cast<unsigned char>(c)) != 0; }

unsigned hexValue(std::string_view digits) {
    unsigned value = 0;
    kalo::decode(std::string(digits), value, 16);
    return value;
}

// Whether the text behind a start character reads as an address and a comma: at least four capital
// letters and digits, a letter first.
bool isAddress(std::string_view text) {
    std::size_t length = 0;
    while (length < text.size() && (isCapital(text[length]) || isDigit(text[length]))) {
        ++length;
    }
    return length >= 4 && isCapital(text[0]) && length < text.size() && text[length] == ',';
}

unsigned exclusiveOr(std::string_view text) {
    unsigned result = 0;
    for (const char c : text) {
        result ^= static_cast<unsigned char>(c);
    }
    return result;
}

// The length up to and including the first "*hh" that is the checksum of what stands between the
// start character and it; 0 without one.
std::size_t lengthToChecksum(std::string_view text) {
    unsigned computed = 0;
    for (std::size_t i = 1; i + 2 < text.size(); ++i) {
        if (text[i] == '*' && isHexDigit(text[i + 1]) && isHexDigit(text[i + 2]) &&
            hexValue(text.substr(i + 1, 2)) == computed) {
            return i + 3;
        }
        computed ^= static_cast<unsigned char>(text[i]);
    }
    return 0;
}

// Whether a token behind the first four has a colon, which a tracking record cannot do without.
bool hasTaggedToken(std::string_view text) {
    text = text.substr(0, text.find('*'));
    for (int i = 0; i < 4; ++i) {
        text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
        text.remove_prefix(std::min(text.find(' '), text.size()));
    }
    return text.find(':') != std::string_view::npos;
}

// Date, time, or the value of a tag.
bool holdsAnything(const kalo::atsAsciiMsg_t& tracking) {
    constexpr unsigned firstTag = 4;
    kalo::date_t date;
    kalo::timeOfDay_t time;
    std::string text;
    bool found = tracking.decodeDate(date) || tracking.decodeTimeOfDay(time);
    for (unsigned slot = firstTag; slot < trackingSlotCount && !found; ++slot) {
        found = tracking.decodeField(slot, text);
    }
    return found;
}

bool isTableStatus(std::string_view text) {
    return startsWith(text, "SOURCETABLE ") || startsWith(text, "HTTP/");
}

// "Name: value"
bool isHeaderLine(std::string_view text) {
    const std::size_t colon = text.find(": ");
    return colon != std::string_view::npos && colon > 0 &&
           std::all_of(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(colon), [](char c) {
               return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '-';
           });
}

bool isTableRecord(kalo::ntripRecordType_t type) {
    return type == kalo::ntripRecordStream || type == kalo::ntripRecordCaster ||
           type == kalo::ntripRecordNetwork;
}

kalo::ntripRecordType_t tableLineOf(std::string_view completed) {
    auto length = static_cast<unsigned>(completed.size());
    return kalo::decodeNtripRecordType(completed.data(), length);
}

} // namespace

const char* faultText(fault_t fault) {
    switch (fault) {
    case fault_t::none: return "";
    case fault_t::noStartCharacter: return "no start character";
    case fault_t::noLineEnd: return "no line end";
    case fault_t::badChecksumDigits: return "bad checksum digits";
    case fault_t::checksumMismatch: return "checksum mismatch";
    case fault_t::noChecksum: return "no checksum";
    case fault_t::cut: return "cut";
    case fault_t::lineTooLong: return "line too long";
    case fault_t::notARecord: return "not a known record";
    case fault_t::nothingDecodes: return "nothing decodes";
    }
    return "";
}

recordSplitter_t::recordSplitter_t(const recordOptions_t& options) : m_options(options) {}

void recordSplitter_t::start(const line_t& line) {
    m_line = line;
    m_pieces.clear();
    m_nextPiece = 0;
    m_framed = {};
    std::size_t begin = 0;
    if (!m_options.strict && !line.continued) {
        const std::size_t length = stampLength(line.text);
        m_received = line.text.substr(0, length);
        begin = length > 0 ? length + 1 : 0;
    }
    const std::size_t size = line.text.size();
    if (line.tooLong) {
        m_pieces.push_back({size, 0, recordKind_t::none, fault_t::lineTooLong});
    } else if (m_options.only != recordKind_t::none && m_options.only != recordKind_t::sentence) {
        m_pieces.push_back({size, begin, m_options.only, fault_t::none});
    } else if (m_options.strict) {
        const recordKind_t kind = kindOf(line.text);
        m_pieces.push_back(
            {size, 0, kind == recordKind_t::none ? recordKind_t::sentence : kind, fault_t::none});
    } else {
        findPieces(begin);
    }
}

bool recordSplitter_t::next(record_t& record) {
    if (m_nextPiece == m_pieces.size()) {
        return false;
    }
    const piece_t& piece = m_pieces[m_nextPiece];
    const bool isFirst = m_nextPiece == 0;
    const std::size_t begin = isFirst ? 0 : m_pieces[m_nextPiece - 1].end;
    const std::size_t stamp =
        isFirst && !m_received.empty() && !m_line.continued ? m_received.size() + 1 : begin;
    ++m_nextPiece;
    record = {};
    record.raw = m_line.text.substr(begin, piece.end - begin);
    record.received = m_received;
    record.line = m_line.number;
    record.offset = m_line.offset + begin;
    record.fault = piece.fault;
    record.kind = piece.kind;
    if (piece.start > stamp) {
        record.prefix = m_line.text.substr(stamp, piece.start - stamp);
    }
    record.text = m_line.text.substr(piece.start, piece.end - piece.start);
    if (record.fault == fault_t::none) {
        decode(record);
    }
    return true;
}

void recordSplitter_t::findPieces(std::size_t begin) {
    const std::string_view text = m_line.text;
    findStarts(begin);
    // What stands in front of the first sentence is a record of its own, or belongs to it.
    const std::size_t first = m_starts.empty() ? text.size() : m_starts[0];
    const recordKind_t kind = kindOf(text.substr(begin, first - begin));
    if (kind != recordKind_t::none) {
        m_pieces.push_back({first, begin, kind, fault_t::none});
    } else if (m_starts.empty()) {
        const fault_t fault = m_options.only == recordKind_t::sentence ? fault_t::noStartCharacter
                                                                       : fault_t::notARecord;
        m_pieces.push_back({first, begin, kind, fault});
    }
    if (m_starts.size() == 1 && m_pieces.empty()) {
        const std::size_t length = matchedLength(text.substr(first));
        addSentence(first, length > 0 ? first + length : text.size(), text.size());
        return;
    }
    // Among several pieces a checksum alone tells a sentence from the remains of one.
    const std::size_t before = m_pieces.size();
    bool anyMatched = false;
    for (std::size_t i = 0; i < m_starts.size(); ++i) {
        const std::size_t end = i + 1 < m_starts.size() ? m_starts[i + 1] : text.size();
        const std::size_t length = matchedLength(text.substr(m_starts[i], end - m_starts[i]));
        if (length > 0) {
            anyMatched = true;
            addSentence(m_starts[i], m_starts[i] + length, end);
        } else {
            addCut(m_starts[i], end);
        }
    }
    if (anyMatched || m_starts.size() < 2) {
        return;
    }
    const std::size_t length = matchedLength(text.substr(first));
    if (length > 0) {
        m_pieces.resize(before);
        addSentence(first, first + length, text.size());
    }
}

// At the beginning a start character alone is enough, further on it takes an address behind it.
void recordSplitter_t::findStarts(std::size_t begin) {
    const std::string_view text = m_line.text;
    m_starts.clear();
    if (begin < text.size() && isStartCharacter(text[begin])) {
        m_starts.push_back(begin++);
    }
    for (; begin < text.size(); ++begin) {
        if (isStartCharacter(text[begin]) && isAddress(text.substr(begin + 1))) {
            m_starts.push_back(begin);
        }
    }
}

// A sentence that ends at `matched`, and what is left behind its checksum up to `end`.
void recordSplitter_t::addSentence(std::size_t start, std::size_t matched, std::size_t end) {
    m_pieces.push_back({matched, start, recordKind_t::sentence, fault_t::none});
    if (matched < end) {
        addCut(matched, end);
    }
}

void recordSplitter_t::addCut(std::size_t start, std::size_t end) {
    m_pieces.push_back({end, start, recordKind_t::none, fault_t::cut});
}

// The kind of a text that is no sentence.
recordKind_t recordSplitter_t::kindOf(std::string_view text) {
    if (m_options.only == recordKind_t::sentence || text.empty() || isStartCharacter(text[0])) {
        return recordKind_t::none;
    }
    if (text[0] == ':') {
        return recordKind_t::motion;
    }
    complete(text);
    kalo::date_t date;
    kalo::timeOfDay_t time;
    if (hasTaggedToken(text)) {
        const kalo::atsAsciiMsg_t tracking(m_completed.data(), m_completed.size());
        if (tracking.decodeDate(date) && tracking.decodeTimeOfDay(time)) {
            return recordKind_t::tracking;
        }
    }
    return isTableLine(text) ? recordKind_t::table : recordKind_t::none;
}

bool recordSplitter_t::isTableLine(std::string_view text) {
    const kalo::ntripRecordType_t type = tableLineOf(m_completed);
    if (isTableRecord(type) || startsWith(text, "ENDSOURCETABLE")) {
        m_inTableHeader = false;
        return true;
    }
    if (isTableStatus(text)) {
        m_inTableHeader = true;
        return true;
    }
    return m_inTableHeader && isHeaderLine(text);
}

// How much of `text` is a sentence with a matching checksum; 0 for none of it.
std::size_t recordSplitter_t::matchedLength(std::string_view text) {
    if (frame(text) && carriesChecksum()) {
        return text.size();
    }
    return lengthToChecksum(text);
}

void recordSplitter_t::complete(std::string_view text) {
    m_framed = {};
    m_completed.assign(text).append(m_options.strict ? m_line.end : lineEnd);
}

bool recordSplitter_t::frame(std::string_view text) {
    if (text.data() != m_framed.data() || text.size() != m_framed.size()) {
        complete(text);
        m_framed = text;
        m_format.init(m_completed.data(), m_completed.size());
    }
    return m_format.isValid();
}

bool recordSplitter_t::carriesChecksum() const {
    return m_completed.size() >= 5 && m_completed[m_completed.size() - 5] == '*';
}

void recordSplitter_t::decode(record_t& record) {
    switch (record.kind) {
    case recordKind_t::none: return;
    case recordKind_t::sentence: judgeSentence(record); return;
    case recordKind_t::motion:
        m_motion.init(record.text.data(), record.text.size());
        record.motion = &m_motion;
        if (m_motion.validMask == 0) {
            record.motion = nullptr;
            record.fault = fault_t::nothingDecodes;
        }
        return;
    case recordKind_t::tracking: judgeTracking(record); return;
    case recordKind_t::table:
        complete(record.text);
        record.tableLine = tableLineOf(m_completed);
        m_table.init(m_completed.data(), static_cast<unsigned>(m_completed.size()));
        record.table = &m_table;
    }
}

void recordSplitter_t::judgeSentence(record_t& record) {
    const bool valid = frame(record.text);
    record.hasChecksum = carriesChecksum();
    if (valid) {
        if (record.hasChecksum || !m_options.requireChecksum) {
            record.sentence = &m_format;
        } else {
            record.fault = fault_t::noChecksum;
        }
        return;
    }
    const std::string_view sentence = m_completed;
    switch (m_format.formatError()) {
    case 0: record.fault = fault_t::noStartCharacter; return;
    case 1:
        record.fault = sentence.size() >= 2 && sentence.substr(sentence.size() - 2) == lineEnd
                           ? fault_t::badChecksumDigits
                           : fault_t::noLineEnd;
        return;
    default:
        record.fault = fault_t::checksumMismatch;
        record.stated = hexValue(sentence.substr(sentence.size() - 4, 2)) & 0xFF;
        record.computed = exclusiveOr(sentence.substr(1, sentence.size() - 6));
    }
}

void recordSplitter_t::judgeTracking(record_t& record) {
    complete(record.text);
    m_tracking = kalo::atsAsciiMsg_t(m_completed.data(), m_completed.size());
    if (!holdsAnything(m_tracking)) {
        record.fault = fault_t::nothingDecodes;
        return;
    }
    record.tracking = &m_tracking;
    if (!m_tracking.checksumError()) {
        return;
    }
    const std::size_t star = record.text.find('*');
    const std::string_view behind = record.text.substr(star + 1);
    const auto digits = std::find_if_not(behind.begin(), behind.end(), isHexDigit) - behind.begin();
    record.fault = fault_t::badChecksumDigits;
    if (digits == 2) {
        record.fault = fault_t::checksumMismatch;
        record.stated = hexValue(behind.substr(0, 2));
        record.computed = exclusiveOr(record.text.substr(0, star));
    }
}
