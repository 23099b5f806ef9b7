// Reads the records of several inputs, one after another.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/output/output.h"
#include "tools/record/range.h"
#include "tools/record/recordReader.h"

/// How the inputs of a run are read.
struct inputOptions_t : readOptions_t {
    bool follows = false;             ///< the last one, as it grows; it must be a regular file
    bool hidesProgress = false;       ///< also on a terminal
    std::optional<byteRange_t> range; ///< of the only input, which must be a regular file
};

/// What is done with the records of a run.
class recordConsumer_t {
public:
    virtual ~recordConsumer_t() = default;

    /// The next records come from this input and this reader.
    virtual void beginInput(const std::string& name, const recordReader_t& reader) = 0;
    /// The next record, which is valid during the call.
    virtual void take(const record_t& record) = 0;
    /// All records of the input have been handed over.
    virtual void endInput(const recordReader_t& reader) = 0;
};

/// Hands the records of the inputs to `consumer`; "-" is standard input. Ends early when the output
/// is closed or a stop signal came. False, with a message for each, if an input could not be read
/// to its end; the other inputs are still read. While they are read, a line on standard error says
/// how much was read, if standard error is a terminal and the output is not.
bool readRecords(const std::vector<std::string>& inputs, const inputOptions_t& options,
                 output_t& output, recordConsumer_t& consumer);
