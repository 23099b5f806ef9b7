#include "tools/command/recordInputs.h"

#include "tools/command/readInput.h"
#include "tools/command/recordBytes.h"

bool readRecords(const std::vector<std::string>& inputs, const inputOptions_t& options,
                 output_t& output, recordConsumer_t& consumer) {
    recordFeeder_t feeder(options, output, consumer);
    return readRecordBytes(inputs, options, output,
                           [&](const std::string& name) -> recordBytesUser_t& {
                               if (options.follows && &name == &inputs.back()) {
                                   feeder.setFollowed();
                               }
                               return feeder;
                           });
}
