#include "tools/command/recordPieces.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <exception>
#include <mutex>
#include <thread>

#include "tools/command/recordBytes.h"
#include "tools/input/input.h"
#include "tools/terminal/stopSignal.h"

namespace {

// What a reader gets at a time; it then stays in the caches.
constexpr std::size_t blockSize = 65536;
// Of the lines behind a piece so many bytes are read with it.
constexpr std::size_t readBeyond = 4096;
// So many pieces for each thread are in memory: one that it decodes, and others that wait, to be
// decoded or for those in front of them.
constexpr std::size_t piecesPerJob = 3;

enum class stage_t {
    waiting, // to be decoded
    busy,
    decoded, // from a state that is not known to be the right one
    settled  // from the right state
};

struct inputPiece_t {
    explicit inputPiece_t(std::unique_ptr<pieceConsumer_t> made) : consumer(std::move(made)) {}

    std::string source;
    std::string text;      // its lines, behind those that warm up
    std::size_t begin = 0; // of its lines
    bytesEnd_t end = bytesEnd_t::range;
    bool isFirst = false; // of its input
    stage_t stage = stage_t::waiting;
    readerState_t start;     // in which its first line is read
    bool isStartSure = true; // otherwise the records in front must agree
    readerState_t last;      // the state behind its last line
    std::unique_ptr<pieceConsumer_t> consumer;
};

// Hands all records of a text to a consumer.
void readText(recordReader_t& reader, std::string_view text, bytesEnd_t end,
              recordConsumer_t* consumer) {
    record_t record;
    const auto takeRecords = [&] {
        while (reader.next(record)) {
            if (consumer != nullptr) {
                consumer->take(record);
            }
        }
    };
    for (; !text.empty(); text.remove_prefix(std::min(blockSize, text.size()))) {
        reader.feed(text.substr(0, blockSize));
        takeRecords();
    }
    if (end == bytesEnd_t::input) {
        reader.finish();
    } else if (end == bytesEnd_t::range) {
        reader.pause();
    }
    takeRecords();
}

// The threads, and the pieces in the order of the inputs. A piece is first decoded from the state
// that the lines in front of it lead to. When all pieces in front of it are settled, and that state
// was wrong, it is decoded again.
class pieceQueue_t {
public:
    pieceQueue_t(const readOptions_t& options, const pieceOptions_t& pieces)
        : m_options(options), m_limit(piecesPerJob * pieces.jobs) {
        m_options.dictionary->get(); // so that the threads do not read it in at the same time
        m_threads.reserve(pieces.jobs);
        const stopSignalsBlocked_t blocked;
        for (unsigned i = 0; i < pieces.jobs; ++i) {
            try {
                m_threads.emplace_back([this] { work(); });
            } catch (const std::exception&) { // no more threads, or no memory: those that run do
                break;
            }
        }
    }
    pieceQueue_t(const pieceQueue_t&) = delete;
    pieceQueue_t& operator=(const pieceQueue_t&) = delete;
    ~pieceQueue_t() {
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_isOver = true;
        }
        m_changed.notify_all();
        for (std::thread& thread : m_threads) {
            thread.join();
        }
    }

    bool hasThreads() const { return !m_threads.empty(); }
    bool isFull() const { return m_pieces.size() >= m_limit; }
    bool isEmpty() const { return m_pieces.empty(); }

    void add(std::unique_ptr<inputPiece_t> piece) {
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            piece->stage = stage_t::waiting;
            m_pieces.push_back(std::move(piece));
        }
        m_changed.notify_all();
    }

    // The first piece, when it is settled. Null if it is not, and `waits` is false.
    std::unique_ptr<inputPiece_t> takeFirst(bool waits) {
        std::unique_lock<std::mutex> lock(m_mutex);
        const auto isSettled = [this] { return m_pieces.front()->stage == stage_t::settled; };
        if (waits) {
            m_changed.wait(lock, [&] { return m_failure != nullptr || isSettled(); });
        }
        if (m_failure != nullptr) {
            std::rethrow_exception(m_failure);
        }
        if (!waits && (m_pieces.empty() || !isSettled())) {
            return nullptr;
        }
        std::unique_ptr<inputPiece_t> piece = std::move(m_pieces.front());
        m_pieces.pop_front();
        return piece;
    }

    // The state behind the pieces that are settled; of the same input as the last one.
    readerState_t settledState() const { return *m_settled; }

