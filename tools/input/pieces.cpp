#include "tools/input/pieces.h"

#include <algorithm>

#include "tools/input/checksum.h"
#include "tools/input/kinds.h"
#include "tools/input/stamp.h"
#include "tools/input/text.h"

namespace {

constexpr std::string_view lineEnd = "\r\n";

bool isStartCharacter(char c) { return c == '$' || c == '!'; }

// Whether the text behind a start character reads as an address and a comma: at least four capital
// letters and digits, a letter first.
bool isAddress(std::string_view text) {
    std::size_t length = 0;
    while (length < text.size() && (isCapital(text[length]) || isDigit(text[length]))) {
        ++length;
    }
    return length >= 4 && isCapital(text[0]) && length < text.size() && text[length] == ',';
}

// Whether what may be an address, whatever its length and letters, is printable.
bool isPrintableAddress(std::string_view text) {
    const std::string_view address = text.substr(0, text.find_first_of(",*"));
    return std::all_of(address.begin(), address.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

// Cuts one line; its parts are positions in the text of the line.
class cutter_t {
public:
    cutter_t(const line_t& line, const splitOptions_t& options, bool& inTableHeader,
             std::vector<piece_t>& pieces)
        : m_text(line.text), m_end(line.end), m_options(options), m_inTableHeader(inTableHeader),
          m_pieces(pieces) {}

    void cut(std::size_t begin);
    void cutStrictly();
    void addWhole(std::size_t begin, kind_t kind, fault_t fault);
    void addOther(kind_t kind, std::size_t begin, std::size_t end);

private:
    struct start_t {
        std::size_t begin; // of the start characters in a row, which all but the last are prefix
        std::size_t at;
    };

    bool isThere(const start_t& start) const { return start.at < m_text.size(); }
    start_t findStart(std::size_t from, std::size_t weak) const;
    void addAlone(const start_t& start);
    void addJoined(const start_t& first);
    bool addMatching(const start_t& start, std::size_t end);
    void addCut(std::size_t start, std::size_t end);
    piece_t& add(std::size_t start, std::size_t textEnd, std::size_t end, kind_t kind,
                 fault_t fault = fault_t::none);
    kind_t kindOf(std::string_view text, bool beforeSentence);

    std::string_view m_text;
    std::string_view m_end;
    const splitOptions_t& m_options;
    bool& m_inTableHeader;
    std::vector<piece_t>& m_pieces;
    std::size_t m_front = 0; // where the first prefix may begin
    std::size_t m_done = 0;  // where the next piece begins
};

// Text before the first start is a record of its own, or the prefix of the sentence.
void cutter_t::cut(std::size_t begin) {
    m_front = begin;
    const start_t first = findStart(begin, begin);
    const kind_t kind = kindOf(m_text.substr(begin, first.begin - begin), isThere(first));
    if (kind != kind_t::none) {
        addOther(kind, begin, first.begin);
    } else if (!isThere(first)) {
        addWhole(begin, kind,
                 m_options.only == kind_t::sentence ? fault_t::noStartCharacter
                                                    : fault_t::notARecord);
    } else if (!isThere(findStart(first.at + 1, m_text.size()))) {
        addAlone(first);
        return;
    }
    addJoined(first);
}

void cutter_t::cutStrictly() {
    const kind_t kind = kindOf(m_text, false);
    if (kind != kind_t::none) {
        addWhole(0, kind, fault_t::none);
        return;
    }
    addWhole(0, kind_t::sentence, fault_t::none);
    piece_t& piece = m_pieces.back();
    if (m_text.empty() || !isStartCharacter(m_text[0])) {
        piece.fault = fault_t::noStartCharacter;
    } else if (m_end.size() < lineEnd.size() ||
               m_end.substr(m_end.size() - lineEnd.size()) != lineEnd) {
        piece.fault = fault_t::noLineEnd;
    } else {
        // Further CRs belong to the sentence; its text and its end stand in one buffer.
        piece.text = {m_text.data(), m_text.size() + m_end.size() - lineEnd.size()};
    }
}

void cutter_t::addWhole(std::size_t begin, kind_t kind, fault_t fault) {
    m_front = begin;
    add(begin, m_text.size(), m_text.size(), kind, fault);
}

// One record of another kind, or several that are joined.
void cutter_t::addOther(kind_t kind, std::size_t begin, std::size_t end) {
    m_front = std::max(m_front, begin);
    do {
        const std::string_view text = m_text.substr(begin, end - begin);
        const std::size_t length = kind == kind_t::motion     ? nextMotion(text)
                                   : kind == kind_t::tracking ? nextTracking(text)
                                                              : text.size();
        add(begin, begin + length, begin + length, kind);
        begin += length;
    } while (begin < end);
}

// The first start from `from` on: with an address and a comma behind it or, at `weak`, with
// anything printable.
cutter_t::start_t cutter_t::findStart(std::size_t from, std::size_t weak) const {
    for (std::size_t at = m_text.find_first_of("$!", from); at < m_text.size();
         at = m_text.find_first_of("$!", at + 1)) {
        const std::size_t begin = at;
        while (at + 1 < m_text.size() && isStartCharacter(m_text[at + 1])) {
            ++at;
        }
        if (isAddress(m_text.substr(at + 1))) {
            return {begin, at};
        }
        if (begin == weak && isPrintableAddress(m_text.substr(begin + 1))) {
            return {begin, begin};
        }
    }
    return {m_text.size(), m_text.size()};
}

// The only sentence of a line need not have a checksum.
void cutter_t::addAlone(const start_t& start) {
    if (!addMatching(start, m_text.size())) {
        add(start.at, m_text.size(), m_text.size(), kind_t::sentence);
    }
}

// Among several records of a line a checksum alone tells a sentence from the remains of one.
void cutter_t::addJoined(const start_t& first) {
    const std::size_t before = m_pieces.size();
    const std::size_t begin = m_done;
    bool anyMatching = false;
    for (start_t start = first; isThere(start);) {
        const start_t next = findStart(start.at + 1, m_text.size());
        if (addMatching(start, next.begin)) {
            anyMatching = true;
        } else {
            addCut(start.at, next.begin);
        }
        start = next;
    }
    const bool areSeveral = m_pieces.size() >= before + 2;
    if (!anyMatching && areSeveral &&
        findChecksum(m_text.substr(first.at)).state == checksum_t::matching) {
        m_pieces.resize(before);
        m_done = begin;
        addMatching(first, m_text.size());
    }
}

// Adds the sentence at `start`, and what stands behind it, if it has a checksum that matches.
bool cutter_t::addMatching(const start_t& start, std::size_t end) {
    const checksum_t checksum = findChecksum(m_text.substr(start.at, end - start.at));
    if (checksum.state != checksum_t::matching) {
        return false;
    }
    const std::size_t textEnd = start.at + checksum.end;
    const std::size_t next = std::min(m_text.find_first_not_of(" \t", textEnd), end);
    add(start.at, textEnd, next, kind_t::sentence).checksumDigits = checksum.digits;
    if (next < end) {
        addCut(next, end);
    }
    return true;
}

void cutter_t::addCut(std::size_t start, std::size_t end) {
    add(start, end, end, kind_t::none, fault_t::cut);
}

// The piece from where the last one ended to `end`, with its record at `start`.
piece_t& cutter_t::add(std::size_t start, std::size_t textEnd, std::size_t end, kind_t kind,
                       fault_t fault) {
    const std::size_t front = std::max(m_front, m_done);
    piece_t& piece = m_pieces.emplace_back();
    piece.raw = m_text.substr(m_done, end - m_done);
    piece.prefix = m_text.substr(front, start - front);
    piece.text = m_text.substr(start, textEnd - start);
    piece.kind = kind;
    piece.fault = fault;
    m_done = end;
    return piece;
}

// The kind of a text that is no sentence.
kind_t cutter_t::kindOf(std::string_view text, bool beforeSentence) {
    if (m_options.only == kind_t::sentence || text.empty() || isStartCharacter(text[0])) {
        return kind_t::none;
    }
    if (text[0] == ':') {
        return kind_t::motion;
    }
    if (isTracking(text, beforeSentence)) {
        return kind_t::tracking;
    }
    const tableLine_t line = tableLineOf(text);
    if (line == tableLine_t::none || (line == tableLine_t::header && !m_inTableHeader)) {
        return kind_t::none;
    }
    m_inTableHeader = line == tableLine_t::status || line == tableLine_t::header;
    return kind_t::table;
}

// What the checksum of a sentence that was not cut makes of it.
void judgeChecksum(piece_t& piece, const splitOptions_t& options) {
    const std::string_view text = options.strict ? piece.text : withoutBlanksBehind(piece.text);
    const checksum_t checksum = checksumAtEnd(text);
    switch (checksum.state) {
    case checksum_t::matching: piece.checksumDigits = checksum.digits; return;
    case checksum_t::none:
        piece.fault = options.requireChecksum ? fault_t::noChecksum : fault_t::none;
        return;
    case checksum_t::different:
        piece.fault = fault_t::checksumMismatch;
        piece.stated = checksum.stated;
        piece.computed = checksum.computed;
        return;
    case checksum_t::unreadable: piece.fault = fault_t::badChecksumDigits; return;
    }
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

void splitLine(const line_t& line, const splitOptions_t& options, bool& inTableHeader,
               splitLine_t& out) {
    out.received = {};
    out.pieces.clear();
    cutter_t cutter(line, options, inTableHeader, out.pieces);
    std::size_t begin = 0;
    if (!options.strict && !line.continued) {
        const std::size_t length = stampLength(line.text);
        out.received = line.text.substr(0, length);
        begin = length > 0 ? length + 1 : 0;
    }
    if (line.tooLong) {
        cutter.addWhole(0, kind_t::none, fault_t::lineTooLong);
    } else if (options.only != kind_t::none && options.only != kind_t::sentence) {
        cutter.addOther(options.only, begin, line.text.size());
    } else if (options.strict) {
        cutter.cutStrictly();
    } else {
        cutter.cut(begin);
    }
    for (piece_t& piece : out.pieces) {
        if (piece.kind == kind_t::sentence && piece.fault == fault_t::none &&
            piece.checksumDigits == 0) {
            judgeChecksum(piece, options);
        }
    }
}
