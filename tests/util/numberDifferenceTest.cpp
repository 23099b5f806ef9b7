// Numbers have two ways to be read: this holds them against the stream that defines the result, and
// to the rules that a caller relies on.
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
#include "tests/sentence.h"

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

// Empty, or what differs: before, `out` holds what no text gives, and it is compared bit by bit.
template <typename T, typename... Base>
std::string differenceAs(const std::string& text, std::ios_base::fmtflags flags, Base... base) {
    T expected = 77, got = 77;
    const bool good = kalo::decode(text, got, base...);
    if (good == reference(text, expected, flags) && std::memcmp(&expected, &got, sizeof got) == 0) {
        return "";
    }
    std::ostringstream message;
    message << testing::PrintToString(text) << " in base " << testing::PrintToString(flags)
            << " as " << typeid(T).name() << ": " << good << ' ' << got << " not " << expected;
    return message.str();
}

template <typename... Integers>
std::string difference(const std::string& text) {
    std::string found =
        differenceAs<float>(text, std::ios::dec) + differenceAs<double>(text, std::ios::dec);
    for (const auto& [base, flags] : {std::pair(10, std::ios::dec), std::pair(16, std::ios::hex),
                                      std::pair(8, std::ios::oct)}) {
        found += (differenceAs<Integers>(text, flags, base) + ...);
    }
    return found;
}

constexpr auto differenceOf =
    difference<short, unsigned short, int, unsigned, long long, unsigned long long>;

// Texts around everything that has a rule of its own.
std::vector<std::string> systematicTexts() {
    std::vector<std::string> texts;
    const auto heads = split("| |\t|+|-| -|+-|--|\v+"), prefixes = split("|0x|0X|0|00");
    const auto bodies =
        split("|0|7|8|42|fF|g|32767|32768|32769|65535|65536|2147483647|2147483648|2147483649"
              "|4294967295|4294967296|9223372036854775807|9223372036854775808"
              "|9223372036854775809|18446744073709551615|18446744073709551616|ffff|10000|7fff"
              "|8000|ffffffff|100000000|7fffffffffffffff|8000000000000000|ffffffffffffffff"
              "|10000000000000000|177777|37777777777|40000000000|1777777777777777777777|.|.5"
              "|5.|1.5|1..5|1.5.|0.1|4807.038|123519.25|9007199254740991.5|9007199254740992"
              "|9007199254740993|9007199254740992.5|0.3333333333333333333333"
              "|123456789012345678901234567890|12345678901234567.8901234"
              "|0.00000000000000000000001|0.000000000000000000000001|3.40282346638528859e38"
              "|3.4028235677973366e38|1.17549435e-38|1.4e-45|7e-46|1.7976931348623157e308"
              "|1.7976931348623159e308|2.2250738585072014e-308|4.9e-324|2e-324|1e400|1e-400"
              "|1e|1e+|1e5|1E-5|e5|1e5.0|1e 5|inf|nan|infinity|nan(1)|nan(1.|1,000|1'000|1_0"
              "|1p3|0b1");
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
        ASSERT_EQ(differenceOf(text), "");
    }
}

// KALO_RANDOM_TEXTS makes the run longer.
TEST(numberDifference, randomTexts) {
    const char* wanted = std::getenv("KALO_RANDOM_TEXTS");
    const long count = wanted != nullptr ? std::atol(wanted) : 20000;
    std::mt19937_64 random(1);
    for (long i = 0; i < count; ++i) {
        ASSERT_EQ(differenceOf(randomText(random)), "") << "text " << i;
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
        found = differenceOf(randomText(random));
    }
    double value = 0;
    EXPECT_TRUE(kalo::decode("1.234,5", value));
    EXPECT_EQ(value, 1234.5);
    EXPECT_FALSE(kalo::decode("1.5", value));
    std::locale::global(before);
    EXPECT_EQ(found, "");
}

template <typename T, typename... Cases>
void check(int base, Cases... cases) {
    const auto read = [&](const std::string& text, T& out) {
        if constexpr (std::is_floating_point_v<T>) {
            return kalo::decode(text, out);
        } else {
            return kalo::decode(text, out, base);
        }
    };
    checkTexts<T>(read, cases...);
}

TEST(decode, integers) {
    check<unsigned>(10, 10, "010|  10|\t\n10|+10", unset, "10 |10x|1,0|1.0|x|+|0x");
    check<unsigned>(16, 74, "4A|4a|0x4a|0X4A| 4a", unset, "4A |0x|G");
    check<unsigned>(8, 15, "17", unset, "8");
    for (const int base : {10, 16, 8}) {
        check<unsigned>(base, none, "|   |-1| -0|-");
        check<unsigned short>(base, none, "-1");
        check<unsigned long long>(base, none, "-1");
        check<int>(base, none, "|  ");
    }
    check<unsigned>(2, none, "1");
    check<int>(0, none, "1");
    check<short>(10, 32767, "32767", -32768, "-32768", unset, "32768|-32769|40000");
    check<unsigned>(10, 4294967295, "4294967295", unset, "4294967296|99999999999999999999999");
}

TEST(decode, realNumbers) {
    check<double>(10, 0.5, ".5|+5E-1|  0.5", 5, "5.", 0, "1e-400", none, "|  ", unset,
                  "1e400|5.4M|1.2.3|1,5|1 |inf|nan|0x1p3|1e|.|--1");
    check<float>(10, 16777216, "16777217", unset, "1e39");
}

TEST(toUpper, changesSmallLettersAlone) {
    EXPECT_EQ(kalo::toUpper(std::string("gp1x\0\xE4z", 7)), std::string("GP1X\0\xE4Z", 7));
}

} // namespace
