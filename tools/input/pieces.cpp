#include "tools/input/pieces.h"

#include <algorithm>
#include <optional>
#include <tuple>

#include "tools/input/checksum.h"
#include "tools/input/kinds.h"
#include "tools/input/surroundings.h"
#include "tools/input/tagBlock.h"
#include "tools/input/text.h"

namespace {

constexpr std::string_view lineEnd = "\r\n";
constexpr charSet_t startCharacters("$!");

bool isStartCharacter(char c) { return startCharacters.holds(c); }

// Whether the text behind a start character reads as an address and a comma: at least four capital
// letters and digits, a letter first.
bool isAddress(std::string_view text) {
    std::size_t length = 0;
    while (length < text.size() && (isCapital(text[length]) || isDigit(text[length]))) {
        ++length;
    }
    return length >= 4 && isCapital(text[0]) && length < text.size() && text[length] == ',';
}

// Whether the text up to the next comma or "*", which may be an address, is printable.
bool isPrintableAddress(std::string_view text) {
    const auto* const end = std::find_if(text.begin(), text.end(), [](char c) {
        return c == ',' || c == '*' || c < ' ' || c > '~';
    });
    return end == text.end() || *end == ',' || *end == '*';
}

// Cuts one line; its parts are positions in the text of the line.
class cutter_t {
public:
    cutter_t(const line_t& line, const splitOptions_t& options, splitState_t& state,
             splitLine_t& out)
        : m_text(line.text), m_end(line.end), m_options(options), m_state(state), m_out(out),
          m_begin(options.strict ? 0 : markLength(line.text)),
          m_isJson(m_begin < m_text.size() && m_text[m_begin] == '{') {
        m_out.texts.reserve(m_text.size() + 64); // its parts stay where they are
    }

    void cut();
    void cutStrictly();
    /// Takes the whole line as one piece, after its stamp if `hasLead`.
    void addWhole(bool hasLead, kind_t kind, fault_t fault);
    void addAll(kind_t kind);
    /// Gives the stamps after values of JSON or XML to the records of the line that have none.
    void shareStamps();

private:
    // A place where a sentence may begin.
    struct start_t {
        std::size_t blocks; // where the tag blocks begin
        std::size_t run;    // of start characters; all but the last belong to the prefix
        std::size_t at;
    };
    // What follows the checksum of a sentence.
    struct behind_t {
        std::size_t length = 0; // how much of it belongs to the sentence
        std::string_view suffix;
        bool hasStamp = false;
        stamp_t stamp;
    };

    // Whether a sentence is a value of JSON or XML, which has neither prefix nor suffix.
    bool isValue(const start_t& start) const { return m_isJson || envelopeOf(start) == '>'; }
    void learnOrder(const stamp_t& stamp);
    start_t noStart() const { return {m_text.size(), m_text.size(), m_text.size()}; }
    bool isThere(const start_t& start) const { return start.at < m_text.size(); }
    start_t startAt(std::size_t from, std::size_t run, std::size_t at) const;
    start_t findStart(std::size_t from) const;
    start_t findFirstStart();
    bool isBehindStamp(std::size_t at, const start_t& strong);
    stampRules_t rules(bool takesNumbers) const { return {m_state.order, m_isJson, takesNumbers}; }

    void setHead(const start_t& first, const lead_t& lead);
    void take(const lead_t& lead);
    std::size_t takeLead();
    void addOther(kind_t kind, std::size_t begin, std::size_t end);
    void addAlone(const start_t& start);
    void addJoined(const start_t& first);
    bool addMatching(const start_t& start, std::size_t end);
    void addUnmatched(const start_t& start);
    void addSentence(const start_t& start, std::size_t textEnd, std::size_t end,
                     const behind_t& behind);
    void setPrefix(const start_t& start);
    void addCut(std::size_t start, std::size_t end);
    piece_t& add(std::size_t start, std::size_t textEnd, std::size_t end, kind_t kind,
                 fault_t fault = fault_t::none);
    char envelopeOf(const start_t& start) const;
    behind_t readBehind(std::string_view text, const start_t& start);
    kind_t kindOf(std::string_view text, bool beforeSentence, bool behindStamp);

