// Buffered output to a descriptor or a file, flushed in time for a live reader.
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "tools/output/buffer.h"
#include "tools/output/outputFile.h"

/// Where a run writes to.
struct outputOptions_t {
    std::string path = "-"; ///< "-" is standard output
    bool isDirect = false;  ///< the file gets its name at once, and not only when it is complete
};

class output_t {
public:
    explicit output_t(int descriptor);
    /// To standard output, or to a file that is not one of `inputs`. If the file cannot be opened,
    /// the output is closed, and `reason` says why.
    output_t(const outputOptions_t& options, const std::vector<std::string>& inputs);
    /// Without a descriptor, for what goes elsewhere; nothing may be appended.
    output_t() : output_t(-1) {}

    int descriptor() const { return m_descriptor; }
    /// What it is called in messages.
    const std::string& name() const { return m_name; }

    /// Append here; nothing is written before a flush.
    buffer_t& buffer() { return m_buffer; }

    /// With each flush `also` is called: for what else is to reach its readers in time.
    void flushWith(std::function<void()> also) { m_also = std::move(also); }

    void flush();
    /// Flushes if there is enough for a write.
    void flushIfLarge();
    /// Flushes if a live reader has waited long enough. If there is nothing to write, checks
    /// whether the reader has gone.
    void flushIfDue();

    /// Whether nothing more can be written: the reader has gone, or an error occurred.
    bool isClosed() const { return m_closed; }
    /// Checks whether the reader has gone since the last write.
    void checkReader();
    bool failed() const { return !m_reason.empty(); }
    /// Why it failed, as a message.
    const std::string& reason() const { return m_reason; }

    /// Nothing more is written. A file gets its name if it is complete.
    void close(bool isComplete);
    /// The file that holds an incomplete output; empty if there is none.
    const std::string& part() const { return m_file.part(); }

private:
    void fail(int error);

    outputFile_t m_file;
    std::string m_name = "standard output";
    int m_descriptor;
    buffer_t m_buffer;
    std::function<void()> m_also;
    std::chrono::steady_clock::time_point m_flushed;
    bool m_closed = false;
    std::string m_reason;
};
