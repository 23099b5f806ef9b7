// A description of sentences is refused with its place, or it describes sentences that can be
// printed.
#include <cctype>

#include "fuzz/logText.h"
#include "tests/text.h"
#include "tools/output/jsonWriter.h"
#include "tools/record/recordTable.h"

namespace {

// Sentences with the address and the subtype that a description names.
std::string sentencesOf(const dictionarySentence_t& described) {
    constexpr const char* texts[] = {"1",        "4807.038", "N", "",  "A",
                                     "123519.5", "140326",   "T", "-7"};
    std::string all;
    for (unsigned first = 0; first < 3; ++first) {
        std::string body = described.address.size() == 3 ? "$GP" : "$";
        body += described.address;
        for (unsigned i = 1; i < 30; ++i) {
            body += ',';
            body += i == described.subtypeField && !described.subtype.empty()
                        ? described.subtype
                        : texts[(first + i) % std::size(texts)];
        }
        all += sentence(body);
    }
    return all;
}

// Whether `sentencesOf` can write sentences that this describes.
bool isWritable(const dictionarySentence_t& described) {
    const auto isPlain = [](const std::string& text) {
        return std::all_of(text.begin(), text.end(),
                           [](unsigned char c) { return std::isalnum(c) != 0; });
    };
    return isPlain(described.address) && isPlain(described.subtype) && described.subtypeField < 30;
}

} // namespace

void fuzz::dictionary(std::string_view input) {
    dictionary_t described;
    readOptions_t options;
    try {
        addSentences(input, "own.toml", described);
        options.dictionary->add(input, "own.toml");
    } catch (const dictionaryError_t& error) {
        require(std::string_view(error.what()).substr(0, 8) == "own.toml", "a fault has its place");
        return;
    }
    buffer_t out;
    jsonWriter_t json(out, {});
    json.setSource("-");
    scratch_t scratch;
    for (const dictionarySentence_t& one : described.sentences()) {
        require(described.named(one.name) == &one, "found by its name");
        tableNamed(one.name, *options.dictionary);
        const std::string text = sentencesOf(one);
        const bool isFound = isWritable(one);
        readRecords({text}, options, [&](const record_t& record) {
            require(!isFound || record.entry != nullptr || record.type != noType, "described");
            json.write(record, scratch);
        });
    }
    requireJsonLines(out.text());
}
