// Reads the records of several inputs, one after another.
#pragma once

#include <string>
#include <vector>

#include "tools/output/output.h"
#include "tools/record/recordReader.h"

/// What is done with the records of a run.
class recordConsumer_t {
public:
    virtual ~recordConsumer_t() = default;

    /// The records that follow are those of this input, by this reader.
    virtual void beginInput(const std::string& name, const recordReader_t& reader) = 0;
    /// The next record, which is valid during the call.
    virtual void take(const record_t& record) = 0;
    /// The reader has given all records of its input.
    virtual void endInput(const recordReader_t& reader) = 0;
};

/// Hands the records of the inputs to `consumer`; "-" is standard input. Ends early when the output
/// is closed or a stop signal came. False, with a message for each, when an input could not be
/// read to its end; the others are read all the same.
bool readRecords(const std::vector<std::string>& inputs, const readOptions_t& options,
                 output_t& output, recordConsumer_t& consumer);
