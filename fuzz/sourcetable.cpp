// The lines of a sourcetable add up to the buffer and are the same wherever it is cut; the fields
// of a record make up its line.
#include <memory>

#include "fuzz/target.h"
#include "kalo/ntrip/ntripRecordType.h"
#include "kalo/ntrip/ntripStreamDecoder.h"

namespace {

using fuzz::require;

struct sentLine_t {
    kalo::ntripRecordType_t type;
    std::string text;

    bool operator==(const sentLine_t& other) const {
        return type == other.type && text == other.text;
    }
};

// Takes the complete lines off the front of `buffer`.
void takeLines(std::string& buffer, std::vector<sentLine_t>& lines) {
    while (!buffer.empty()) {
        auto length = static_cast<unsigned>(buffer.size());
        const kalo::ntripRecordType_t type = kalo::decodeNtripRecordType(buffer.data(), length);
        require(length <= buffer.size() && (length != 0 || buffer.size() <= 512),
                "a line within the buffer");
        if (length == 0) {
            return;
        }
        lines.push_back({type, buffer.substr(0, length)});
        buffer.erase(0, length);
    }
}

std::string joined(const kalo::ntripRecordDecoder_t& record) {
    std::string text;
    for (unsigned i = 0; i < record.fieldCount(); ++i) {
        const std::string* const field = record.fieldAt(i);
        text.append(i == 0 ? "" : ";").append(field != nullptr ? *field : "");
    }
    require(record.fieldAt(record.fieldCount()) == nullptr, "no field beyond the last");
    return text;
}

void checkRecord(const std::string& line, kalo::ntripStreamDecoder_t& used) {
    const auto length = static_cast<unsigned>(line.size());
    auto record = std::make_unique<kalo::ntripStreamDecoder_t>();
    record->init(line.data(), length);
    used.init(line.data(), length);
    const std::size_t end = std::min(line.find_first_of("\r\n"), line.size());
    // without a line end, what follows the last semicolon is no field
    const std::string text =
        end < line.size() ? line.substr(0, end) : line.substr(0, line.rfind(';') + 1);
    require(joined(*record) + (end < line.size() || text.empty() ? "" : ";") == text,
            "the fields make up the line");
    const kalo::ntripStreamDecoder_t copy(*record);
    for (unsigned i = 0; i <= record->fieldCount(); ++i) {
        float number = 77;
        unsigned count = 77;
        bool flag = true;
        require(!record->decodeField(i, count) || record->decodeField(i, number),
                "an integer is a number");
        require(!record->decodeYN(i, flag) || !record->decodeOneZero(i, flag), "Y or 1");
    }
    kalo::ntripCarrierType_t carrier = kalo::carrierNone;
    kalo::ntripSolutionType_t solution = kalo::solutionSingle;
    kalo::ntripAuthType_t auth = kalo::authNone;
    record->decodeCarrierType(carrier);
    record->decodeSolutionType(solution);
    record->decodeAuthType(auth);
    require(carrier <= kalo::carrierL1L2 && solution <= kalo::solutionNetwork &&
                auth <= kalo::authDigest,
            "one of the enumerators");
    record.reset();
    require(joined(copy) == joined(used), "copies, and decoders that are used again, are equal");
}

} // namespace

void fuzz::sourcetable(std::string_view input) {
    for (std::size_t begin = 0; begin < input.size();) { // in place, where nothing lies behind it
        auto length = static_cast<unsigned>(input.size() - begin);
        kalo::decodeNtripRecordType(input.data() + begin, length);
        kalo::ntripStreamDecoder_t record;
        record.init(input.data() + begin, static_cast<unsigned>(input.size() - begin));
        begin += length > 0 ? length : input.size();
    }
    std::string buffer(input);
    std::vector<sentLine_t> lines;
    takeLines(buffer, lines);
    std::string all;
    std::size_t longest = 0;
    kalo::ntripStreamDecoder_t used;
    for (const sentLine_t& line : lines) {
        all += line.text;
        longest = std::max(longest, line.text.size());
        checkRecord(line.text, used);
    }
    require(all + buffer == input, "the lines add up to the buffer");
    if (longest <= 512) {
        std::string received;
        std::vector<sentLine_t> cut;
        for (const std::string_view piece : piecesOf(input)) {
            received += piece;
            takeLines(received, cut);
        }
        require(cut == lines && received == buffer, "cuts change nothing");
    }
}
