// Lines of any text are encoded to complete motion records, and those again to the same bytes.
#include "fuzz/command.h"
#include "fuzz/logText.h"
#include "kalo/sensors/tss1Msg.h"
#include "tools/command/encodeCommand.h"
#include "tools/output/jsonWriter.h"

namespace {

std::string encoded(std::string_view text) {
    const fuzz::memoryFile_t file(text);
    encodeOptions_t options;
    options.files = {file.path()};
    return fuzz::printed(encodeCommand, options);
}

std::string decodedAsJson(std::string_view text) {
    buffer_t out;
    jsonWriter_t json(out, {});
    json.setSource("-");
    scratch_t scratch;
    fuzz::readRecords({text}, {}, [&](const record_t& record) { json.write(record, scratch); });
    return std::string(out.text());
}

} // namespace

void fuzz::encode(std::string_view input) {
    const std::string records = encoded(input);
    for (const std::string_view line : linesOf(records)) {
        kalo::tss1Msg_t record;
        record.init(line.data(), line.size());
        require(line.size() == 27 && line.substr(25) == "\r\n" &&
                    record.validMask == kalo::tss1Msg_t::validAll,
                "a complete record");
    }
    require(records.empty() || encoded(decodedAsJson(records)) == records,
            "a record that is decoded is encoded to the same bytes");
}