private:
    // An exception goes to the thread that takes the pieces.
    void work() {
        try {
            decodePieces();
        } catch (...) {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_failure = std::current_exception();
            m_isOver = true;
            m_changed.notify_all();
        }
    }

    void decodePieces() {
        std::unique_lock<std::mutex> lock(m_mutex);
        for (;;) {
            inputPiece_t* piece = nullptr;
            m_changed.wait(lock, [&] {
                piece = firstAt(stage_t::waiting);
                return m_isOver || piece != nullptr;
            });
            if (m_isOver) {
                return;
            }
            piece->stage = stage_t::busy;
            // The state that is known last tells what the lines in front of the piece do not tell.
            const std::optional<readerState_t> known = stateBefore(*piece);
            lock.unlock();
            decode(*piece, known);
            lock.lock();
            piece->stage = stage_t::decoded;
            settle();
            m_changed.notify_all();
        }
    }

    inputPiece_t* firstAt(stage_t stage) const {
        const auto found = std::find_if(m_pieces.begin(), m_pieces.end(),
                                        [&](const auto& piece) { return piece->stage == stage; });
        return found != m_pieces.end() ? found->get() : nullptr;
    }

    // The settled state, if it is one of the same input.
    std::optional<readerState_t> stateBefore(const inputPiece_t& piece) const {
        for (const auto& other : m_pieces) {
            if (other->isFirst && other->stage != stage_t::settled) {
                return {};
            }
            if (other.get() == &piece) {
                break;
            }
        }
        return m_settled;
    }

    void decode(inputPiece_t& piece, const std::optional<readerState_t>& known) const {
        const std::string_view text = piece.text;
        if (known && known->offset == piece.start.offset) {
            piece.start = *known;
            piece.isStartSure = true;
        }
        if (!piece.isStartSure) {
            recordReader_t reader(m_options);
            readerState_t state = known ? *known : reader.state();
            state.offset = piece.start.offset - piece.begin;
            state.lineEnds.reset();
            reader.startFrom(state);
            readText(reader, text.substr(0, piece.begin), bytesEnd_t::range, nullptr);
            state = reader.state();
            state.lineEnds = piece.start.lineEnds;
            piece.start = std::move(state);
        }
        recordReader_t reader(m_options);
        reader.startFrom(piece.start);
        piece.consumer->clear();
        piece.consumer->beginInput(piece.source, reader);
        readText(reader, text.substr(piece.begin), piece.end, &*piece.consumer);
        piece.consumer->endInput(reader);
        piece.last = reader.state();
    }

    // The pieces in front of the one that is decoded are settled: then it is known whether it began
    // in the right state.
    void settle() {
        for (const auto& piece : m_pieces) {
            if (piece->stage == stage_t::settled) {
                continue;
            }
            if (piece->stage != stage_t::decoded) {
                return;
            }
            if (!piece->isStartSure && !(piece->start == *m_settled)) {
                piece->start = *m_settled;
                piece->isStartSure = true;
                piece->stage = stage_t::waiting;
                return;
            }
            piece->stage = stage_t::settled;
            m_settled = piece->last;
        }
    }

    const readOptions_t& m_options;
    std::size_t m_limit;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<std::unique_ptr<inputPiece_t>> m_pieces;
    std::optional<readerState_t> m_settled; // behind the last piece that is settled
    bool m_isOver = false;
    std::exception_ptr m_failure;       // of a thread
    std::vector<std::thread> m_threads; // the last member: they use the others
};

// Cuts an input into pieces.
class pieceCutter_t : public recordBytesUser_t {
public:
    pieceCutter_t(const inputOptions_t& options, const pieceOptions_t& pieces, output_t& output,
                  recordFeeder_t& direct,
                  const std::function<std::unique_ptr<pieceConsumer_t>()>& makeConsumer)
        : m_pieces(pieces), m_output(output), m_direct(direct), m_makeConsumer(makeConsumer),
          m_queue(options, pieces) {}

    bool hasThreads() const { return m_queue.hasThreads(); }

    void begin(const std::string& name, const readerState_t& start) override {
        m_source = name;
        m_next = start;
        m_isFirst = true;
        m_isDirect = false;
        m_text.clear();
        m_begin = 0;
    }

    void use(std::string_view block) override {
        // Not much more than a piece at a time, so that little is moved to the next one.
        while (!block.empty() && !m_isDirect && !m_output.isClosed()) {
            const std::size_t size = m_text.size() - m_begin;
            const std::size_t missing = m_pieces.size - std::min(size, m_pieces.size);
            const std::string_view part = block.substr(0, missing + readBeyond);
            m_text.append(part);
            block.remove_prefix(part.size());
            cutPieces();
        }
        if (m_isDirect) {
            m_direct.use(block);
        }
    }

