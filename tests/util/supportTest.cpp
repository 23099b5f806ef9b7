#include <algorithm>
#include <iomanip>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "kalo/nmea/nmeaField.h"
#include "kalo/util/bufferStream.h"
#include "kalo/util/ipAddress.h"
#include "kalo/util/portability.h"

namespace {

using kalo::bufferStream_t;

const std::string text = "123456789ABC";

// The ways by which the characters reach a stream.
void (*const writers[])(std::ostream&) = {
    [](std::ostream& stream) { stream << text; },
    [](std::ostream& stream) { stream << 123456 << "789" << std::flush << "ABC"; },
    [](std::ostream& stream) { stream.write(text.data(), 5).write(text.data() + 5, 7); },
    [](std::ostream& stream) {
        for (const char c : text) {
            stream.put(c);
        }
    }};

TEST(bufferStream, fillsItsBytesAndNoOthers) {
    constexpr std::size_t guard = 8;
    for (const auto writer : writers) {
        for (std::size_t size = 0; size <= text.size() + 2; ++size) {
            std::string memory(guard + size + guard, '#');
            bufferStream_t stream(&memory[guard], size);
            writer(stream);
            const std::size_t fitting = std::min(size, text.size());
            std::string expected(memory.size(), '#');
            expected.replace(guard, fitting, text, 0, fitting);
            EXPECT_EQ(memory, expected) << size;
            EXPECT_EQ(stream.written(), fitting) << size;
            EXPECT_EQ(stream.dropped(), text.size() - fitting) << size;
            EXPECT_TRUE(stream.good()) << size;
        }
    }
}

TEST(bufferStream, countsOnWhenFull) {
    char byte = '#';
    bufferStream_t stream(&byte, 1);
    stream << '\xFF' << '\xFF' << std::setw(1000) << 7 << std::endl;
    EXPECT_TRUE(byte == '\xFF' && stream.good());
    EXPECT_EQ(stream.written(), 1U);
    EXPECT_EQ(stream.dropped(), 1002U);
}

TEST(bufferStream, neitherSeeksNorReads) {
    char bytes[] = "########";
    bufferStream_t stream(bytes, 8);
    stream << "ab";
    EXPECT_EQ(stream.rdbuf()->sgetc(), std::char_traits<char>::eof());
    EXPECT_EQ(stream.tellp(), std::streampos(-1));
    EXPECT_TRUE(stream.good());
    EXPECT_TRUE(stream.seekp(0).fail());
    stream.clear();
    stream << "cd";
    EXPECT_STREQ(bytes, "abcd####");
    kalo::bufferStreambuf_t buffer(bytes, 3);
    std::ostream(&buffer) << "wxyz";
    EXPECT_STREQ(bytes, "wxyd####");
    EXPECT_TRUE(buffer.written() == 3 && buffer.dropped() == 1);
}

TEST(ipAddress, printsAsTheStreamFormatsNumbers) {
    const struct {
        std::uint32_t address;
        const char* dotted;
        const char* hex;
    } cases[] = {{0x0A000001, "10.0.0.1", "a.0.0.1"},
                 {0xC0A80A64, "192.168.10.100", "c0.a8.a.64"},
                 {0, "0.0.0.0", "0.0.0.0"},
                 {0xFFFFFFFF, "255.255.255.255", "ff.ff.ff.ff"},
                 {0x80FF017F, "128.255.1.127", "80.ff.1.7f"}};
    for (const auto& row : cases) {
        const kalo::ipAddress_t address(row.address);
        std::ostringstream stream;
        stream << address << ' ' << std::hex << address;
        EXPECT_EQ(stream.str(), std::string(row.dotted) + ' ' + row.hex);
        EXPECT_EQ(address.address(), row.address);
        unsigned decoded = 0;
        EXPECT_TRUE(kalo::nmeaField_t(std::string(row.dotted)).decodeIpv4Address(decoded));
        EXPECT_EQ(decoded, row.address);
    }
    std::ostringstream stream;
    stream << std::showbase << std::oct << std::setw(4) << std::setfill('*')
           << kalo::ipAddress_t(0x08090A0B);
    EXPECT_EQ(stream.str(), "*010.011.012.013");
}

TEST(portability, standardInputStaysUsable) {
    EXPECT_EQ(kalo::portability::set_stdin_binary(), 0);
    EXPECT_EQ(kalo::portability::set_stdin_binary(), 0);
}

} // namespace
