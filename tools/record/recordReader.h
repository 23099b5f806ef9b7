// Turns the bytes of one input into decoded and dated records. The caller feeds the bytes and takes
// the records.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "tools/input/lineSplitter.h"
#include "tools/input/pieces.h"
#include "tools/record/dictionaryFile.h"
#include "tools/record/readerState.h"
#include "tools/record/record.h"

struct readOptions_t {
    splitOptions_t split;
    dateOrder_t dateOrder = dateOrder_t::unknown; ///< of dates such as 03/04/2026 in stamps
    datingOptions_t dating;
    bool stampsReads = false; ///< lines get this computer's time as their receive stamp
    std::shared_ptr<dictionaryHolder_t> dictionary = std::make_shared<dictionaryHolder_t>();
};

/// How to use it: call `feed` with the bytes that there are, then `next` until it returns false,
/// and repeat. At the end call `finish`, and then `next` again until it returns false. Work is
/// linear in the input. Memory is bounded: it holds one line, which is cut at 64 KiB, and the open
/// groups of satellites.
class recordReader_t {
public:
    explicit recordReader_t(const readOptions_t& options);
    recordReader_t(const recordReader_t&) = delete;
    recordReader_t& operator=(const recordReader_t&) = delete;

    /// This input goes on where that of another reader has ended: the reference instant and the
    /// order of dates are known from there.
    void continueFrom(const recordReader_t& other);

    /// Reads an input from the line on at which the reader with this state has ended. Call it
    /// before the first `feed`. The counts begin at 0.
    void startFrom(const readerState_t& state);
    /// The state behind the last line, once `next` has returned false after `pause`.
    readerState_t state() const;

    /// More bytes of the input. Records taken before are no longer valid.
    void feed(std::string_view bytes);
    /// Sets the time of reception of the records that follow, in Unix seconds. A stamp in a line
    /// has precedence.
    void setReadTime(double unixTime);
    /// There are no more bytes.
    void finish();
    /// There are no more bytes for this reader, and the next line of the input begins here: another
    /// reader goes on with `state`. Groups of satellites stay open.
    void pause();
    /// The next record; false when more bytes are needed, or at the end.
    bool next(record_t& record);

    std::uint64_t blankLines() const { return m_lines.blankLines(); }
    std::uint64_t bytes() const { return m_lines.bytes(); }
    /// Whether a stamp has come whose date has two readings while the order of day and month was
    /// not known.
    bool hasOpenStamp() const { return m_hasOpenStamp; }
    const dating_t& dating() const { return m_dating; }
    const satelliteGroups_t& groups() const { return m_groups; }

private:
    bool nextGroup(record_t& record);
    bool nextPlain(record_t& record);
    bool nextPiece(piece_t& piece);
    void cutLine();
    void noteOpen(const stamp_t& stamp);
    void decode(const piece_t& piece, record_t& record);
    void decodeSentence(const piece_t& piece, record_t& record);
    bool frame(const std::string& sentence);
    void readSentence(record_t& record);
    void setStamp(const piece_t& piece, record_t& record);
    void setReadStamp(record_t& record) const;
    void learnOrder(record_t& record);
    void date(record_t& record);
    void decodeTracking(record_t& record);
    void offerSatellites(const record_t& record);
    const std::string& completed(std::string_view text);

    static void setReceived(const stamp_t& stamp, std::string& text, record_t& record);
    static void setClueStamp(const stamp_t& stamp, record_t& record);
    void reset(record_t& record, const line_t& line, std::string_view raw) const;

    readOptions_t m_options;
    lineSplitter_t m_lines;
    line_t m_line;
    splitLine_t m_split;
    std::size_t m_nextPiece = 0;
    std::size_t m_pieceCount = 0;
    splitState_t m_state;
    std::optional<stamp_t> m_stamp; // of the line
    std::string m_received;         // by that stamp; kept for the parts of a line that is too long
    std::optional<stamp_t>
        m_ownStamp;            // of one record, from its tag block or from the text after it
    std::string m_ownReceived; // by that stamp
    std::string m_readTime;    // the text of that stamp; empty if it is not used
    stamp_t m_readStamp;
    std::string m_completed;
    kalo::nmeaFormat_t m_sentence;
    kalo::tss1Msg_t m_motion;
    std::optional<kalo::atsAsciiMsg_t> m_tracking;
    kalo::ntripStreamDecoder_t m_table;
    char m_milliseconds[3] = {};
    std::vector<satellite_t> m_satellites; // of one sentence
    satelliteGroups_t m_groups;
    bool m_isFinished = false;
    bool m_knowsLines = true; // how many were in front of those that are read
    bool m_hasOpenStamp = false;
    bool m_hasGroup = false; // the last record has completed a group, which is the next record
    dating_t m_dating;
};
