// Texts for tests and fuzz targets: sentences with checksum and line end, and texts behind which
// nothing can be read.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

/// `body`, such as "$GPGGA,1,2", with its checksum, CR and LF.
inline std::string sentence(const std::string& body) {
    unsigned sum = 0;
    for (std::size_t i = 1; i < body.size(); ++i) {
        sum ^= static_cast<unsigned char>(body[i]);
    }
    constexpr const char* digits = "0123456789ABCDEF";
    return body + '*' + digits[sum / 16] + digits[sum % 16] + "\r\n";
}

/// A copy that ends where readable memory ends, until the next call.
inline std::string_view guarded(std::string_view text) {
    static std::size_t capacity = 0;
    static char* end = nullptr;
    if (end == nullptr || text.size() > capacity) {
        const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
        const std::size_t size = (text.size() / page + 1) * page;
        void* const memory =
            mmap(nullptr, size + page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANON, -1, 0);
        if (end != nullptr) {
            munmap(end - capacity, capacity + page);
        }
        end = static_cast<char*>(memory) + size;
        capacity = size;
        if (memory == MAP_FAILED || mprotect(end, page, PROT_NONE) != 0) {
            std::abort();
        }
    }
    if (!text.empty()) {
        std::memcpy(end - text.size(), text.data(), text.size());
    }
    return {end - text.size(), text.size()};
}
