#include <iomanip>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "kalo/util/bufferStream.h"
#include "kalo/util/ipAddress.h"
#include "kalo/util/portability.h"

namespace {

using kalo::bufferStream_t;

const std::string text = "123456789ABC";

TEST(bufferStream, fillsItsBytesAndNoOthers) {
    for (std::size_t piece = 1; piece <= text.size(); ++piece) {
        for (std::size_t size = 0; size <= text.size() + 2; ++size) {
            std::string memory = "####" + std::string(size, '#') + "####";
            bufferStream_t stream(&memory[4], size);
            for (std::size_t begin = 0; begin < text.size(); begin += piece) {
                stream << text.substr(begin, piece) << std::flush;
            }
            const std::string fitting = text.substr(0, size);
            EXPECT_EQ(memory, "####" + fitting + std::string(size - fitting.size(), '#') + "####");
            EXPECT_TRUE(stream.written() == fitting.size() && stream.good()) << size;
            EXPECT_EQ(stream.dropped(), text.size() - fitting.size()) << size;
        }
    }
    char byte = '#';
    bufferStream_t stream(&byte, 1);
    stream << '\xFF' << '\xFF' << std::setw(1000) << 7 << std::endl;
    EXPECT_TRUE(byte == '\xFF' && stream.good() && stream.dropped() == 1002);
}

TEST(bufferStream, neitherSeeksNorReads) {
    char bytes[] = "########";
    kalo::bufferStreambuf_t buffer(bytes, 3);
    std::ostream stream(&buffer);
    stream << "ab";
    EXPECT_EQ(buffer.sgetc(), std::char_traits<char>::eof());
    EXPECT_TRUE(stream.tellp() == std::streampos(-1) && stream.good());
    EXPECT_TRUE(stream.seekp(0).fail());
    stream.clear();
    stream << "cd";
    EXPECT_STREQ(bytes, "abc#####");
    EXPECT_TRUE(buffer.written() == 3 && buffer.dropped() == 1);
}

TEST(ipAddress, printsAsTheStreamFormatsNumbers) {
    const auto printed = [](std::uint32_t address) {
        std::ostringstream stream;
        const kalo::ipAddress_t value(address);
        EXPECT_EQ(value.address(), address);
        stream << value << ' ' << std::showbase << std::oct << std::setw(4) << std::setfill('*')
               << value;
        return stream.str();
    };
    EXPECT_EQ(printed(0x08090A0B), "8.9.10.11 *010.011.012.013");
    EXPECT_EQ(printed(0x80FF017F), "128.255.1.127 0200.0377.01.0177");
    EXPECT_EQ(printed(0), "0.0.0.0 ***0.0.0.0");
}

TEST(portability, standardInputStaysUsable) { EXPECT_EQ(kalo::portability::set_stdin_binary(), 0); }

} // namespace
