#include "kalo/ntrip/ntripRecordType.h"

#include <string_view>

namespace kalo {

namespace {

struct recordStart_t {
    std::string_view text;
    ntripRecordType_t type;
};

constexpr recordStart_t recordStarts[] = {
    {"Server: ", ntripRecordServer},       {"\r\n", ntripRecordHeader},
    {"Content-Type: ", ntripRecordHeader}, {"Content-Length: ", ntripRecordHeader},
    {"STR;", ntripRecordStream},           {"CAS;", ntripRecordCaster},
    {"NET;", ntripRecordNetwork},          {"ENDSOURCETABLE", ntripRecordEndOfTable},
};

// The longest line that is waited for.
constexpr unsigned longestLine = 512;

} // namespace

ntripRecordType_t decodeNtripRecordType(const char* data, unsigned& length) {
    const std::string_view received(data, length);
    const std::size_t lineFeed = received.find('\n');
    if (lineFeed == std::string_view::npos) {
        length = length > longestLine ? length : 0;
        return ntripRecordUnknown;
    }
    length = static_cast<unsigned>(lineFeed) + 1;
    for (const recordStart_t& row : recordStarts) {
        if (received.substr(0, length).substr(0, row.text.size()) == row.text) {
            return row.type;
        }
    }
    return ntripRecordUnknown;
}

} // namespace kalo
