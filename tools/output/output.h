// Buffered output to a descriptor, flushed in time for a live reader.
#pragma once

#include <chrono>
#include <functional>
#include <string>

#include "tools/output/buffer.h"

class output_t {
public:
    explicit output_t(int descriptor);
    /// Without a descriptor, for what goes elsewhere; nothing may be appended.
    output_t() : output_t(-1) {}

    int descriptor() const { return m_descriptor; }

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
    bool failed() const { return m_error != 0; }
    /// Why it failed, as a message.
    std::string reason() const;

private:
    void fail(int error);

    int m_descriptor;
    buffer_t m_buffer;
    std::function<void()> m_also;
    std::chrono::steady_clock::time_point m_flushed;
    bool m_closed = false;
    int m_error = 0;
};
