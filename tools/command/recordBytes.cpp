#include "tools/command/recordBytes.h"

#include <chrono>

#include <unistd.h>

#include "tools/command/readInput.h"
#include "tools/input/input.h"
#include "tools/input/placedFile.h"
#include "tools/input/progress.h"
#include "tools/terminal/message.h"
#include "tools/terminal/stopSignal.h"

namespace {

double now() {
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration<double>(sinceEpoch).count();
}

byteUser_t byteUserOf(recordBytesUser_t& user, const readerState_t& start) {
    return {[&](const std::string& name) { user.begin(name, start); },
            [&](std::string_view block) { user.use(block); },
            [&] { user.end(stopSignal() == 0 ? bytesEnd_t::input : bytesEnd_t::stopped); }};
}

// What is wrong with a range of this file; empty if nothing is.
std::string rangeFault(placedFile_t& file, const byteRange_t& range, const output_t& output) {
    struct stat written = {};
    std::string start(startSize, '\0');
    start.resize(file.readAt(0, start.data(), start.size()));
    const std::string packed = packedKind(start);
    if (!file.fault().empty()) {
        return file.fault();
    }
    if (fstat(output.descriptor(), &written) == 0 && isSameFile(file.status(), written)) {
        return sameFileText;
    }
    if (!packed.empty()) {
        return packed + " cannot be read in ranges; unpack it into a file first";
    }
    if (range.begin > file.size()) {
        return "the range begins after the end of the file, which has " +
               std::to_string(file.size()) + " bytes";
    }
    return {};
}

// A file that seems to end when the run is to end.
class endingFile_t : public placedBytes_t {
public:
    endingFile_t(placedFile_t& file, output_t& output) : m_file(file), m_output(output) {}

    std::uint64_t size() const override { return m_file.size(); }
    std::size_t readAt(std::uint64_t offset, char* out, std::size_t size) override {
        m_output.flushIfDue();
        const bool isEnding = m_output.isClosed() || stopSignal() != 0;
        return isEnding ? 0 : m_file.readAt(offset, out, size);
    }
    std::string fault() const override { return m_file.fault(); }

private:
    placedFile_t& m_file;
    output_t& m_output;
};

bool readRange(const std::string& name, const inputOptions_t& options, output_t& output,
               recordBytesUser_t& user, bool showsProgress) {
    placedFile_t file(name);
    std::string fault = rangeFault(file, *options.range, output);
    if (fault.empty()) {
        rangeBytes_t bytes(file, *options.range);
        std::optional<progress_t> progress;
        if (showsProgress) {
            progress.emplace(bytes.size());
        }
        endingFile_t inFront(file, output);
        user.begin(name, stateAt(inFront, bytes.begin(), options));
        const auto isGoingOn = [&] { return !output.isClosed() && stopSignal() == 0; };
        for (std::string_view block = bytes.read(); isGoingOn() && !block.empty();
             block = bytes.read()) {
            user.use(block);
            output.flushIfDue();
            if (progress) {
                progress->add(block.size());
            }
        }
        user.end(stopSignal() != 0 ? bytesEnd_t::stopped
                 : bytes.isLast()  ? bytesEnd_t::input
                                   : bytesEnd_t::range);
        fault = file.fault();
    }
    if (!fault.empty()) {
        complain(name, fault);
    }
    return fault.empty();
}

} // namespace

void recordFeeder_t::begin(const std::string& name, const readerState_t& start) {
    auto next = std::make_unique<recordReader_t>(m_options);
    next->startFrom(start);
    if (m_isContinued) {
        next->continueFrom(*m_reader);
    }
    m_isContinued = m_isFollowed;
    m_reader = std::move(next);
    m_consumer.beginInput(name, *m_reader);
}

void recordFeeder_t::use(std::string_view block) {
    if (m_options.stampsReads) {
        m_reader->setReadTime(now());
    }
    m_reader->feed(block);
    takeRecords();
}

void recordFeeder_t::end(bytesEnd_t end) {
    if (end != bytesEnd_t::stopped) {
        if (end == bytesEnd_t::input) {
            m_reader->finish();
        } else {
            m_reader->pause();
        }
        takeRecords();
    }
    m_consumer.endInput(*m_reader);
}

void recordFeeder_t::takeRecords() {
    for (record_t record; !m_output.isClosed() && m_reader->next(record);) {
        m_consumer.take(record);
        m_output.flushIfLarge();
    }
}

bool readRecordBytes(const std::vector<std::string>& inputs, const inputOptions_t& options,
                     output_t& output,
                     const std::function<recordBytesUser_t&(const std::string& name)>& userOf) {
    bool areRead = true;
    std::optional<progress_t> progress;
    const bool showsProgress = !options.hidesProgress && !options.follows &&
                               isatty(STDERR_FILENO) != 0 && isatty(output.descriptor()) == 0;
    if (showsProgress && !options.range) {
        progress.emplace(inputs);
    }
    progress_t* const shown = progress ? &*progress : nullptr;
    const readerState_t start = recordReader_t(options).state();
    for (const std::string& name : inputs) {
        if (output.isClosed() || stopSignal() != 0) {
            break;
        }
        recordBytesUser_t& user = userOf(name);
        const bool isFollowed = options.follows && &name == &inputs.back();
        const bool isRead = options.range ? readRange(name, options, output, user, showsProgress)
                            : isFollowed  ? followBlocks(name, output, byteUserOf(user, start))
                                         : readBlocks(name, output, byteUserOf(user, start), shown);
        areRead = isRead && areRead;
    }
    return areRead;
}
