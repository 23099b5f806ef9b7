// Bytes that a function of Python reads at any place.
#pragma once

#include "python/object.h"
#include "tools/input/bytes.h"

/// The thread that reads from it does not hold the lock of the interpreter.
class placedObject_t : public placedBytes_t {
public:
    /// `readAt(offset, size)` returns bytes, fewer than `size` only at the end. It must outlive the
    /// object.
    placedObject_t(PyObject* readAt, std::uint64_t size) : m_readAt(readAt), m_size(size) {}

    std::uint64_t size() const override { return m_size; }
    std::size_t readAt(std::uint64_t offset, char* out, std::size_t size) override;
    std::string fault() const override { return {}; }

    /// Whether the function raised an exception, which is set. It is not called again.
    bool hasRaised() const { return m_hasRaised; }

private:
    PyObject* m_readAt;
    std::uint64_t m_size;
    bool m_hasRaised = false;
};
