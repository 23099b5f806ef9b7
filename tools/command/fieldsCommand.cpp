#include "tools/command/fieldsCommand.h"

#include <fmt/format.h>
#include <unistd.h>

#include "tools/command/arguments.h"
#include "tools/command/readInput.h"
#include "tools/record/dictionaryRows.h"
#include "tools/record/registry.h"
#include "tools/terminal/colour.h"

namespace {

class listing_t {
public:
    explicit listing_t(output_t& output) : m_out(output.buffer()) {
        m_out.append(styled(style_t::heading, lineOf("type", "name", "unit", "fields", "meaning"),
                            output.descriptor()));
        m_out.append("\n");
    }

    void add(const recordType_t& type) {
        if (type.rowCount == 0) {
            print(type.name, "address, fields", "", "", fmt::format("{}, as sent", type.meaning));
        }
        for (const recordType_t::row_t& row : type) {
            print(type.name, row.name, row.unit.name, placeOf(row), row.meaning);
        }
    }

    void add(const dictionarySentence_t& sentence) {
        for (const dictionaryRow_t& row : sentence.rows) {
            print(sentence.name, row.name, row.unit, placeOf(fieldSetOf(row)), row.meaning);
            for (const dictionaryRow_t& member : row.members) {
                print(sentence.name, fmt::format("{}.{}", row.name, member.name), member.unit,
                      placeOf(fieldSetOf(member) << (row.fields[0] - 1)), member.meaning);
            }
        }
    }

private:
    static std::string lineOf(std::string_view type, std::string_view name, std::string_view unit,
                              std::string_view fields, std::string_view meaning) {
        return fmt::format("{:10} {:24} {:8} {:9} {}", type, name, unit, fields, meaning);
    }

    void print(std::string_view type, std::string_view name, std::string_view unit,
               std::string_view fields, std::string_view meaning) {
        m_out.append(lineOf(type, name, unit, fields, meaning) + '\n');
    }

    buffer_t& m_out;
};

} // namespace

int fieldsCommand(fieldsOptions_t& options) {
    const dictionary_t& dictionary = options.dictionary.get();
    output_t output(STDOUT_FILENO);
    if (options.asToml) {
        for (const std::string& name : options.types) {
            const dictionarySentence_t* const sentence = dictionary.named(name);
            if (sentence == nullptr) {
                throw usageError_t("--toml: kalo decodes " + name + " without a description");
            }
            output.buffer().append(sentence->toml);
        }
        return finish(output, 0);
    }
    listing_t listing(output);
    for (const std::string& name : options.types) {
        const dictionarySentence_t* const sentence = dictionary.named(name);
        sentence != nullptr ? listing.add(*sentence) : listing.add(recordTypes[typeOfName(name)]);
    }
    if (options.types.empty()) {
        for (typeIndex_t i = 0; i < recordTypeCount; ++i) {
            if (dictionary.named(recordTypes[i].name) == nullptr) {
                listing.add(recordTypes[i]);
            }
        }
        for (const dictionarySentence_t& sentence : dictionary.sentences()) {
            listing.add(sentence);
        }
    }
    return finish(output, 0);
}
