// A buffer for text that will be written.
#pragma once

#include <cstring>
#include <memory>
#include <string_view>
#include <utility>

/// A growing array of characters that writers fill in place: `room` gives memory behind the end,
/// `setEnd` says how far it was filled.
class buffer_t {
public:
    std::string_view text() const { return {m_data.get(), m_size}; }
    std::size_t size() const { return m_size; }
    void clear() { m_size = 0; }

    /// Memory for at least `size` characters after the end.
    char* room(std::size_t size) {
        if (m_capacity - m_size < size) {
            grow(size);
        }
        return m_data.get() + m_size;
    }
    void setEnd(const char* end) { m_size = static_cast<std::size_t>(end - m_data.get()); }

    void append(std::string_view text) {
        if (!text.empty()) {
            std::memcpy(room(text.size()), text.data(), text.size());
            m_size += text.size();
        }
    }
    /// Replaces a character that was written.
    void replace(std::size_t at, char c) { m_data[at] = c; }
    void append(char c) {
        *room(1) = c;
        ++m_size;
    }

private:
    void grow(std::size_t size) {
        const std::size_t capacity = 2 * (m_size + size) + 4096;
        std::unique_ptr<char[]> data(new char[capacity]);
        if (m_size > 0) {
            std::memcpy(data.get(), m_data.get(), m_size);
        }
        m_data = std::move(data);
        m_capacity = capacity;
    }

    std::unique_ptr<char[]> m_data;
    std::size_t m_size = 0;
    std::size_t m_capacity = 0;
};
