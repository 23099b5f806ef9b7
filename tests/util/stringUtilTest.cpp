#include "kalo/util/stringUtil.h"

#include <limits>

#include <gtest/gtest.h>

namespace {

template <typename T>
struct numberCase_t {
    const char* text;
    int base;
    bool good;
    T value;
};

constexpr auto untouched = 77; // stands in `out` beforehand

template <typename T, std::size_t count>
void check(const numberCase_t<T> (&cases)[count]) {
    for (const auto& row : cases) {
        T out = untouched;
        EXPECT_EQ(kalo::decode(row.text, out, row.base), row.good) << '"' << row.text << '"';
        EXPECT_EQ(out, row.value) << '"' << row.text << '"';
    }
}

TEST(decode, unsignedNumbers) {
    constexpr unsigned most = std::numeric_limits<unsigned>::max();
    check<unsigned>({
        {"0", 10, true, 0},
        {"010", 10, true, 10},
        {"  42", 10, true, 42},
        {"\t\n42", 10, true, 42},
        {"+7", 10, true, 7},
        {"4294967295", 10, true, most},
        {"4A", 16, true, 74},
        {"4a", 16, true, 74},
        {"0x4a", 16, true, 74},
        {"0X4A", 16, true, 74},
        {" 4a", 16, true, 74},
        {"17", 8, true, 15},
        // too large: the stream leaves the limit
        {"4294967296", 10, false, most},
        {"99999999999999999999999", 10, false, most},
        // text behind the number
        {"42 ", 10, false, 42},
        {"42x", 10, false, 42},
        {"4,2", 10, false, 4},
        {"4A ", 16, false, 74},
        {"1.0", 10, false, 1},
        // no number
        {"x", 10, false, 0},
        {"8", 8, false, 0},
        {"+", 10, false, 0},
        {"0x", 16, false, 0},
        // nothing is looked at
        {"", 10, false, untouched},
        {"   ", 10, false, untouched},
        {"-1", 10, false, untouched},
        {" -0", 10, false, untouched},
        {"-", 16, false, untouched},
        {"5", 2, false, untouched},
        {"5", 0, false, untouched},
    });
}

TEST(decode, limitsOfEachType) {
    check<short>({{"32767", 10, true, 32767},
                  {"-32768", 10, true, -32768},
                  {"32768", 10, false, 32767},
                  {"-32769", 10, false, -32768},
                  {"40000", 10, false, 32767},
                  {"-17", 10, true, -17}});
    check<unsigned short>({{"65535", 10, true, 65535},
                           {"65536", 10, false, 65535},
                           {"FFFF", 16, true, 65535},
                           {"-1", 10, false, untouched}});
    constexpr int least = std::numeric_limits<int>::min();
    constexpr int most = std::numeric_limits<int>::max();
    check<int>({{"2147483647", 10, true, most},
                {"2147483648", 10, false, most},
                {"-2147483648", 10, true, least},
                {"-2147483649", 10, false, least}});
    constexpr long long llMost = std::numeric_limits<long long>::max();
    check<long long>({{"9223372036854775807", 10, true, llMost},
                      {"9223372036854775808", 10, false, llMost},
                      {"-9223372036854775808", 10, true, -llMost - 1}});
    constexpr unsigned long long ullMost = std::numeric_limits<unsigned long long>::max();
    check<unsigned long long>({{"18446744073709551615", 10, true, ullMost},
                               {"18446744073709551616", 10, false, ullMost},
                               {"ffffffffffffffff", 16, true, ullMost},
                               {"-1", 10, false, untouched}});
}

TEST(decode, realNumbers) {
    constexpr double most = std::numeric_limits<double>::max();
    const struct {
        std::string text;
        bool good;
        double value;
    } cases[] = {
        {"545.4", true, 545.4},
        {".5", true, 0.5},
        {"5.", true, 5},
        {"-2.5e-3", true, -2.5e-3},
        {"+1E2", true, 100},
        {"  7", true, 7},
        {"0.1234567890123456789", true, 0.1234567890123456789},
        {"1e-400", true, 0},
        {"1e400", false, most},
        {"-1e400", false, -most},
        {"545.4M", false, 545.4},
        {"1.2.3", false, 1.2},
        {"1,5", false, 1},
        {"1 ", false, 1},
        {std::string("1\0", 2), false, 1},
        {"inf", false, 0},
        {"nan", false, 0},
        {"0x1p3", false, 0},
        {"1e", false, 0},
        {".", false, 0},
        {"--1", false, 0},
        {"", false, untouched},
        {"  ", false, untouched},
    };
    for (const auto& row : cases) {
        double out = untouched;
        EXPECT_EQ(kalo::decode(row.text, out), row.good) << row.text;
        EXPECT_EQ(out, row.value) << row.text;
    }
    float out = untouched;
    EXPECT_TRUE(kalo::decode("16777217", out));
    EXPECT_EQ(out, 16777216.0F);
    EXPECT_FALSE(kalo::decode("1e39", out));
    EXPECT_EQ(out, std::numeric_limits<float>::max());
}

TEST(toUpper, changesSmallLettersAlone) {
    EXPECT_EQ(kalo::toUpper(std::string("gp1x\0\xE4z", 7)), std::string("GP1X\0\xE4Z", 7));
}

} // namespace
