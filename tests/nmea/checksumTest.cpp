// All there is of checksums: every text that may stand there, and every change of one byte.
#include <cctype>
#include <set>

#include "kalo/sensors/atsAsciiMsg.h"
#include "kalo/util/stringUtil.h"
#include "tests/sentence.h"

namespace {

using kalo::nmeaFormat_t;

// A body, and all texts of two characters that are its checksum.
struct checksum_t {
    std::string body;
    std::set<std::string> accepted;
};

const checksum_t checksums[] = {
    {"$A", {"41"}},
    {"$GPHDT", {"4F", "4f"}},
    {"$k\xC0", {"AB", "Ab", "aB", "ab"}},
    // the rules for numbers accept white space or "+" in front of one digit
    {"$AD", {"05", " 5", "\t5", "\n5", "\v5", "\f5", "\r5", "+5"}},
    {"$", {"00", " 0", "\t0", "\n0", "\v0", "\f0", "\r0", "+0"}},
};

TEST(checksum, isOneOfAllTexts) {
    for (const checksum_t& row : checksums) {
        std::set<std::string> accepted;
        nmeaFormat_t format;
        for (int high = 0; high < 256; ++high) {
            for (int low = 0; low < 256; ++low) {
                const std::string digits = {static_cast<char>(high), static_cast<char>(low)};
                const std::string_view text = guarded(row.body + '*' + digits + "\r\n");
                if (format.init(text.data(), text.size())) {
                    accepted.insert(digits);
                    continue;
                }
                unsigned number = 0;
                ASSERT_EQ(format.formatError(), kalo::decode(digits, number, 16) ? 2 : 1)
                    << testing::PrintToString(digits);
            }
        }
        EXPECT_EQ(accepted, row.accepted) << row.body;
    }
}

/// Calls `check(text, at)` with every text that differs from `sample` in the byte at `at`.
template <typename Check>
void changeEach(const std::string& sample, Check check) {
    for (std::size_t at = 0; at < sample.size(); ++at) {
        std::string text = sample;
        for (int byte = 0; byte < 256; ++byte) {
            text[at] = static_cast<char>(byte);
            if (text[at] != sample[at]) {
                check(text, at);
            }
        }
    }
}

bool isSameNumber(const std::string& left, const std::string& right) {
    unsigned numbers[2] = {0, 1};
    return kalo::decode(left, numbers[0], 16) && kalo::decode(right, numbers[1], 16) &&
           numbers[0] == numbers[1];
}

// The checksum does not cover the start character and itself, and without its "*" it is text.
TEST(checksum, noticesEveryOtherByteOfASentence) {
    const std::string sample = sentence("$GPGLL,5012.34,N,00110.25,E,235836.00,A,D");
    const std::size_t star = sample.size() - 5;
    changeEach(sample, [&](const std::string& text, std::size_t at) {
        const bool isAccepted =
            (at == 0 && text[0] == '!') || at == star ||
            (at > star && at < star + 3 &&
             isSameNumber(text.substr(star + 1, 2), sample.substr(star + 1, 2)));
        ASSERT_EQ(nmeaFormat_t(guarded(text).data(), text.size()).isValid(), isAccepted) << text;
    });
}

TEST(checksum, noticesEveryOtherByteOfATrackingRecord) {
    const std::string sample = "16 NOV 2026 21:41:01:250 B:12 X:105.2 H:271.3*36\r\n";
    const std::size_t star = sample.find('*');
    ASSERT_FALSE(kalo::atsAsciiMsg_t(sample.data(), sample.size()).checksumError());
    changeEach(sample, [&](const std::string& text, std::size_t at) {
        const bool isThirdDigit =
            at == star + 3 && std::isxdigit(static_cast<unsigned char>(text[at])) != 0;
        const bool isDigit = at > star && at <= star + 2 &&
                             isSameNumber(text.substr(star + 1, 2), sample.substr(star + 1, 2));
        const bool isAccepted = at == star || isDigit || (at > star + 2 && !isThirdDigit);
        ASSERT_EQ(kalo::atsAsciiMsg_t(guarded(text).data(), text.size()).checksumError(),
                  !isAccepted)
            << text;
    });
}

TEST(checksum, needsTheWholeSentence) {
    const std::string sample = sentence("$GPGLL,5012.34,N,00110.25,E,235836.00,A,D");
    nmeaFormat_t format;
    for (std::size_t length = 0; length < sample.size(); ++length) {
        const std::string_view text = guarded(sample.substr(0, length));
        EXPECT_FALSE(format.init(text.data(), text.size())) << text;
        EXPECT_EQ(format.formatError(), length == 0 ? 0 : 1) << text;
    }
}

} // namespace