    std::string_view m_text;
    std::string_view m_end;
    const splitOptions_t& m_options;
    splitState_t& m_state;
    splitLine_t& m_out;
    std::size_t m_begin;       // after the bytes that are dropped
    bool m_isJson;             // the line is a JSON object
    std::size_t m_done = 0;    // where the next piece begins
    std::string_view m_prefix; // of the next piece
    std::optional<std::size_t> m_stampEnd;
    bool m_sharesStamps = false; // some stand behind values of JSON or XML
};

// Text before the first start is a record of its own, or stands in front of the sentence.
void cutter_t::cut() {
    const start_t first = findFirstStart();
    const bool hasStart = isThere(first);
    const lead_t lead = leadOf(m_text.substr(m_begin, first.blocks - m_begin), rules(false));
    const std::size_t begin = m_begin + lead.length;
    const kind_t kind = kindOf(m_text.substr(begin, first.blocks - begin), hasStart, lead.hasStamp);
    if (kind == kind_t::none && hasStart) {
        setHead(first, lead);
        if (isThere(findStart(first.at + 1))) {
            addJoined(first);
        } else {
            addAlone(first);
        }
        return;
    }
    if (kind == kind_t::none) {
        take(lead);
        add(begin, m_text.size(), m_text.size(), kind,
            m_options.only == kind_t::sentence ? fault_t::noStartCharacter : fault_t::notARecord);
        return;
    }
    take(lead);
    addOther(kind, begin, first.blocks);
    addJoined(first);
}

void cutter_t::cutStrictly() {
    const kind_t kind = kindOf(m_text, false, false);
    if (kind != kind_t::none) {
        addWhole(false, kind, fault_t::none);
        return;
    }
    addWhole(false, kind_t::sentence, fault_t::none);
    piece_t& piece = m_out.pieces.back();
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

void cutter_t::addWhole(bool hasLead, kind_t kind, fault_t fault) {
    const std::size_t begin = hasLead ? takeLead() : 0;
    add(begin, m_text.size(), m_text.size(), kind, fault);
}

void cutter_t::addAll(kind_t kind) {
    if (m_options.strict) {
        addWhole(false, kind, fault_t::none);
    } else {
        addOther(kind, takeLead(), m_text.size());
    }
}

// Each record gets the next stamp after it, or if there is none, the last one before it.
void cutter_t::shareStamps() {
    if (!m_sharesStamps) {
        return;
    }
    const auto share = [](auto begin, auto end) {
        const piece_t* stamped = nullptr;
        for (auto piece = begin; piece != end; ++piece) {
            if (piece->hasStampBehind) {
                stamped = &*piece;
            } else if (stamped != nullptr) {
                piece->hasStampBehind = true;
                piece->stampBehind = stamped->stampBehind;
            }
        }
    };
    share(m_out.pieces.rbegin(), m_out.pieces.rend());
    share(m_out.pieces.begin(), m_out.pieces.end());
}

// One record of another kind, or several that are joined.
void cutter_t::addOther(kind_t kind, std::size_t begin, std::size_t end) {
    do {
        const std::string_view text = m_text.substr(begin, end - begin);
        const std::size_t length = kind == kind_t::motion     ? nextMotion(text)
                                   : kind == kind_t::tracking ? nextTracking(text)
                                                              : text.size();
        add(begin, begin + length, begin + length, kind);
        begin += length;
    } while (begin < end);
}

cutter_t::start_t cutter_t::startAt(std::size_t from, std::size_t run, std::size_t at) const {
    return {tagBlocksBegin(m_text, from, run), run, at};
}

// The first start from `from` on with an address and a comma behind it.
cutter_t::start_t cutter_t::findStart(std::size_t from) const {
    for (std::size_t at = startCharacters.findIn(m_text, from); at < m_text.size();
         at = startCharacters.findIn(m_text, at + 1)) {
        const std::size_t run = at;
        while (at + 1 < m_text.size() && isStartCharacter(m_text[at + 1])) {
            ++at;
        }
        if (isAddress(m_text.substr(at + 1))) {
            return startAt(from, run, at);
        }
    }
    return noStart();
}

// At the beginning of a line, and directly after a stamp or a tag block, any printable text may be
// an address.
cutter_t::start_t cutter_t::findFirstStart() {
    const start_t strong = findStart(m_begin);
    for (std::size_t at = startCharacters.findIn(m_text, m_begin); at < strong.run;
         at = startCharacters.findIn(m_text, at + 1)) {
        const bool mayStart =
            at == m_begin || tagBlocksBegin(m_text, m_begin, at) < at || isBehindStamp(at, strong);
        if (mayStart && isPrintableAddress(m_text.substr(at + 1))) {
            return startAt(m_begin, at, at);
        }
    }
    return strong;
}

// Whether the first stamp in front of `strong` ends at `at`, but for what separates them.
bool cutter_t::isBehindStamp(std::size_t at, const start_t& strong) {
    if (!m_stampEnd) { // looked for once
        stamp_t stamp;
        const std::string_view head = m_text.substr(m_begin, strong.blocks - m_begin);
        m_stampEnd =
            findStamp(head, rules(true), stamp)
                ? static_cast<std::size_t>(stamp.text.data() - m_text.data()) + stamp.text.size()
                : m_text.size();
    }
    const std::size_t end = *m_stampEnd;
    return at == end || at == end + 1 || (at == end + 2 && m_text.substr(end, 2) == ": ");
}

// The stamp and the prefix of a line whose first record is the sentence at `first`.
void cutter_t::setHead(const start_t& first, const lead_t& lead) {
    const std::string_view head = m_text.substr(m_begin, first.blocks - m_begin);
    if (lead.hasStamp) { // at the start, or after a name, so no stamp is before it
        m_out.stamp = lead.stamp;
    }
    m_out.hasStamp = lead.hasStamp || findStamp(head, rules(true), m_out.stamp);
    if (m_out.hasStamp) {
        learnOrder(m_out.stamp);
    }
    if (isValue(first)) {
        return;
    }
    // Start characters in front of the last one belong to the text that they stand behind.
    const std::string_view run = m_text.substr(first.run, first.at - first.run);
    const bool hasBlocks = first.run > first.blocks;
    std::string_view before;
    std::string_view behind = hasBlocks ? head : m_text.substr(m_begin, first.at - m_begin);
    if (m_out.hasStamp) {
        const auto stampBegin = static_cast<std::size_t>(m_out.stamp.text.data() - head.data());
        before = head.substr(0, stampBegin);
        behind.remove_prefix(stampBegin + m_out.stamp.text.size());
    }
    const std::string_view parts[] = {withoutDecoration(before), withoutDecoration(behind),
                                      hasBlocks ? run : std::string_view()};
    const std::size_t begin = m_out.texts.size();
    for (const std::string_view part : parts) {
        if (!part.empty()) {
            m_out.texts.append(m_out.texts.size() > begin ? " " : "").append(part);
        }
    }
    m_prefix = std::string_view(m_out.texts).substr(begin);
}

// The stamp and the prefix of a line whose first record is no sentence.
void cutter_t::take(const lead_t& lead) {
    m_out.hasStamp = lead.hasStamp;
    if (lead.hasStamp) {
        m_out.stamp = lead.stamp;
        learnOrder(lead.stamp);
    }
    m_prefix = lead.name;
}

// The first stamp that tells the order of day and month decides for the whole input.
void cutter_t::learnOrder(const stamp_t& stamp) {
    if (m_state.order == dateOrder_t::unknown) {
        m_state.order = stamp.tells;
    }
}

// Where the record begins in a line that is taken as a whole.
std::size_t cutter_t::takeLead() {
    const lead_t lead = leadOf(m_text.substr(m_begin), rules(false));
    take(lead);
    return m_begin + lead.length;
}

// The only sentence of a line need not have a checksum.
void cutter_t::addAlone(const start_t& start) {
    if (!addMatching(start, m_text.size())) {
        addUnmatched(start);
    }
}

// If a line holds several records, only the checksum tells a sentence from the rest of a damaged
// one.
void cutter_t::addJoined(const start_t& first) {
    const std::size_t before = m_out.pieces.size();
    const std::size_t begin = m_done;
    const std::string_view prefix = m_prefix;
    bool anyMatching = false;
    for (start_t start = first; isThere(start);) {
        const start_t next = findStart(start.at + 1);
        if (addMatching(start, next.blocks)) {
            anyMatching = true;
        } else {
            setPrefix(start);
            addCut(start.at, next.blocks);
        }
        start = next;
    }
    const bool areSeveral = m_out.pieces.size() >= before + 2;
    if (!anyMatching && areSeveral &&
        findChecksum(m_text.substr(first.at)).state == checksum_t::matching) {
        m_out.pieces.resize(before);
        m_done = begin;
        m_prefix = prefix;
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
    const behind_t behind = readBehind(m_text.substr(textEnd, end - textEnd), start);
    const std::size_t next = textEnd + behind.length;
    addSentence(start, textEnd, next, behind);
    m_out.pieces.back().checksumDigits = checksum.digits;
    if (next < end) {
        addCut(next, end);
    }
    return true;
}

// Adds the only sentence of a line, which has no checksum that matches: it ends at the digits that
// could be its checksum, by what follows them, or where its envelope closes.
void cutter_t::addUnmatched(const start_t& start) {
    const std::string_view text = m_text.substr(start.at);
    const char closing = closingOf(envelopeOf(start));
    std::size_t textEnd = std::string_view::npos;
    bool isLast = true;
    for (std::size_t star = text.rfind('*'); star != std::string_view::npos;
         star = star == 0 ? std::string_view::npos : text.rfind('*', star - 1)) {
        const std::size_t digitsEnd = star + 1 + hexDigitsAt(text, star + 1);
        const std::string_view rest = text.substr(digitsEnd);
        const std::size_t printed = printedEndLength(rest);
        const bool closes = closing != '\0' && printed < rest.size() && rest[printed] == closing;
        tail_t tail;
        if (digitsEnd > star + 1 &&
            (closes || (isLast && (printed == rest.size() || readTail(rest, tail))))) {
            textEnd = digitsEnd;
            break;
        }
        isLast = false;
        if (closing == '\0') {
            break;
        }
    }
    if (textEnd == std::string_view::npos && closing != '\0') {
        textEnd = text.find(closing, 1);
    }
    textEnd = std::min(textEnd, text.size());
    const behind_t behind = readBehind(text.substr(textEnd), start);
    addSentence(start, start.at + textEnd, m_text.size(), behind);
}

void cutter_t::addSentence(const start_t& start, std::size_t textEnd, std::size_t end,
                           const behind_t& behind) {
    setPrefix(start);
    piece_t& piece = add(start.at, textEnd, end, kind_t::sentence);
    piece.tags = m_text.substr(start.blocks, start.run - start.blocks);
    piece.suffix = behind.suffix;
    piece.hasStampBehind = behind.hasStamp;
    piece.stampBehind = behind.stamp;
}

// For a later sentence of a line, the start characters in front of it are its prefix.
void cutter_t::setPrefix(const start_t& start) {
    if (!m_out.pieces.empty() && !isValue(start)) {
        m_prefix = m_text.substr(start.run, start.at - start.run);
    }
}

void cutter_t::addCut(std::size_t start, std::size_t end) {
    add(start, end, end, kind_t::none, fault_t::cut);
}

// The piece from where the last one ended to `end`, with its record at `start`.
piece_t& cutter_t::add(std::size_t start, std::size_t textEnd, std::size_t end, kind_t kind,
                       fault_t fault) {
    piece_t& piece = m_out.pieces.emplace_back();
    piece.raw = m_text.substr(m_done, end - m_done);
    piece.prefix = m_prefix;
    piece.text = m_text.substr(start, textEnd - start);
    piece.kind = kind;
    piece.fault = fault;
    m_prefix = {};
    m_done = end;
    return piece;
}

// The character directly in front of a sentence and its tag blocks.
char cutter_t::envelopeOf(const start_t& start) const {
    return start.blocks > m_begin ? m_text[start.blocks - 1] : '\0';
}

// What stands behind the end of a sentence: blanks and printed line ends, the end of its envelope,
// or what stations add. The rest does not belong to the sentence. A value of JSON or XML takes any
// stamp that follows.
cutter_t::behind_t cutter_t::readBehind(std::string_view text, const start_t& start) {
    behind_t behind;
    const char closing = closingOf(envelopeOf(start));
    const std::size_t printed = printedEndLength(text);
    const bool closes = closing != '\0' && printed < text.size() && text[printed] == closing;
    tail_t tail;
    if (isValue(start)) {
        const bool isOfSentence = m_isJson || closes || readTail(text, tail);
        behind.length = isOfSentence ? text.size() : printed;
        behind.hasStamp = !m_out.hasStamp && findStamp(text, rules(true), behind.stamp);
        if (behind.hasStamp) {
            learnOrder(behind.stamp);
            m_sharesStamps = true;
        }
    } else if (closes) {
        behind.length = text.size();
        behind.suffix = withoutDecoration(text.substr(printed + 1));
    } else if (readTail(text, tail)) {
        behind.length = text.size();
        behind.hasStamp = tail.hasStamp;
        behind.stamp = tail.stamp;
        const std::size_t begin = m_out.texts.size();
        m_out.texts.append(tail.words);
        behind.suffix = std::string_view(m_out.texts).substr(begin);
    } else {
        behind.length = printed;
    }
    return behind;
}

// The kind of a text that is no sentence.
kind_t cutter_t::kindOf(std::string_view text, bool beforeSentence, bool behindStamp) {
    if (m_options.only == kind_t::sentence || text.empty() || isStartCharacter(text[0])) {
        return kind_t::none;
    }
    if (text[0] == ':') {
        return kind_t::motion;
    }
    // After a stamp, it needs a matching checksum, or no checksum and a known tag.
    const bool hasChecksum = text.find('*') != std::string_view::npos;
    if (isTracking(text, beforeSentence || (behindStamp && !hasChecksum)) &&
        !(behindStamp && kalo::atsAsciiMsg_t(text.data(), text.size()).checksumError())) {
        return kind_t::tracking;
    }
    const tableLine_t line = tableLineOf(text);
    if (line == tableLine_t::none || (line == tableLine_t::header && !m_state.inTableHeader)) {
        return kind_t::none;
    }
    m_state.inTableHeader = line == tableLine_t::status || line == tableLine_t::header;
    return kind_t::table;
}

// Judges a sentence that was not cut by its checksum.
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

bool operator==(const splitState_t& a, const splitState_t& b) {
    const auto membersOf = [](const splitState_t& state) { // all, so that none is forgotten
        const auto& [inTableHeader, order] = state;
        return std::tie(inTableHeader, order);
    };
    return membersOf(a) == membersOf(b);
}

void splitLine(const line_t& line, const splitOptions_t& options, splitState_t& state,
               splitLine_t& out) {
    out.hasStamp = false;
    out.pieces.clear();
    out.texts.clear();
    cutter_t cutter(line, options, state, out);
    if (line.tooLong) {
        cutter.addWhole(!options.strict && !line.continued, kind_t::none, fault_t::lineTooLong);
    } else if (options.only != kind_t::none && options.only != kind_t::sentence) {
        cutter.addAll(options.only);
    } else if (options.strict) {
        cutter.cutStrictly();
    } else {
        cutter.cut();
    }
    cutter.shareStamps();
    for (piece_t& piece : out.pieces) {
        if (piece.kind == kind_t::sentence && piece.fault == fault_t::none &&
            piece.checksumDigits == 0) {
            judgeChecksum(piece, options);
        }
    }
}
