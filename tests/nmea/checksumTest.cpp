// Every text that may stand for a checksum. perturbationTest.cpp changes what it covers.
#include <set>

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

} // namespace
