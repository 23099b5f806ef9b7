// Memory of a column.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>

/// A growing piece of memory. New bytes are zero.
class memory_t {
public:
    std::size_t size() const { return m_size; }
    char* data() const { return m_data.get(); }
    template <typename T>
    T* as() const {
        return reinterpret_cast<T*>(m_data.get()); // malloc aligns it for every T
    }

    /// A size of 0 changes nothing.
    void resize(std::size_t size) {
        if (size == m_size || size == 0) {
            return;
        }
        void* const data = std::realloc(m_data.get(), size);
        if (data == nullptr) {
            throw std::bad_alloc();
        }
        static_cast<void>(m_data.release());
        m_data.reset(static_cast<char*>(data));
        if (size > m_size) {
            std::memset(m_data.get() + m_size, 0, size - m_size);
        }
        m_size = size;
    }

private:
    struct freeing_t {
        void operator()(char* data) const { std::free(data); }
    };

    std::unique_ptr<char, freeing_t> m_data;
    std::size_t m_size = 0;
};
