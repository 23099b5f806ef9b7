#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <set>

#include "kalo/sensors/tss1MsgBuilder.h"
#include "tests/sentence.h"

namespace {

using builder_t = kalo::tss1MsgBuilder_t;
using kalo::tss1Msg_t;

constexpr double angle = 0x1.6e05a695f8191p-13; // a hundredth of a degree
constexpr double infinity = std::numeric_limits<double>::infinity();
const std::string letters = "UuGgHhFf";
const std::string zeroRecord = ":000000  0000G 0000  0000\r\n";

tss1Msg_t decoded(const std::string& record) {
    const std::string_view bytes = guarded(record);
    tss1Msg_t message;
    message.init(bytes.data(), bytes.size());
    return message;
}

/// What a column's decoder gives for its characters.
void check(bool (tss1Msg_t::*decode)(const char*), double tss1Msg_t::*member,
           const std::vector<texts_t<double>>& rows) {
    const auto read = [&](const std::string& text) {
        return valueOf<double>([&](double& out) {
            tss1Msg_t message;
            message.*member = out;
            const bool good = (message.*decode)(guarded(text).data());
            out = message.*member;
            return good;
        });
    };
    checkTexts<double>(read, rows);
}

TEST(tss1Msg, decodesEachColumn) {
    const auto signedColumns = [](double count) {
        return std::vector<texts_t<double>>{
            {-9999 * count, {"-9999"}},
            {105 * count, {" 0105", "  105"}},
            {12 * count, {" \t+12"}},
            {-1.25 * count, {"-1.25"}},
            {1e99 * count, {" 1e99"}},
            {refused,
             {"+0105", "00105", "\t0105", " 105 ", "     ", "- 105", "--105", " 0x10", "  nan",
              "  inf", " 1.2.", "-012x", "u0120"}}};
    };
    check(&tss1Msg_t::decodeRoll, &tss1Msg_t::roll, signedColumns(angle));
    check(&tss1Msg_t::decodePitch, &tss1Msg_t::pitch, signedColumns(angle));
    check(&tss1Msg_t::decodeHeave, &tss1Msg_t::heave, signedColumns(0.01));
    check(&tss1Msg_t::decodeHAccel, &tss1Msg_t::hAccel,
          {{255 * 0.0383, {"FF"}},
           {171 * 0.0383, {"aB"}},
           {11 * 0.0383, {" b"}},
           {refused, {"b ", "-1", "0x", "G0", "  "}}});
    check(&tss1Msg_t::decodeVAccel, &tss1Msg_t::vAccel,
          {{32767 * 0.000625, {"7FFF"}},
           {-32768 * 0.000625, {"8000"}},
           {-1 * 0.000625, {"ffff"}},
           {255 * 0.000625, {"0xfF"}},
           {refused, {"    ", "-001", "00 1", "FFFG"}}});
    for (int byte = 0; byte < 256; ++byte) {
        tss1Msg_t message;
        message.status = static_cast<tss1Msg_t::status_t>(letters.size());
        const char letter = static_cast<char>(byte);
        const std::size_t index = std::min(letters.find(letter), letters.size());
        EXPECT_EQ(message.decodeStatus(&letter), index < letters.size()) << byte;
        EXPECT_EQ(static_cast<std::size_t>(message.status), index) << byte;
    }
}

TEST(tss1Msg, eachMalformedColumnClearsItsBitOnly) {
    const std::string record = ":00FF80 -0120U 0105 -0210";
    std::string allMalformed = record;
    const std::vector<std::pair<std::size_t, std::uint32_t>> columns{
        {1, tss1Msg_t::validHAccel},  {3, tss1Msg_t::validVAccel}, {8, tss1Msg_t::validHeave},
        {13, tss1Msg_t::validStatus}, {14, tss1Msg_t::validRoll},  {20, tss1Msg_t::validPitch}};
    for (const auto& [begin, bit] : columns) {
        std::string malformed = record;
        malformed[begin] = allMalformed[begin] = 'x';
        EXPECT_EQ(decoded(malformed).validMask, tss1Msg_t::validAll & ~bit) << malformed;
    }
    EXPECT_EQ(decoded(allMalformed).validMask, 0U) << allMalformed;
}

TEST(tss1Msg, wantsTheColonAndItsColumns) {
    const std::string record = ":00FF80 -0120U 0105 -0210";
    tss1Msg_t message = decoded(record);
    EXPECT_EQ(message.validMask, 0x3FU);
    EXPECT_EQ(decoded(":00FF80x-0120U 0105x-0210\r\n:").validMask, 0x3FU);
    EXPECT_EQ(decoded("\n" + record).validMask, 0U);
    for (std::size_t length = 0; length < record.size(); ++length) {
        EXPECT_EQ(decoded(record.substr(0, length)).validMask, 0U) << length;
    }
    message.init(record.data(), 24);
    double out = 77;
    EXPECT_FALSE(message.getHeave(out) || message.getRoll(out) || message.getPitch(out) ||
                 message.getHorizontalAcceleration(out) || message.getVerticalAcceleration(out));
    EXPECT_TRUE(message.validMask == 0 && message.heave == -1.2 && out == 77);
}

builder_t zeros() {
    builder_t builder;
    builder.setRoll(0);
    builder.setPitch(0);
    builder.setHeave(0);
    builder.setHorizontalAcceleration(0);
    builder.setVerticalAcceleration(0);
    builder.setStatus(tss1Msg_t::gpsAidedStable);
    return builder;
}

TEST(tss1MsgBuilder, writesColumns) {
    constexpr auto horizontal = &builder_t::setHorizontalAcceleration;
    constexpr auto vertical = &builder_t::setVerticalAcceleration;
    constexpr auto heave = &builder_t::setHeave;
    const struct {
        void (builder_t::*set)(double);
        double value;
        const char* record;
    } cases[] = {{horizontal, 0.03, ":000000  0000G 0000  0000\r\n"},
                 {horizontal, 1, ":1A0000  0000G 0000  0000\r\n"},
                 {horizontal, 9.8047, ":FF0000  0000G 0000  0000\r\n"},
                 {horizontal, 9.8048, ":1000000  0000G 0000  0000\r\n"},
                 {horizontal, std::nan(""), ":000000  0000G 0000  0000\r\n"},
                 {horizontal, 1e308, ":FFFFFFFF0000  0000G 0000  0000\r\n"},
                 {vertical, -20.48, ":008000  0000G 0000  0000\r\n"},
                 {vertical, 41, ":0010040  0000G 0000  0000\r\n"},
                 {vertical, infinity, ":007FFFFFFF  0000G 0000  0000\r\n"},
                 {vertical, -1e308, ":0080010000  0000G 0000  0000\r\n"},
                 {heave, 0.125, ":000000  0012G 0000  0000\r\n"},
                 {heave, -0.004, ":000000 -0000G 0000  0000\r\n"},
                 {heave, 99.996, ":000000  10000G 0000  0000\r\n"},
                 {heave, -infinity, ":000000 -0infG 0000  0000\r\n"},
                 {&builder_t::setRoll, -1.5 * angle, ":000000  0000G-0002  0000\r\n"},
                 {&builder_t::setPitch, 9999.6 * angle, ":000000  0000G 0000  10000\r\n"}};
    for (const auto& row : cases) {
        builder_t builder = zeros();
        (builder.*row.set)(row.value);
        EXPECT_EQ(builder.build(), row.record) << row.value;
    }
    builder_t builder = zeros();
    builder.setRoll(std::numeric_limits<double>::max() * angle); // the longest finite number
    EXPECT_EQ(builder.build().size(), zeroRecord.size() - 4 + 309);
}

TEST(tss1MsgBuilder, wantsExactlySixValues) {
    builder_t builder = zeros();
    for (builder.validMask = 0; builder.validMask < 128; ++builder.validMask) {
        EXPECT_EQ(builder.build(), builder.validMask == 63 ? zeroRecord : "");
    }
    builder = zeros();
    builder.setStatus(static_cast<tss1Msg_t::status_t>(8));
    EXPECT_EQ(builder.build(), "");
    builder.reset();
    EXPECT_EQ(builder.validMask, 0U);
}

// Heave, roll and pitch come back as they were. The accelerations lose one count in magnitude where
// the quotient falls just short of it.
TEST(tss1, everyCountSurvives) {
    std::set<int> lostHorizontal, lostVertical;
    for (int count = -32768; count < 32768; ++count) {
        const int horizontal = count & 0xFF, small = (count + 32768) % 19999 - 9999;
        char text[28], column[6];
        std::snprintf(column, sizeof column, small < 0 ? "-%04d" : " %04d", std::abs(small));
        std::snprintf(text, sizeof text, ":%02X%04X %s%c%s %s\r\n", horizontal, count & 0xFFFF,
                      column, letters[static_cast<std::size_t>(count & 7)], column, column);
        const tss1Msg_t message = decoded(text);
        ASSERT_TRUE(message.validMask == 0x3F && message.hAccel == horizontal * 0.0383 &&
                    message.vAccel == count * 0.000625)
            << text;
        builder_t builder;
        builder.setHeave(message.heave);
        builder.setRoll(message.roll);
        builder.setPitch(message.pitch);
        builder.setHorizontalAcceleration(message.hAccel);
        builder.setVerticalAcceleration(message.vAccel);
        builder.setStatus(message.status);
        ASSERT_EQ(builder.build().substr(7), text + 7);
        const tss1Msg_t again = decoded(builder.build());
        if (again.hAccel != message.hAccel) {
            lostHorizontal.insert(horizontal);
            ASSERT_EQ(again.hAccel, (horizontal - 1) * 0.0383) << text;
        }
        if (again.vAccel != message.vAccel) {
            lostVertical.insert(count);
            ASSERT_EQ(again.vAccel, (count < 0 ? count + 1 : count - 1) * 0.000625) << text;
        }
        // a value in the middle of a count gives that count
        builder.setHorizontalAcceleration((horizontal + 0.5) * 0.0383);
        builder.setVerticalAcceleration((count < 0 ? count - 0.5 : count + 0.5) * 0.000625);
        ASSERT_EQ(builder.build(), text);
    }
    EXPECT_TRUE(lostHorizontal.size() == 12 && lostVertical.size() == 4858);
}

} // namespace
