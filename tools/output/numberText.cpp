#include "tools/output/numberText.h"

#include <cmath>
#include <cstring>

#include <fmt/compile.h>

// Most numbers of a record have few decimals. Three ways lead to the same text, each tried where it
// is exact: thousandths, fifteen digits by integer arithmetic, and the formatting library.

namespace {

// The digits of 0 to 999, three each; and how long they are as decimals, with their point and
// without the zeros behind them.
struct triples_t {
    char text[3000] = {};
    unsigned char lengthWithPoint[1000] = {};

    constexpr triples_t() {
        for (std::size_t i = 0; i < 1000; ++i) {
            text[3 * i] = static_cast<char>('0' + i / 100);
            text[3 * i + 1] = static_cast<char>('0' + i / 10 % 10);
            text[3 * i + 2] = static_cast<char>('0' + i % 10);
            lengthWithPoint[i] = i == 0 ? 0 : i % 100 == 0 ? 2 : i % 10 == 0 ? 3 : 4;
        }
    }
};
constexpr triples_t triples;

char* writeTriple(char* at, std::uint64_t value) {
    std::memcpy(at, triples.text + 3 * value, 3);
    return at + 3;
}

// `value` below 1000, without leading zeros.
char* writeSmall(char* at, std::uint64_t value) {
    const std::size_t zeros = value >= 100 ? 0 : value >= 10 ? 1 : 2;
    std::memcpy(at, triples.text + 3 * value + zeros, 3); // the last may be overwritten
    return at + 3 - zeros;
}

char* writeDecimals(char* at, std::uint64_t value, unsigned digits) {
    for (char* place = at + digits; place != at; value /= 10) {
        *--place = static_cast<char>('0' + value % 10);
    }
    return at + digits;
}

char* withoutZerosBehind(char* end) {
    while (end[-1] == '0') {
        --end;
    }
    return end[-1] == '.' ? end - 1 : end;
}

char* writeSign(char* at, double value) {
    *at = '-';
    return at + (std::signbit(value) ? 1 : 0);
}

// Numbers up to here are multiples of a thousandth to more than 15 digits.
constexpr double mostThousandths = 1e9;

std::int64_t thousandthsOf(double magnitude) {
    // NOLINTNEXTLINE(bugprone-incorrect-roundings) what it is used for is checked behind it
    return static_cast<std::int64_t>(magnitude * 1000 + 0.5);
}

char* writeThousandths(char* at, std::int64_t thousandths) {
    const auto whole = static_cast<std::uint64_t>(thousandths) / 1000;
    const auto rest = static_cast<std::uint64_t>(thousandths) % 1000;
    at = whole < 1000 ? writeSmall(at, whole) : writeInteger(at, whole);
    // Nothing, or the point and the digits up to the last that is not 0.
    *at = '.';
    writeTriple(at + 1, rest);
    return at + triples.lengthWithPoint[rest];
}

#if defined(__SIZEOF_INT128__) && !defined(KALO_PLAIN)
constexpr bool hasWideIntegers = true;
__extension__ typedef unsigned __int128 wide_t; // NOLINT(modernize-use-using) standard C++ has none
#else
constexpr bool hasWideIntegers = false;
using wide_t = std::uint64_t;
#endif

constexpr std::uint64_t powersOfTen[] = {1,
                                         10,
                                         100,
                                         1000,
                                         10000,
                                         100000,
                                         1000000,
                                         10000000,
                                         100000000,
                                         1000000000,
                                         10000000000,
                                         100000000000,
                                         1000000000000,
                                         10000000000000,
                                         100000000000000,
                                         1000000000000000,
                                         10000000000000000,
                                         100000000000000000,
                                         1000000000000000000};

// A number as `digits` over a power of ten.
struct decimal_t {
    std::uint64_t digits = 0;
    unsigned decimals = 0;
};

constexpr int significant = 15;

// Whether `roundToFifteen` takes a number: one that is written without an exponent, and whose
// product with the power of ten fits 128 bits.
bool isMiddling(double magnitude) {
    return hasWideIntegers && magnitude >= 1e-4 && magnitude < 1e14;
}

// The 15 significant digits, rounded half to even as "%.15g" rounds. With magnitude = m 2^-shift
// the product m 10^decimals is exact in 128 bits: m has 53 bits, and 10^18 has 60.
decimal_t roundToFifteen(double magnitude) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &magnitude, sizeof bits);
    constexpr unsigned mantissaBits = 52;
    const int exponent = static_cast<int>(bits >> mantissaBits) - 1023;
    const std::uint64_t mantissa =
        (bits & ((std::uint64_t{1} << mantissaBits) - 1)) | std::uint64_t{1} << mantissaBits;
    const auto shift = static_cast<unsigned>(static_cast<int>(mantissaBits) - exponent);
    // No double between 1e-4 and 1 equals a power of ten, so that the comparison is right there
    // too.
    constexpr double powers[] = {1e-3, 1e-2, 1e-1, 1e0, 1e1,  1e2,  1e3,  1e4, 1e5,
                                 1e6,  1e7,  1e8,  1e9, 1e10, 1e11, 1e12, 1e13};
    constexpr int digitsBelowFirst = -3; // in front of the point, of a number below 1e-3
    int before = digitsBelowFirst;
    for (const double power : powers) {
        before += magnitude >= power ? 1 : 0;
    }
    decimal_t decimal;
    decimal.decimals = static_cast<unsigned>(significant - before);
    const wide_t product = static_cast<wide_t>(mantissa) * powersOfTen[decimal.decimals];
    const wide_t one = 1;
    const auto isOdd = static_cast<unsigned>(product >> shift & 1);
    decimal.digits =
        static_cast<std::uint64_t>((product + ((one << (shift - 1)) - 1) + isOdd) >> shift);
    return decimal;
}

