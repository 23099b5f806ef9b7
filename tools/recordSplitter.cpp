#include "tools/recordSplitter.h"

#include <cctype>

#include "kalo/util/stringUtil.h"
#include "tools/stamp.h"

namespace {

constexpr std::string_view lineEnd = "\r\n";

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
    if (line.tooLong) {
        m_pieces.push_back({line.text.size(), line.text.size(), fault_t::lineTooLong});
    } else if (m_options.strict) {
        m_pieces.push_back({line.text.size(), 0, fault_t::none});
    } else {
        findPieces(begin);
    }
}

bool recordSplitter_t::next(record_t& record) {
    if (m_nextPiece == m_pieces.size()) {
        return false;
    }
    const piece_t& piece = m_pieces[m_nextPiece];
    const std::size_t begin = m_nextPiece == 0 ? 0 : m_pieces[m_nextPiece - 1].end;
    record = {};
    record.raw = m_line.text.substr(begin, piece.end - begin);
    record.received = m_received;
    record.line = m_line.number;
    record.offset = m_line.offset + begin;
    record.fault = piece.fault;
    if (m_nextPiece == 0 && piece.start < piece.end) {
        const std::size_t stamp = m_received.empty() ? 0 : m_received.size() + 1;
        record.prefix = m_line.text.substr(stamp, piece.start - stamp);
    }
    ++m_nextPiece;
    if (record.fault == fault_t::none) {
        judge(record, m_line.text.substr(piece.start, piece.end - piece.start));
    }
    return true;
}

void recordSplitter_t::findPieces(std::size_t begin) {
    const std::string_view text = m_line.text;
    findStarts(begin);
    if (m_starts.empty()) {
        const fault_t fault = m_options.nmeaOnly ? fault_t::noStartCharacter : fault_t::notARecord;
        m_pieces.push_back({text.size(), text.size(), fault});
        return;
    }
    if (m_starts.size() == 1) {
        const std::size_t length = matchedLength(text.substr(m_starts[0]));
        addSentence(m_starts[0], length > 0 ? m_starts[0] + length : text.size(), text.size());
        return;
    }
    // Among several pieces a checksum alone tells a sentence from the remains of one.
    bool anyMatched = false;
    for (std::size_t i = 0; i < m_starts.size(); ++i) {
        const std::size_t end = i + 1 < m_starts.size() ? m_starts[i + 1] : text.size();
        const std::size_t length = matchedLength(text.substr(m_starts[i], end - m_starts[i]));
        if (length > 0) {
            anyMatched = true;
            addSentence(m_starts[i], m_starts[i] + length, end);
        } else {
            m_pieces.push_back({end, m_starts[i], fault_t::cut});
        }
    }
    if (anyMatched) {
        return;
    }
    const std::size_t length = matchedLength(text.substr(m_starts[0]));
    if (length > 0) {
        m_pieces.clear();
        addSentence(m_starts[0], m_starts[0] + length, text.size());
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
    m_pieces.push_back({matched, start, fault_t::none});
    if (matched < end) {
        m_pieces.push_back({end, end, fault_t::cut});
    }
}

// How much of `text` is a sentence with a matching checksum; 0 for none of it.
std::size_t recordSplitter_t::matchedLength(std::string_view text) {
    if (frame(text) && carriesChecksum()) {
        return text.size();
    }
    return lengthToChecksum(text);
}

bool recordSplitter_t::frame(std::string_view text) {
    if (text.data() != m_framed.data() || text.size() != m_framed.size()) {
        m_framed = text;
        m_sentence.assign(text).append(m_options.strict ? m_line.end : lineEnd);
        m_format.init(m_sentence.data(), m_sentence.size());
    }
    return m_format.isValid();
}

bool recordSplitter_t::carriesChecksum() const {
    return m_sentence.size() >= 5 && m_sentence[m_sentence.size() - 5] == '*';
}

void recordSplitter_t::judge(record_t& record, std::string_view text) {
    const bool valid = frame(text);
    record.hasChecksum = carriesChecksum();
    if (valid) {
        if (record.hasChecksum || !m_options.requireChecksum) {
            record.sentence = &m_format;
        } else {
            record.fault = fault_t::noChecksum;
        }
        return;
    }
    const std::string_view sentence = m_sentence;
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
