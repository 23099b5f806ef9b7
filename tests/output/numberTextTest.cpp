// Numbers are written by exact fast ways where these apply: this holds them to the formatting
// library, which is behind them. KALO_RANDOM_NUMBERS is the count of random numbers.
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "tools/output/numberText.h"

namespace {

std::string textOf(char* (*write)(char*, double), double value) {
    char text[longestNumber];
    return {text, write(text, value)};
}

void check(double value) {
    if (std::isfinite(value)) {
        EXPECT_EQ(textOf(writeShortest, value), textOf(writeShortestPlainly, value));
        EXPECT_EQ(textOf(writeFifteenDigits, value), textOf(writeFifteenDigitsPlainly, value));
    }
}

// The nearest doubles on both sides, of both signs.
void checkAround(double value) {
    double above = value;
    double below = value;
    for (int i = 0; i < 20; ++i) {
        check(above);
        check(-above);
        check(below);
        check(-below);
        above = std::nextafter(above, INFINITY);
        below = std::nextafter(below, -INFINITY);
    }
}

TEST(numberText, isThatOfTheLibraryAroundPowers) {
    for (int exponent = -323; exponent <= 308; ++exponent) {
        checkAround(std::pow(10, exponent));
    }
    for (int exponent = -1074; exponent < 1024; ++exponent) {
        checkAround(std::ldexp(1, exponent));
    }
}

TEST(numberText, isThatOfTheLibraryForDecimals) {
    for (int i = 0; i < 3600000; i += 7) { // every hundredth of a degree, and others
        check(i / 10000.0);
    }
}

// Ties of the 15th digit: an odd number of halves, quarters, ..., of its unit.
TEST(numberText, isThatOfTheLibraryForTies) {
    for (std::uint64_t odd = 1; odd < 2000; odd += 2) {
        for (int halvings = 1; halvings < 50; ++halvings) {
            check(std::ldexp(static_cast<double>(odd << 40 | 1), -halvings));
            check(std::ldexp(static_cast<double>(odd), -halvings));
            check(1e14 + std::ldexp(static_cast<double>(odd), -halvings));
        }
    }
}

// Numbers of the kinds that records hold, and of any other.
double randomNumber(std::mt19937_64& random) {
    constexpr double pi = 3.141592653589793;
    constexpr double knot = 0.514444;
    const auto below = [&](std::uint64_t end) { return static_cast<double>(random() % end); };
    const std::uint64_t bits = random();
    double any = 0;
    switch (random() % 6) {
    case 0: std::memcpy(&any, &bits, sizeof any); return any;
    case 1: return (below(180) + below(6000000) / 6000000) * pi / 180 * (180 / pi); // coordinates
    case 2: return below(1000000) / 1000 * pi / 180 * (180 / pi);                   // angles
    case 3: return below(20000) / 100 * knot;
    case 4: return below(std::uint64_t{1} << 53) / std::pow(10, below(20));
    default: return std::exp(below(100000) / 100000 * 46 - 10);
    }
}

TEST(numberText, isThatOfTheLibraryForRandomNumbers) {
    const char* wanted = std::getenv("KALO_RANDOM_NUMBERS");
    std::mt19937_64 random(20140801); // NOLINT(cert-msc32-c,cert-msc51-cpp) the same in each run
    for (long left = wanted != nullptr ? std::atol(wanted) : 100000; left > 0; --left) {
        check(randomNumber(random));
    }
}

TEST(numberText, writesIntegers) {
    std::uint64_t power = 1;
    for (int digits = 0; digits < 20; ++digits, power *= 10) {
        for (const std::uint64_t value : {power - 1, power, power + 1, power * 9, UINT64_MAX}) {
            char text[longestNumber];
            EXPECT_EQ(std::string(text, writeInteger(text, value)), std::to_string(value));
        }
    }
    for (const int value : {0, -1, 7, -1000, 2147483647, -2147483647 - 1}) {
        char text[longestNumber];
        EXPECT_EQ(std::string(text, writeInteger(text, value)), std::to_string(value));
    }
}

} // namespace
