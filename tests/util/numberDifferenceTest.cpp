// Numbers have two ways to be read: this holds them against the stream that defines the result, and
// to the rules that a caller relies on.
#include <cstdlib>
#include <locale>
#include <random>
#include <sstream>

#include "tests/numberReference.h"
#include "tests/sentence.h"

namespace {

// Texts around everything that has a rule of its own.
strings_t systematicTexts() {
    const strings_t heads = {"", " ", "\t", "+", "-", " -", "+-", "--", "\v+"};
    const strings_t prefixes = {"", "0x", "0X", "0", "00"};
    const strings_t tails = {"", " ", "x", {"\0", 1}, "\r", "-", ",5"};
    strings_t bodies = {"", "1e 5"}, texts;
    std::istringstream words(
        "0 7 8 42 fF g 32767 32768 32769 65535 65536 2147483647 2147483648 2147483649 4294967295 "
        "4294967296 9223372036854775807 9223372036854775808 9223372036854775809 "
        "18446744073709551615 18446744073709551616 ffff 10000 7fff 8000 ffffffff 100000000 "
        "7fffffffffffffff 8000000000000000 ffffffffffffffff 10000000000000000 177777 37777777777 "
        "40000000000 1777777777777777777777 . .5 5. 1.5 1..5 1.5. 0.1 4807.038 123519.25 "
        "9007199254740991.5 9007199254740992 9007199254740993 9007199254740992.5 "
        "0.3333333333333333333333 123456789012345678901234567890 12345678901234567.8901234 "
        "0.00000000000000000000001 0.000000000000000000000001 3.40282346638528859e38 "
        "3.4028235677973366e38 1.17549435e-38 1.4e-45 7e-46 1.7976931348623157e308 "
        "1.7976931348623159e308 2.2250738585072014e-308 4.9e-324 2e-324 1e400 1e-400 1e 1e+ 1e5 "
        "1E-5 e5 1e5.0 inf nan infinity nan(1) nan(1. 1,000 1'000 1_0 1p3 0b1");
    for (std::string word; words >> word;) {
        bodies.push_back(word);
    }
    for (const std::string& head : heads) {
        for (const std::string& prefix : prefixes) {
            for (const std::string& body : bodies) {
                for (const std::string& tail : tails) {
                    texts.push_back(head + prefix + body + tail);
                }
            }
        }
    }
    return texts;
}

std::string randomText(std::mt19937_64& random) {
    static constexpr char alphabet[] = "0123456789012345678901234567890.....---++eEabcdefxX, \t\0'";
    const auto below = [&](std::uint64_t count) {
        return static_cast<std::size_t>(random() % count);
    };
    std::string text(below(below(8) == 0 ? 40 : 12), '\0');
    for (char& c : text) {
        c = alphabet[below(below(4) == 0 ? sizeof alphabet : 36)];
    }
    // Many digits with a point are where rounding goes wrong.
    if (below(4) == 0) {
        text = std::to_string(random() >> below(20));
        text.insert(below(text.size() + 1), ".");
    }
    return text;
}

TEST(numberDifference, systematicTexts) {
    for (const std::string& text : systematicTexts()) {
        ASSERT_TRUE(agrees(text)) << testing::PrintToString(text);
    }
}

// Every text of the characters that mean something in a number, and of some that do not, up to four
// of them. KALO_TEXT_LENGTH sets another length.
TEST(numberDifference, everyShortText) {
    constexpr std::string_view alphabet = "01789afgxXeE+-., '\t";
    const char* const wanted = std::getenv("KALO_TEXT_LENGTH");
    const std::size_t most = wanted != nullptr ? std::stoul(wanted) : 4;
    std::vector<std::size_t> letters;
    while (letters.size() <= most) {
        std::string text;
        for (const std::size_t letter : letters) {
            text += alphabet[letter];
        }
        ASSERT_TRUE(agrees(text)) << testing::PrintToString(text);
        // count up
        std::size_t at = 0;
        while (at < letters.size() && ++letters[at] == alphabet.size()) {
            letters[at++] = 0;
        }
        if (at == letters.size()) {
            letters.push_back(0);
        }
    }
}

// KALO_RANDOM_TEXTS makes the run longer.
TEST(numberDifference, randomTexts) {
    const char* wanted = std::getenv("KALO_RANDOM_TEXTS");
    const long count = wanted != nullptr ? std::atol(wanted) : 20000;
    std::mt19937_64 random(1);
    for (long i = 0; i < count; ++i) {
        const std::string text = randomText(random);
        ASSERT_TRUE(agrees(text)) << testing::PrintToString(text);
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
    for (int i = 0; i < 20000; ++i) {
        const std::string text = randomText(random);
        EXPECT_TRUE(agrees(text)) << testing::PrintToString(text);
    }
    double value = 0;
    EXPECT_TRUE(kalo::decode("1.234,5", value));
    EXPECT_EQ(value, 1234.5);
    EXPECT_FALSE(kalo::decode("1.5", value));
    std::locale::global(before);
}

TEST(decode, knowsThreeBases) {
    unsigned value = 77;
    for (const int base : {0, 2, 9, 11}) {
        EXPECT_FALSE(kalo::decode("1", value, base)) << base;
    }
    EXPECT_EQ(value, 77U);
}

TEST(toUpper, changesSmallLettersAlone) {
    EXPECT_EQ(kalo::toUpper(std::string("gp1x\0\xE4z", 7)), std::string("GP1X\0\xE4Z", 7));
}

} // namespace
