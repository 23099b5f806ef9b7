#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "kalo/sensors/tss1MsgBuilder.h"
#include "tests/sentence.h"

namespace {

using builder_t = kalo::tss1MsgBuilder_t;
using kalo::tss1Msg_t;

constexpr double untouched = 77;
constexpr double angle = 0x1.6e05a695f8191p-13; // a hundredth of a degree
const struct {
    std::size_t column;
    std::size_t width;
    double scale;
    bool (tss1Msg_t::*get)(double&) const;
    void (builder_t::*set)(double);
} fields[] = { // in the order of their bits
    {14, 5, angle, &tss1Msg_t::getRoll, &builder_t::setRoll},
    {20, 5, angle, &tss1Msg_t::getPitch, &builder_t::setPitch},
    {8, 5, 0.01, &tss1Msg_t::getHeave, &builder_t::setHeave},
    {1, 2, 0.0383, &tss1Msg_t::getHorizontalAcceleration, &builder_t::setHorizontalAcceleration},
    {3, 4, 0.000625, &tss1Msg_t::getVerticalAcceleration, &builder_t::setVerticalAcceleration}};
enum field_t { roll, pitch, heave, hAccel, vAccel, fieldCount };

const std::string example = ":00FF80 -0120U 0105 -0210";
constexpr double exampleCounts[fieldCount] = {105, -210, -120, 0, -128};
const std::string letters = "UuGgHhFf";

// Decodes a copy of a record that ends where readable memory ends.
tss1Msg_t decoded(const std::string& record) {
    static const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    static char* const end = [] {
        char* const memory = static_cast<char*>(
            mmap(nullptr, 2 * page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
        return mprotect(memory + page, page, PROT_NONE) == 0 ? memory + page : nullptr;
    }();
    std::memcpy(end - record.size(), record.data(), record.size());
    tss1Msg_t message;
    message.init(end - record.size(), record.size());
    return message;
}

// The example with each text in the place of one field, and the count behind its ":", if any.
void checkField(field_t field, const char* cases) {
    for (const std::string& text : split(cases)) {
        const std::size_t width = fields[field].width;
        std::string record = example;
        record.replace(fields[field].column, width, text, 0, width);
        const tss1Msg_t message = decoded(record);
        for (unsigned i = 0; i < fieldCount; ++i) {
            const bool good = i != field || text.size() > width;
            const double counts =
                i == field && good ? std::stod(text.substr(width + 1)) : exampleCounts[i];
            double out = untouched;
            EXPECT_EQ((message.*fields[i].get)(out), good) << record << ' ' << i;
            EXPECT_EQ(out, good ? counts * fields[i].scale : untouched) << record << ' ' << i;
            EXPECT_EQ((message.validMask >> i & 1) != 0, good) << record << ' ' << i;
        }
        EXPECT_EQ(message.validMask >> fieldCount, 1U) << record;
    }
}

TEST(tss1Msg, decodesEachColumnOnItsOwn) {
    for (const field_t field : {roll, pitch, heave}) {
        checkField(
            field,
            "-9999:-9999|  105:105| \t+12:12|-1.25:-1.25| 1e99:1e99|"
            "+0105|00105|\t0105| 105 |     |- 105|--105| 0x10|  nan|  inf| 1.2.|-012x|u0120");
    }
    checkField(hAccel, "FF:255|aB:171| b:11|b |-1|0x|G0|  ");
    checkField(vAccel, "7FFF:32767|8000:-32768|ffff:-1|0xfF:255|    |-001|00 1|FFFG");
}

TEST(tss1Msg, knowsEightLetters) {
    for (unsigned byte = 0; byte < 256; ++byte) {
        std::string record = example;
        record[13] = static_cast<char>(byte);
        const auto index = letters.find(record[13]);
        const bool good = index != std::string::npos;
        auto out = tss1Msg_t::headingAidedStable;
        EXPECT_EQ(decoded(record).getStatus(out), good) << byte;
        EXPECT_EQ(static_cast<std::size_t>(out), good ? index : 4) << byte;
        EXPECT_EQ(decoded(record).validMask, good ? 0x3FU : 0x1FU) << byte;
    }
}

TEST(tss1Msg, wantsTheColonAndItsColumns) {
    for (std::size_t length = 0; length < example.size(); ++length) {
        EXPECT_EQ(decoded(example.substr(0, length)).validMask, 0U) << length;
    }
    EXPECT_EQ(decoded("\n" + example).validMask, 0U);
    EXPECT_EQ(decoded(":00FF80x-0120U 0105x-0210\r\n:").validMask, 0x3FU);
    tss1Msg_t message = decoded(example);
    message.init(example.data(), 24);
    double out = untouched;
    EXPECT_FALSE(message.getHeave(out) || message.getRoll(out));
    EXPECT_TRUE(message.validMask == 0 && message.heave == -1.2 && out == untouched);
    EXPECT_TRUE(message.decodeHeave("-0003") && message.decodeStatus("f"));
    EXPECT_FALSE(message.decodeHAccel(":0") || message.decodeRoll(":0000"));
    EXPECT_TRUE(message.heave == -3 * 0.01 && message.status == tss1Msg_t::fullAidedUnstable);
    EXPECT_EQ(message.validMask, 0U);
}

builder_t zeros(unsigned mask) {
    builder_t builder;
    for (unsigned i = 0; i < fieldCount; ++i) {
        if ((mask >> i & 1) != 0) {
            (builder.*fields[i].set)(0);
        }
    }
    if ((mask & 0x20) != 0) {
        builder.setStatus(tss1Msg_t::gpsAidedStable);
    }
    return builder;
}

const std::string zeroRecord = ":000000  0000G 0000  0000\r\n";

// Texts of a column, and the value behind the ":" that gives each.
void checkBuilt(field_t field, double unit, const char* cases) {
    for (const std::string& text : split(cases)) {
        const std::size_t colon = text.find(':');
        builder_t builder = zeros(63);
        (builder.*fields[field].set)(std::stod(text.substr(colon + 1)) * unit);
        std::string record = zeroRecord;
        record.replace(fields[field].column, fields[field].width, text, 0, colon);
        EXPECT_EQ(builder.build(), record) << text;
    }
}

TEST(tss1MsgBuilder, writesColumns) {
    checkBuilt(hAccel, 1,
               "00:0.03|1A:1|FF:9.8047|100:9.8048|00:-0.5|00:-1e308|00:-inf|00:nan|"
               "FFFFFFFF:1e308|FFFFFFFF:inf");
    checkBuilt(vAccel, 1,
               "0000:-0.0006|8000:-20.48|8000:20.48|10040:41|FFFFFFC0:-41|0000:nan|"
               "7FFFFFFF:inf|80010000:-1e308");
    checkBuilt(heave, 1, " 0012:0.125");
    for (const field_t field : {roll, pitch, heave}) { // in counts
        checkBuilt(field, fields[field].scale,
                   " 0000:-0| 0000:0.5|-0000:-0.4|-0002:-1.5|-9999:-9999.4| 10000:9999.6| "
                   "0nan:-nan|-0inf:-inf");
    }
    builder_t builder = zeros(63);
    builder.setRoll(std::numeric_limits<double>::max() * angle); // the longest finite number
    EXPECT_EQ(builder.build().size(), zeroRecord.size() - 4 + 309);
}

TEST(tss1MsgBuilder, wantsExactlySixValues) {
    for (std::uint32_t mask = 0; mask < 64; ++mask) {
        EXPECT_EQ(zeros(mask).validMask, mask);
        EXPECT_EQ(zeros(mask).build(), mask == 63 ? zeroRecord : "") << mask;
    }
    builder_t builder = zeros(63);
    builder.validMask |= 0x40;
    EXPECT_EQ(builder.build(), "");
    builder.reset();
    EXPECT_EQ(builder.validMask, 0U);
    builder = zeros(63);
    builder.setStatus(static_cast<tss1Msg_t::status_t>(8));
    EXPECT_EQ(builder.build(), "");
}

// Heave, roll and pitch come back as they were. The accelerations lose one count in magnitude where
// the quotient falls just short of it.
TEST(tss1, everyCountSurvives) {
    const std::set<int> shortOnes = {105, 109, 113, 117, 121, 125, 210, 218, 226, 234, 242, 250};
    unsigned shortVertical = 0;
    for (int count = -32768; count < 32768; ++count) {
        const int horizontal = count & 0xFF;
        const int small = (count + 32768) % 19999 - 9999, size = std::abs(small);
        char text[28];
        std::snprintf(text, sizeof text, ":%02X%04X %c%04d%c%c%04d %c%04d\r\n", count & 0xFF,
                      count & 0xFFFF, small < 0 ? '-' : ' ', size,
                      letters[static_cast<std::size_t>(count & 7)], small > 0 ? '-' : ' ', size,
                      small < 0 ? '-' : ' ', size);
        const tss1Msg_t message = decoded(text);
        ASSERT_TRUE(message.validMask == 0x3F && message.hAccel == horizontal * 0.0383 &&
                    message.vAccel == count * 0.000625)
            << text;
        builder_t builder;
        for (const auto& field : fields) {
            double value = 0;
            ASSERT_TRUE((message.*field.get)(value));
            (builder.*field.set)(value);
        }
        builder.setStatus(message.status);
        ASSERT_EQ(builder.build().substr(7), text + 7);
        const tss1Msg_t again = decoded(builder.build());
        const int lost = shortOnes.count(horizontal) != 0 ? 1 : 0;
        ASSERT_EQ(again.hAccel, (horizontal - lost) * 0.0383) << text;
        if (again.vAccel != message.vAccel) {
            ++shortVertical;
            ASSERT_EQ(again.vAccel, (count < 0 ? count + 1 : count - 1) * 0.000625) << text;
        }
        // a value in the middle of a count gives that count
        builder.setHorizontalAcceleration((horizontal + 0.5) * 0.0383);
        builder.setVerticalAcceleration((count < 0 ? count - 0.5 : count + 0.5) * 0.000625);
        ASSERT_EQ(builder.build(), text);
    }
    EXPECT_EQ(shortVertical, 4858U);
}

} // namespace
