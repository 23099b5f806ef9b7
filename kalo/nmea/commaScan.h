// Finds the commas of a sentence, and its checksum on the way; not installed.
#pragma once

#include <cstddef>

#if defined(__SSE2__) && !defined(KALO_PLAIN)
#define KALO_SCANS_BLOCKS
#include <cstdint>
#include <cstring>

#include <emmintrin.h>
#endif

// For a lambda that each comma calls. At -O2, the flags of Debian's packages, compilers would call
// it as a function, and framing would take a third longer.
#if defined(__GNUC__)
#define KALO_ALWAYS_INLINE __attribute__((always_inline))
#else
#define KALO_ALWAYS_INLINE
#endif

namespace kalo {

/// Calls `onComma(at)` for each comma from `begin` to `end`, and returns the exclusive-or of all
/// bytes; byte by byte.
template <typename OnComma>
unsigned scanCommasPlainly(const char* begin, const char* end, OnComma onComma) {
    unsigned sum = 0;
    for (; begin != end; ++begin) {
        sum ^= static_cast<unsigned char>(*begin);
        if (*begin == ',') {
            onComma(begin);
        }
    }
    return sum;
}

#if defined(KALO_SCANS_BLOCKS)

/// The same in blocks of 16 bytes, which every x86-64 processor compares at once. It reads nothing
/// outside the range: the last block begins 16 bytes before its end, and what it has in common with
/// the one before is masked away.
template <typename OnComma>
unsigned scanCommas(const char* begin, const char* end, OnComma onComma) {
    constexpr std::ptrdiff_t blockSize = 16;
    if (end - begin < blockSize) {
        return scanCommasPlainly(begin, end, onComma);
    }
    const __m128i commas = _mm_set1_epi8(',');
    __m128i sum = _mm_setzero_si128();
    const auto scanBlock = [&](const char* at, __m128i block) KALO_ALWAYS_INLINE {
        sum = _mm_xor_si128(sum, block);
        auto bits = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(block, commas)));
        for (; bits != 0; bits &= bits - 1) {
            onComma(at + __builtin_ctz(bits));
        }
    };
    const auto load = [](const void* at) {
        return _mm_loadu_si128(static_cast<const __m128i*>(at));
    };
    for (; end - begin >= blockSize; begin += blockSize) {
        scanBlock(begin, load(begin));
    }
    if (begin != end) {
        static constexpr unsigned char masks[2 * blockSize] = {
            0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,
            255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255};
        const char* const last = end - blockSize;
        scanBlock(last, _mm_and_si128(load(last), load(masks + (end - begin))));
    }
    sum = _mm_xor_si128(sum, _mm_srli_si128(sum, 8));
    auto bytes = static_cast<std::uint64_t>(_mm_cvtsi128_si64(sum));
    bytes ^= bytes >> 32;
    bytes ^= bytes >> 16;
    bytes ^= bytes >> 8;
    return bytes & 0xFF;
}

#else

template <typename OnComma>
unsigned scanCommas(const char* begin, const char* end, OnComma onComma) {
    return scanCommasPlainly(begin, end, onComma);
}

#endif

} // namespace kalo
