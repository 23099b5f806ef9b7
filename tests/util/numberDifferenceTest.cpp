// Numbers have two ways to be read: this holds them against the stream that defines the result.
#include <cstdlib>
#include <cstring>
#include <limits>
#include <locale>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "kalo/util/stringUtil.h"

namespace {

// The definition, written once more: the stream decides, but for a "-" before an unsigned type.
template <typename T>
bool reference(const std::string& text, T& out, std::ios_base::fmtflags base) {
    std::istringstream stream(text);
    stream.setf(base, std::ios_base::basefield);
    if (std::is_unsigned_v<T>) {
        std::istringstream blanks(text);
        blanks >> std::ws;
        if (blanks.peek() == '-') {
            return false;
        }
    }
    stream >> out;
    return !stream.fail() && stream.eof();
}

// `out` is compared bit by bit, so that -0 and 0 differ, and before it holds what no text gives.
template <typename T>
bool sameBits(const T& a, const T& b) {
    return std::memcmp(&a, &b, sizeof(T)) == 0;
}

template <typename T>
std::string difference(const std::string& text) {
    for (const int base : {10, 16, 8}) {
        T expected = 77;
        T got = 77;
        bool good = false;
        if constexpr (std::is_floating_point_v<T>) {
            good = kalo::decode(text, got);
        } else {
            good = kalo::decode(text, got, base);
        }
        const auto flags = base == 10   ? std::ios_base::dec
                           : base == 16 ? std::ios_base::hex
                                        : std::ios_base::oct;
        if (good != reference(text, expected, flags) || !sameBits(expected, got)) {
            std::ostringstream message;
            message << testing::PrintToString(text) << " in base " << base << " as "
                    << typeid(T).name() << ": " << good << ' ' << got << " not " << expected;
            return message.str();
        }
        if (std::is_floating_point_v<T>) {
            break;
        }
    }
    return "";
}

// Empty, or what differs for one of the types.
std::string difference(const std::string& text) {
    for (const auto& compare :
         {difference<short>, difference<unsigned short>, difference<int>, difference<unsigned>,
          difference<long long>, difference<unsigned long long>, difference<float>,
          difference<double>}) {
        const std::string found = compare(text);
        if (!found.empty()) {
            return found;
        }
    }
    return "";
}

// Texts around everything that has a rule of its own.
std::vector<std::string> systematicTexts() {
    std::vector<std::string> texts;
    const std::vector<std::string> heads = {"", " ", "\t", "+", "-", " -", "+-", "--", "\v+"};
    const std::vector<std::string> prefixes = {"", "0x", "0X", "0", "00"};
    const std::vector<std::string> bodies = {"",
                                             "0",
                                             "7",
                                             "8",
                                             "42",
                                             "fF",
                                             "g",
                                             "32767",
                                             "32768",
                                             "32769",
                                             "65535",
                                             "65536",
                                             "2147483647",
                                             "2147483648",
                                             "2147483649",
                                             "4294967295",
                                             "4294967296",
                                             "9223372036854775807",
                                             "9223372036854775808",
                                             "9223372036854775809",
                                             "18446744073709551615",
                                             "18446744073709551616",
                                             "ffff",
                                             "10000",
                                             "7fff",
                                             "8000",
                                             "ffffffff",
                                             "100000000",
                                             "7fffffffffffffff",
                                             "8000000000000000",
                                             "ffffffffffffffff",
                                             "10000000000000000",
                                             "177777",
                                             "37777777777",
                                             "40000000000",
                                             "1777777777777777777777",
                                             ".",
                                             ".5",
                                             "5.",
                                             "1.5",
                                             "1..5",
                                             "1.5.",
                                             "0.1",
                                             "4807.038",
                                             "123519.25",
                                             "9007199254740991.5",
                                             "9007199254740992",
                                             "9007199254740993",
                                             "9007199254740992.5",
                                             "0.3333333333333333333333",
                                             "123456789012345678901234567890",
                                             "12345678901234567.8901234",
                                             "0.00000000000000000000001",
                                             "0.000000000000000000000001",
                                             "3.40282346638528859e38",
                                             "3.4028235677973366e38",
                                             "1.17549435e-38",
                                             "1.4e-45",
                                             "7e-46",
                                             "1.7976931348623157e308",
                                             "1.7976931348623159e308",
                                             "2.2250738585072014e-308",
                                             "4.9e-324",
                                             "2e-324",
                                             "1e400",
                                             "1e-400",
                                             "1e",
                                             "1e+",
                                             "1e5",
                                             "1E-5",
                                             "e5",
                                             "1e5.0",
                                             "1e 5",
                                             "inf",
                                             "nan",
                                             "infinity",
                                             "nan(1)",
                                             "nan(1.",
                                             "1,000",
                                             "1'000",
                                             "1_0",
                                             "1p3",
                                             "0b1"};
    const std::vector<std::string> tails = {"", " ", "x", std::string(1, '\0'), "\r", "-", ",5"};
    for (const auto& head : heads) {
        for (const auto& prefix : prefixes) {
            for (const auto& body : bodies) {
                for (const auto& tail : tails) {
                    texts.push_back(head + prefix + body + tail);
                }
            }
        }
    }
    return texts;
}

std::string randomText(std::mt19937_64& random) {
    static constexpr char alphabet[] = "0123456789012345678901234567890.....---++eEabcdefxX, \t\0'";
    std::string text(random() % (random() % 8 == 0 ? 40 : 12), '\0');
    for (char& c : text) {
        c = alphabet[random() % (random() % 4 == 0 ? sizeof alphabet : 36)];
    }
    // Many digits with a point are where rounding goes wrong.
    if (random() % 4 == 0) {
        text = std::to_string(random() >> random() % 20);
        text.insert(random() % (text.size() + 1), ".");
    }
    return text;
}

TEST(numberDifference, systematicTexts) {
    for (const std::string& text : systematicTexts()) {
        ASSERT_EQ(difference(text), "");
    }
}

// KALO_RANDOM_TEXTS makes the run longer.
TEST(numberDifference, randomTexts) {
    const char* wanted = std::getenv("KALO_RANDOM_TEXTS");
    const long count = wanted != nullptr ? std::atol(wanted) : 20000;
    std::mt19937_64 random(1);
    for (long i = 0; i < count; ++i) {
        ASSERT_EQ(difference(randomText(random)), "") << "text " << i;
    }
}

// A locale without a name, which no question to the C library would find.
struct germanNumbers_t : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

TEST(numberDifference, anotherGlobalLocale) {
    const std::locale before =
        std::locale::global(std::locale(std::locale::classic(), new germanNumbers_t));
    std::mt19937_64 random(2);
    std::string found;
    for (int i = 0; i < 20000 && found.empty(); ++i) {
        found = difference(randomText(random));
    }
    double value = 0;
    EXPECT_TRUE(kalo::decode("1.234,5", value));
    EXPECT_EQ(value, 1234.5);
    EXPECT_FALSE(kalo::decode("1.5", value));
    std::locale::global(before);
    EXPECT_EQ(found, "");
}

} // namespace
