#include "tools/command/recordInputs.h"

#include <chrono>
#include <memory>
#include <optional>

#include <unistd.h>

#include "tools/command/readInput.h"
#include "tools/input/progress.h"
#include "tools/terminal/stopSignal.h"

namespace {

double now() {
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration<double>(sinceEpoch).count();
}

} // namespace

bool readRecords(const std::vector<std::string>& inputs, const inputOptions_t& options,
                 output_t& output, recordConsumer_t& consumer) {
    bool areRead = true;
    std::unique_ptr<recordReader_t> reader;
    bool isFollowed = false;
    bool isContinued = false; // the next input is the rest of a file that is followed
    const auto takeRecords = [&] {
        for (record_t record; !output.isClosed() && reader->next(record);) {
            consumer.take(record);
            output.flushIfLarge();
        }
    };
    const byteUser_t user = {[&](const std::string& source) {
                                 auto next = std::make_unique<recordReader_t>(options);
                                 if (isContinued) {
                                     next->continueFrom(*reader);
                                 }
                                 isContinued = isFollowed;
                                 reader = std::move(next);
                                 consumer.beginInput(source, *reader);
                             },
                             [&](std::string_view block) {
                                 if (options.stampsReads) {
                                     reader->setReadTime(now());
                                 }
                                 reader->feed(block);
                                 takeRecords();
                             },
                             [&] {
                                 if (stopSignal() == 0) {
                                     reader->finish();
                                     takeRecords();
                                 }
                                 consumer.endInput(*reader);
                             }};
    std::optional<progress_t> progress;
    if (!options.hidesProgress && !options.follows && isatty(STDERR_FILENO) != 0 &&
        isatty(output.descriptor()) == 0) {
        progress.emplace(inputs);
    }
    for (const std::string& name : inputs) {
        if (output.isClosed() || stopSignal() != 0) {
            break;
        }
        isFollowed = options.follows && &name == &inputs.back();
        const bool isRead = isFollowed
                                ? followBlocks(name, output, user)
                                : readBlocks(name, output, user, progress ? &*progress : nullptr);
        areRead = isRead && areRead;
    }
    return areRead;
}
