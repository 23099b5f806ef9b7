#include "tools/record/recordReader.h"

#include <algorithm>

#include "tools/input/kinds.h"
#include "tools/input/tagBlock.h"
#include "tools/input/text.h"
#include "tools/record/dictionaryRows.h"
#include "tools/record/recordClue.h"
#include "tools/record/registry.h"

namespace {

constexpr std::string_view lineEnd = "\r\n";

// The talker of a sentence: its address without the start character and the three letters of the
// type.
std::string_view talkerOf(std::string_view address) {
    const bool isProprietary = address.size() > 1 && address[1] == 'P';
    return isProprietary || address.size() <= 4 ? "" : address.substr(1, address.size() - 4);
}

// Date, time, or the value of a tag.
bool holdsAnything(const kalo::atsAsciiMsg_t& tracking) {
    kalo::date_t date;
    kalo::timeOfDay_t time;
    return tracking.decodeDate(date) || tracking.decodeTimeOfDay(time) || holdsTag(tracking);
}

} // namespace

recordReader_t::recordReader_t(const readOptions_t& options)
    : m_options(options), m_lines(options.split.strict), m_dating(options.dating) {
    m_state.order = options.dateOrder;
}

void recordReader_t::continueFrom(const recordReader_t& other) {
    m_dating.startFrom(other.m_dating.state());
    m_state.order = other.m_state.order;
}

void recordReader_t::startFrom(const readerState_t& state) {
    m_lines.startAt(state.offset, state.lineEnds.value_or(0));
    m_knowsLines = state.lineEnds.has_value();
    m_state = state.split;
    m_dating.startFrom(state.dating);
    m_groups.startFrom(state.groups);
}

readerState_t recordReader_t::state() const {
    return {m_lines.bytes(), m_knowsLines ? std::optional(m_lines.lineEnds()) : std::nullopt,
            m_state, m_dating.state(), m_groups.openGroups()};
}

void recordReader_t::feed(std::string_view bytes) { m_lines.append(bytes); }

void recordReader_t::setReadTime(double unixTime) {
    m_readTime = isoText(unixTime);
    readStamp(m_readTime, 0, {}, m_readStamp);
}

void recordReader_t::finish() {
    m_lines.finish();
    m_isFinished = true;
}

void recordReader_t::pause() { m_lines.finish(); }

bool recordReader_t::next(record_t& record) {
    if (nextGroup(record) || nextPlain(record)) {
        return true;
    }
    piece_t piece;
    if (!nextPiece(piece)) {
        if (m_isFinished) {
            m_groups.finish();
        }
        return false;
    }
    reset(record, m_line, piece.raw);
    record.tags = piece.tags;
    record.prefix = piece.prefix;
    record.text = piece.text;
    record.suffix = piece.suffix;
    setStamp(piece, record);
    record.fault = piece.fault;
    record.stated = piece.stated;
    record.computed = piece.computed;
    if (record.fault == fault_t::none) {
        decode(piece, record);
    }
    record.reference = m_dating.reference();
    return true;
}

// A finished group has the line of the sentence that finished it, and no bytes of its own.
bool recordReader_t::nextGroup(record_t& record) {
    if (!m_hasGroup) {
        return false;
    }
    m_hasGroup = false;
    record.raw = {};
    record.tags = {};
    record.text = {};
    record.suffix = {};
    record.type = typeOf<satellitesRecord_t>;
    record.entry = nullptr;
    record.content = &m_groups.group();
    record.clue.satellites = {};
    record.clue.lostSatellite = false;
    record.instant.reset();
    return true;
}

// A plain line that ends with its checksum is one sentence. Cutting the line would give the same
// result, but takes much longer. All other lines are cut.
bool recordReader_t::nextPlain(record_t& record) {
    const bool mayBeSentence =
        m_options.split.only == kind_t::none || m_options.split.only == kind_t::sentence;
    if (!mayBeSentence || m_nextPiece < m_pieceCount || !m_lines.nextPlain(m_line)) {
        return false;
    }
    const std::string_view text = m_line.text;
    const std::size_t size = text.size();
    const bool hasDigits = size > 3 && text[size - 3] == '*' && hexDigit(text[size - 2]) < 16 &&
                           hexDigit(text[size - 1]) < 16;
    const bool isComplete = m_line.end.size() == lineEnd.size();
    if (!hasDigits || !(isComplete ? m_sentence.init(text.data(), size + lineEnd.size())
                                   : frame(completed(text)))) {
        cutLine();
        return false;
    }
    reset(record, m_line, text);
    record.received = {};
    record.tags = {};
    record.prefix = {};
    record.suffix = {};
    record.text = text;
    record.fault = fault_t::none;
    record.hasChecksum = true;
    setReadStamp(record);
    readSentence(record);
    record.instant = m_dating.date(record.clue);
    record.reference = m_dating.reference();
    return true;
}

