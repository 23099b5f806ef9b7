// Decodes inputs with several threads: an input is cut into pieces at line ends, threads decode the
// pieces, and what they make of them is handed over in the order of the input.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "tools/command/recordInputs.h"

struct pieceOptions_t {
    unsigned jobs = 1;              ///< threads that decode
    std::size_t size = 524288;      ///< of a piece, in bytes, at least
    std::size_t warmUpSize = 16384; ///< so many bytes in front of a piece tell the state, probably,
                                    ///< in which its first line is read
};

/// Keeps what becomes of the records of one piece. A piece may be decoded again; then `clear` comes
/// first.
class pieceConsumer_t : public recordConsumer_t {
public:
    /// Forgets everything.
    virtual void clear() = 0;
    /// Hands over what it keeps. Called in the thread of `readRecordPieces`, in the order of the
    /// input.
    virtual void deliver() = 0;
};

/// The same as `readRecords`, with several threads. The consumers that `makeConsumer` returns get
/// regular files, in pieces. `direct` gets other inputs, which are read as they come, and the rest
/// of an input that has a line longer than a piece. At most a few pieces for each thread are in
/// memory at a time.
bool readRecordPieces(const std::vector<std::string>& inputs, const inputOptions_t& options,
                      const pieceOptions_t& pieces, output_t& output, recordConsumer_t& direct,
                      const std::function<std::unique_ptr<pieceConsumer_t>()>& makeConsumer);
