// Prints all types of records as the table in docs/sentences.md.
#include <cstdio>
#include <string>

#include "tools/record/dictionaryFile.h"
#include "tools/record/registry.h"

namespace {

std::string listed(const std::string& list, std::string_view name, std::string_view unit) {
    const std::string before = list.empty() ? "" : list + ", ";
    return before + std::string(name) + (unit.empty() ? "" : " (" + std::string(unit) + ")");
}

std::string valuesOf(const std::vector<dictionaryRow_t>& rows) {
    std::string list;
    for (const dictionaryRow_t& row : rows) {
        list = listed(list, row.name, row.unit);
        if (!row.members.empty()) {
            list += ": a list of {" + valuesOf(row.members) + "}";
        }
    }
    return list;
}

void print(std::string_view name, std::string_view meaning, const char* how,
           const std::string& values) {
    std::printf("| %s | %s | %s | %s |\n", std::string(name).c_str(), std::string(meaning).c_str(),
                how, values.c_str());
}

} // namespace

int main() {
    dictionaryHolder_t holder;
    const dictionary_t& dictionary = holder.get();
    std::puts("| Type | Meaning | Described in | Values (units) |\n|---|---|---|---|");
    for (typeIndex_t i = 0; i < recordTypeCount; ++i) {
        const recordType_t& type = recordTypes[i];
        if (dictionary.named(type.name) == nullptr) {
            std::string values;
            for (const recordType_t::row_t& row : type) {
                values = listed(values, row.name, row.unit.name);
            }
            print(type.name, type.meaning, "library", values);
        }
    }
    for (const dictionarySentence_t& sentence : dictionary.sentences()) {
        print(sentence.name, sentence.meaning, "dictionary", valuesOf(sentence.rows));
    }
}
