// Memory of a column.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

/// A growing piece of memory. Bytes that were not written are zero.
class memory_t {
public:
    std::size_t size() const { return m_size; }
    char* data() const { return m_data.get(); }
    template <typename T>
    T* as() const {
        return reinterpret_cast<T*>(m_data.get()); // malloc aligns it for every T
    }

    /// Keeps the first `used` bytes; all bytes behind them must be zero. What was never written to
    /// takes no memory of the machine, as a rule.
    void grow(std::size_t size, std::size_t used) {
        std::unique_ptr<char, freeing_t> data(static_cast<char*>(std::calloc(size, 1)));
        if (data == nullptr) {
            throw std::bad_alloc();
        }
        if (used > 0) {
            std::memcpy(data.get(), m_data.get(), used);
        }
        m_data = std::move(data);
        m_size = size;
    }

    /// Gives back what is behind the first `size` bytes.
    void shrink(std::size_t size) {
        void* const data = size > 0 && size < m_size ? std::realloc(m_data.get(), size) : nullptr;
        if (data != nullptr) {
            static_cast<void>(m_data.release());
            m_data.reset(static_cast<char*>(data));
            m_size = size;
        }
    }

private:
    struct freeing_t {
        void operator()(char* data) const { std::free(data); }
    };

    std::unique_ptr<char, freeing_t> m_data;
    std::size_t m_size = 0;
};