char* writeDecimal(char* at, const decimal_t& decimal) {
    const std::uint64_t unit = powersOfTen[decimal.decimals];
    at = writeInteger(at, decimal.digits / unit);
    *at = '.';
    return withoutZerosBehind(writeDecimals(at + 1, decimal.digits % unit, decimal.decimals));
}

} // namespace

char* writeInteger(char* at, std::uint64_t value) {
    if (value < 1000) {
        return writeSmall(at, value);
    }
    if (value < 1000000) {
        return writeTriple(writeSmall(at, value / 1000), value % 1000);
    }
    return writeTriple(writeTriple(writeInteger(at, value / 1000000), value / 1000 % 1000),
                       value % 1000);
}

char* writeInteger(char* at, int value) {
    *at = '-';
    const auto magnitude = static_cast<std::uint64_t>(value < 0 ? -std::int64_t{value} : value);
    return writeInteger(at + (value < 0 ? 1 : 0), magnitude);
}

char* writePair(char* at, unsigned value) {
    if (value < 100) {
        std::memcpy(at, triples.text + std::size_t{3} * value + 1, 2);
        return at + 2;
    }
    return writeInteger(at, std::uint64_t{value});
}

char* writeYear(char* at, unsigned value) {
    return value < 10000 ? writePair(writePair(at, value / 100), value % 100)
                         : writeInteger(at, std::uint64_t{value});
}

// Two decimals of up to 15 digits never share a double: where one reads back as the number, its
// digits without the zeros behind them are the shortest.
char* writeShortest(char* at, double value) {
    const double magnitude = std::fabs(value);
    if (magnitude < mostThousandths) {
        const std::int64_t thousandths = thousandthsOf(magnitude);
        if (static_cast<double>(thousandths) / 1000 == magnitude) {
            return writeThousandths(writeSign(at, value), thousandths);
        }
    }
    if (isMiddling(magnitude)) {
        const decimal_t decimal = roundToFifteen(magnitude);
        // Both are exact as doubles, and so one division rounds correctly.
        const double read = static_cast<double>(decimal.digits) /
                            static_cast<double>(powersOfTen[decimal.decimals]);
        if (read == magnitude) {
            return writeDecimal(writeSign(at, value), decimal);
        }
    }
    return writeShortestPlainly(at, value);
}

char* writeShortest(char* at, float value) { return fmt::format_to(at, FMT_COMPILE("{}"), value); }

// A number within half a unit of the 15th digit of a thousandth is that thousandth: the nearest
// double of the thousandth is off by at most 1.11e-16 of it, together less than 5e-16, which is the
// least that half such a unit can be.
char* writeFifteenDigits(char* at, double value) {
    const double magnitude = std::fabs(value);
    if (magnitude < mostThousandths) {
        const std::int64_t thousandths = thousandthsOf(magnitude);
        const double distance = std::fabs(magnitude - static_cast<double>(thousandths) / 1000);
        if (distance <= 3.5e-16 * magnitude) {
            return writeThousandths(writeSign(at, value), thousandths);
        }
    }
    return isMiddling(magnitude) ? writeDecimal(writeSign(at, value), roundToFifteen(magnitude))
                                 : writeFifteenDigitsPlainly(at, value);
}

char* writeShortestPlainly(char* at, double value) {
    return fmt::format_to(at, FMT_COMPILE("{}"), value);
}

char* writeFifteenDigitsPlainly(char* at, double value) {
    return fmt::format_to(at, FMT_COMPILE("{:.15g}"), value);
}
