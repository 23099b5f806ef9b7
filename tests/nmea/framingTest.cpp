// Framing finds commas and copies short fields by fast ways where the platform has them. These
// tests hold it to plain ways, and are built with the fast ones and without.
#include <random>

#include <gtest/gtest.h>

#include "kalo/nmea/commaScan.h"
#include "kalo/nmea/nmeaFormat.h"
#include "tests/sentence.h"

namespace {

std::string randomText(std::mt19937& random, std::size_t length) {
    std::string text(length, ',');
    for (char& c : text) {
        if (random() % 4 != 0) {
            c = static_cast<char>(random() % 256);
        }
    }
    return text;
}

strings_t splitPlainly(const std::string& text) {
    strings_t fields(1);
    for (const char c : text) {
        if (c == ',') {
            fields.emplace_back();
        } else {
            fields.back() += c;
        }
    }
    return fields;
}

} // namespace

TEST(framing, findsCommasAsBytewise) {
    std::mt19937 random(1);
    for (std::size_t length = 0; length < 100; ++length) {
        for (int turn = 0; turn < 20; ++turn) {
            const std::string_view text = guarded(randomText(random, length));
            std::vector<const char*> commas, expected;
            const auto add = [&](const char* at) { commas.push_back(at); };
            const auto addPlainly = [&](const char* at) { expected.push_back(at); };
            const char* const end = text.data() + length;
            EXPECT_EQ(kalo::scanCommas(text.data(), end, add),
                      kalo::scanCommasPlainly(text.data(), end, addPlainly));
            EXPECT_EQ(commas, expected);
        }
    }
}

TEST(framing, copiesEveryField) {
    std::mt19937 random(2);
    kalo::nmeaFormat_t
        format; // framed again and again, so that fields of all sizes follow each other
    for (int turn = 0; turn < 20000; ++turn) {
        const std::string body = "$" + randomText(random, random() % 200);
        const std::string text = sentence(body);
        ASSERT_TRUE(format.init(guarded(text).data(), text.size()));
        strings_t fields;
        for (unsigned i = 0; i < format.fieldCount(); ++i) {
            fields.push_back(format.field(i)->toString());
        }
        ASSERT_EQ(fields, splitPlainly(body));
    }
}
