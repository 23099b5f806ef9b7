#include "tools/command/recordInputs.h"

#include "tools/command/readInput.h"
#include "tools/terminal/stopSignal.h"

bool readRecords(const std::vector<std::string>& inputs, const readOptions_t& options,
                 output_t& output, recordConsumer_t& consumer) {
    bool areRead = true;
    for (const std::string& name : inputs) {
        if (output.isClosed() || stopSignal() != 0) {
            break;
        }
        recordReader_t reader(options);
        record_t record;
        const auto takeRecords = [&] {
            while (!output.isClosed() && reader.next(record)) {
                consumer.take(record);
                output.flushIfLarge();
            }
        };
        consumer.beginInput(name);
        areRead = readBlocks(name, output,
                             [&](std::string_view block) {
                                 reader.feed(block);
                                 takeRecords();
                             }) &&
                  areRead;
        if (stopSignal() == 0) {
            reader.finish();
            takeRecords();
        }
        consumer.endInput(reader);
    }
    return areRead;
}