    void end(bytesEnd_t end) override {
        if (m_isDirect) {
            m_direct.end(end);
            return;
        }
        add(end);
    }

    // Hands over all pieces.
    void finish() {
        while (!m_queue.isEmpty() && !m_output.isClosed()) {
            deliver(m_queue.takeFirst(true));
        }
    }

private:
    void cutPieces() {
        while (!m_isDirect && !m_output.isClosed() && m_text.size() - m_begin > m_pieces.size) {
            const std::size_t end = findLineStart(m_text, m_begin + m_pieces.size);
            if (end != std::string_view::npos) {
                cut(end);
            } else if (m_text.size() - m_begin > 2 * m_pieces.size) {
                readDirectly();
            } else {
                return;
            }
        }
    }

    // The piece ends at `end`, and the rest of the text is of the next one.
    void cut(std::size_t end) {
        const std::uint64_t offset = m_next.offset + (end - m_begin);
        std::optional<std::uint64_t> lineEnds = m_next.lineEnds;
        if (lineEnds) {
            *lineEnds += countLineEnds(std::string_view(m_text).substr(m_begin, end - m_begin));
        }
        const std::size_t warmUp = std::min(m_pieces.warmUpSize, end);
        const std::size_t start = warmUp < end ? findLineStart(m_text, end - warmUp) : 0;
        m_rest.assign(m_text, start);
        m_text.resize(end);
        add(bytesEnd_t::range);
        m_text.swap(m_rest);
        m_begin = end - start;
        m_next = {};
        m_next.offset = offset;
        m_next.lineEnds = lineEnds;
    }

    void add(bytesEnd_t end) {
        while (m_queue.isFull() && !m_output.isClosed()) {
            deliver(m_queue.takeFirst(true));
        }
        if (m_output.isClosed()) {
            return;
        }
        std::unique_ptr<inputPiece_t> piece;
        if (m_free.empty()) {
            piece = std::make_unique<inputPiece_t>(m_makeConsumer());
        } else {
            piece = std::move(m_free.back());
            m_free.pop_back();
        }
        piece->source = m_source;
        piece->text.swap(m_text);
        piece->begin = m_begin;
        piece->end = end;
        piece->isFirst = m_isFirst;
        piece->isStartSure = m_isFirst;
        piece->start = m_next;
        m_isFirst = false;
        m_queue.add(std::move(piece));
        while (std::unique_ptr<inputPiece_t> done = m_queue.takeFirst(false)) {
            deliver(std::move(done));
        }
    }

    void deliver(std::unique_ptr<inputPiece_t> piece) {
        piece->consumer->deliver();
        m_free.push_back(std::move(piece));
    }

    // A line is longer than a piece. The rest of the input is read without pieces.
    void readDirectly() {
        finish();
        if (m_output.isClosed()) {
            return;
        }
        m_isDirect = true;
        m_direct.begin(m_source, m_isFirst ? m_next : m_queue.settledState());
        m_direct.use(std::string_view(m_text).substr(m_begin));
    }

    const pieceOptions_t& m_pieces;
    output_t& m_output;
    recordFeeder_t& m_direct;
    const std::function<std::unique_ptr<pieceConsumer_t>()>& m_makeConsumer;
    std::string m_source;
    std::string m_text; // that was not cut yet, behind what warms up
    std::string m_rest;
    std::size_t m_begin = 0; // of what was not cut yet
    readerState_t m_next;    // of the next piece: only its place, unless the input begins there
    bool m_isFirst = true;   // the next piece, of its input
    bool m_isDirect = false;
    std::vector<std::unique_ptr<inputPiece_t>> m_free;
    pieceQueue_t m_queue; // the last member: its threads end first
};

} // namespace

bool readRecordPieces(const std::vector<std::string>& inputs, const inputOptions_t& options,
                      const pieceOptions_t& pieces, output_t& output, recordConsumer_t& direct,
                      const std::function<std::unique_ptr<pieceConsumer_t>()>& makeConsumer) {
    recordFeeder_t feeder(options, output, direct);
    pieceCutter_t cutter(options, pieces, output, feeder, makeConsumer);
    const bool areRead = readRecordBytes(
        inputs, options, output, [&](const std::string& name) -> recordBytesUser_t& {
            if (cutter.hasThreads() && !options.stampsReads && isRegularFile(name)) {
                return cutter;
            }
            cutter.finish();
            return feeder;
        });
    cutter.finish();
    return areRead;
}
