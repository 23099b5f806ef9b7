// Reads the bytes of inputs that hold records.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "tools/command/recordInputs.h"

/// How the bytes of an input end.
enum class bytesEnd_t {
    input,  ///< with the input
    range,  ///< at the end of a range of it, behind a line
    stopped ///< anywhere, because of a stop signal
};

/// What is done with the bytes of each input, of each member of an archive, or of a range.
class recordBytesUser_t {
public:
    virtual ~recordBytesUser_t() = default;

    /// `start` is the state in which the first line is read.
    virtual void begin(const std::string& name, const readerState_t& start) = 0;
    /// The block is valid during the call.
    virtual void use(std::string_view block) = 0;
    virtual void end(bytesEnd_t end) = 0;
};

/// Hands records to a consumer as the bytes come.
class recordFeeder_t : public recordBytesUser_t {
public:
    /// The references must outlive the object.
    recordFeeder_t(const readOptions_t& options, output_t& output, recordConsumer_t& consumer)
        : m_options(options), m_output(output), m_consumer(consumer) {}

    /// The inputs that follow are the same file, which was rotated or truncated in between.
    void setFollowed() { m_isFollowed = true; }

    void begin(const std::string& name, const readerState_t& start) override;
    void use(std::string_view block) override;
    void end(bytesEnd_t end) override;

private:
    void takeRecords();

    const readOptions_t& m_options;
    output_t& m_output;
    recordConsumer_t& m_consumer;
    std::unique_ptr<recordReader_t> m_reader;
    bool m_isFollowed = false;
    bool m_isContinued = false; // the next input is the rest of a file that is followed
};

/// Reads each of the inputs with the user that `userOf` gives for its name; the rest is as with
/// `readRecords`.
bool readRecordBytes(const std::vector<std::string>& inputs, const inputOptions_t& options,
                     output_t& output,
                     const std::function<recordBytesUser_t&(const std::string& name)>& userOf);