bool recordReader_t::nextPiece(piece_t& piece) {
    while (m_nextPiece == m_pieceCount) {
        if (!m_lines.next(m_line)) {
            return false;
        }
        cutLine();
    }
    piece = m_split.pieces[m_nextPiece++];
    return true;
}

void recordReader_t::cutLine() {
    m_nextPiece = 0;
    m_pieceCount = 0; // until the line is cut: memory may run out
    if (!m_line.continued) {
        m_received.clear();
        m_stamp.reset();
    }
    splitLine(m_line, m_options.split, m_state, m_split);
    if (m_split.hasStamp) {
        m_stamp = m_split.stamp;
        appendReceived(m_received, *m_stamp);
        noteOpen(*m_stamp);
    }
    m_pieceCount = m_split.pieces.size();
}

void recordReader_t::noteOpen(const stamp_t& stamp) {
    m_hasOpenStamp = m_hasOpenStamp || (m_state.order == dateOrder_t::unknown && stamp.asDayFirst &&
                                        stamp.asMonthFirst);
}

// The stamp of the line has precedence, then the sentence's own tag block, then the stamp after it.
void recordReader_t::setStamp(const piece_t& piece, record_t& record) {
    record.received = m_received;
    if (m_stamp) {
        setClueStamp(*m_stamp, record);
        return;
    }
    stamp_t tag;
    m_ownStamp.reset();
    if (!piece.tags.empty() && readUnixStamp(tagValue(piece.tags, "c", true), tag)) {
        tag.isBareNumber = false; // its key says that it is a time
        m_ownStamp = tag;
    } else if (piece.hasStampBehind) {
        m_ownStamp = inOrder(piece.stampBehind, m_state.order);
        noteOpen(*m_ownStamp);
    }
    if (m_ownStamp) {
        setReceived(*m_ownStamp, m_ownReceived, record);
    } else {
        setReadStamp(record);
    }
}

// Writes the stamp to `text`; the record then refers to that text.
void recordReader_t::setReceived(const stamp_t& stamp, std::string& text, record_t& record) {
    text.clear();
    appendReceived(text, stamp);
    record.received = text;
    setClueStamp(stamp, record);
}

void recordReader_t::setReadStamp(record_t& record) const {
    if (!m_readTime.empty()) {
        record.received = m_readTime;
        setClueStamp(m_readStamp, record);
    }
}

void recordReader_t::setClueStamp(const stamp_t& stamp, record_t& record) {
    record.clue.hasStamp = stamp.hasDate;
    record.clue.stamp = placeInTime(stamp.unixTime, stamp.second);
    record.clue.isBareStamp = stamp.isBareNumber;
}

// If a record's own date equals one of the two readings of its stamp, that decides the order.
void recordReader_t::learnOrder(record_t& record) {
    const clue_t& clue = record.clue;
    std::optional<stamp_t>& stamp = m_stamp ? m_stamp : m_ownStamp;
    if (m_state.order != dateOrder_t::unknown || !stamp || !clue.hasDate || clue.isVoid) {
        return;
    }
    const auto isOwn = [&](const std::optional<kalo::date_t>& date) {
        return date && date->year == clue.date.year && date->month == clue.date.month &&
               date->day == clue.date.day;
    };
    const bool isDayFirst = isOwn(stamp->asDayFirst);
    if (isDayFirst == isOwn(stamp->asMonthFirst)) {
        return;
    }
    m_state.order = isDayFirst ? dateOrder_t::dayFirst : dateOrder_t::monthFirst;
    stamp = inOrder(*stamp, m_state.order);
    setReceived(*stamp, m_stamp ? m_received : m_ownReceived, record);
}

