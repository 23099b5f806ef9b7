// Buffered output to a descriptor that a live reader gets in time.
#pragma once

#include <chrono>
#include <string>

#include "tools/output/buffer.h"

class output_t {
public:
    explicit output_t(int descriptor);

    int descriptor() const { return m_descriptor; }

    /// Append here; nothing is written before a flush.
    buffer_t& buffer() { return m_buffer; }

    void flush();
    /// Flushes what is worth a write.
    void flushIfLarge();
    /// Flushes when a live reader has waited long enough. Where there is nothing to write, asks
    /// whether the reader has gone.
    void flushIfDue();

    /// Nothing more can be written: the reader has gone, or an error.
    bool isClosed() const { return m_closed; }
    /// Asks whether the reader has gone since the last write.
    void checkReader();
    bool failed() const { return m_error != 0; }
    /// Why it failed, for people.
    std::string reason() const;

private:
    void fail(int error);

    int m_descriptor;
    buffer_t m_buffer;
    std::chrono::steady_clock::time_point m_flushed;
    bool m_closed = false;
    int m_error = 0;
};