// Sets each member, which is cheaper than a new record: most are set again at once.
void recordReader_t::reset(record_t& record, const line_t& line, std::string_view raw) const {
    record.line = m_knowsLines ? line.number : 0;
    record.offset = line.offset + static_cast<std::size_t>(raw.data() - line.text.data());
    record.raw = raw;
    record.talker = {};
    record.type = noType;
    record.entry = nullptr;
    record.content = nothing_t();
    record.hasChecksum = false;
    record.hasMore = false;
    record.clue.hasTime = false;
    record.clue.hasDate = false;
    record.clue.isVoid = false;
    record.clue.hasStamp = false;
    record.clue.isBareStamp = false;
    record.clue.satellites = {};
    record.clue.lostSatellite = false;
    record.instant.reset();
}

void recordReader_t::decode(const piece_t& piece, record_t& record) {
    switch (piece.kind) {
    case kind_t::none: return;
    case kind_t::sentence: decodeSentence(piece, record); break;
    case kind_t::motion:
        m_motion.init(record.text.data(), record.text.size());
        if (m_motion.validMask == 0) {
            record.fault = fault_t::nothingDecodes;
            return;
        }
        record.type = typeOf<motionRecord_t>;
        record.content = &m_motion;
        record.hasMore = record.text.size() > motionLength;
        return;
    case kind_t::tracking: decodeTracking(record); break;
    case kind_t::table: {
        const std::string& line = completed(record.text);
        auto length = static_cast<unsigned>(line.size());
        record.type = typeOfTableLine(kalo::decodeNtripRecordType(line.data(), length));
        m_table.init(line.data(), static_cast<unsigned>(line.size()));
        record.content = &m_table;
        return;
    }
    }
    if (record.fault == fault_t::none) {
        date(record);
    }
}

void recordReader_t::date(record_t& record) {
    learnOrder(record);
    record.instant = m_dating.date(record.clue);
}

void recordReader_t::decodeSentence(const piece_t& piece, record_t& record) {
    completed(piece.text);
    if (piece.checksumDigits == 1) { // some devices leave out the leading 0
        m_completed.insert(piece.text.size() - 1, 1, '0');
    }
    if (!frame(m_completed)) {
        record.fault = fault_t::badChecksumDigits; // other faults were found before
        return;
    }
    record.hasChecksum = piece.checksumDigits > 0;
    readSentence(record);
}

bool recordReader_t::frame(const std::string& sentence) {
    return m_sentence.init(sentence.data(), sentence.size());
}

// The values of the sentence that was framed.
void recordReader_t::readSentence(record_t& record) {
    record.content = &m_sentence;
    record.type = typeOfSentence(m_sentence.type());
    record.talker = talkerOf(m_sentence.field(0)->toString());
    if (record.type != noType && recordTypes[record.type].rowCount > 0) {
        readSentenceClue(m_sentence, record.type, m_satellites, record.clue);
        offerSatellites(record);
        return;
    }
    record.entry = m_options.dictionary->get().find(m_sentence);
    if (record.entry != nullptr) {
        readDictionaryClue(m_sentence, *record.entry, record.clue);
    }
}

void recordReader_t::offerSatellites(const record_t& record) {
    if (m_sentence.type() == kalo::msgTypeGsv) {
        m_hasGroup = m_groups.offer({record.prefix, tagValue(record.tags, "s", false)},
                                    kalo::gsvMsg_t(m_sentence), record.clue.satellites);
    }
}

void recordReader_t::decodeTracking(record_t& record) {
    const kalo::atsAsciiMsg_t& tracking =
        m_tracking.emplace(record.text.data(), record.text.size());
    if (!holdsAnything(tracking)) {
        record.fault = fault_t::nothingDecodes;
        return;
    }
    record.type = typeOf<trackingRecord_t>;
    record.content = &tracking;
    readTrackingClue(tracking, m_milliseconds, record.clue);
    if (!tracking.checksumError()) {
        return;
    }
    const std::size_t star = record.text.find('*');
    const std::string_view behind = record.text.substr(star + 1);
    const std::size_t digits = static_cast<std::size_t>(
        std::find_if(behind.begin(), behind.end(), [](char c) { return hexDigit(c) == 16; }) -
        behind.begin());
    record.fault = fault_t::badChecksumDigits;
    if (digits == 2) {
        record.fault = fault_t::checksumMismatch;
        record.stated = hexDigit(behind[0]) * 16 + hexDigit(behind[1]);
        record.computed = exclusiveOr(record.text.substr(0, star));
    }
}

// The bytes that are handed to the library, line end included.
const std::string& recordReader_t::completed(std::string_view text) {
    return m_completed.assign(text).append(lineEnd);
}
