#include "tools/command/typeNames.h"

#include "tools/command/nearest.h"
#include "tools/input/input.h"
#include "tools/record/registry.h"
#include "tools/terminal/message.h"

namespace {

std::string contentOf(const std::string& file) {
    input_t input(file);
    std::string content;
    for (std::string_view block = input.read(); !block.empty(); block = input.read()) {
        content.append(block);
    }
    if (!input.fault().empty()) {
        throw usageError_t(printable(file) + ": " + input.fault());
    }
    return content;
}

} // namespace

option_t sentencesOption(dictionaryHolder_t& dictionary) {
    const auto take = [&dictionary](const std::string& file) {
        try {
            dictionary.add(contentOf(file), file);
        } catch (const dictionaryError_t& error) {
            throw usageError_t(printable(error.what()));
        }
    };
    return {
        "--sentences", "FILE",         "Also decode the sentences that this TOML file describes",
        take,          times_t::again, {},
        path_t::file};
}

std::vector<std::string> allTypeNames(dictionaryHolder_t& dictionary) {
    std::vector<std::string> names;
    for (typeIndex_t i = 0; i < recordTypeCount; ++i) {
        if (dictionary.get().named(recordTypes[i].name) == nullptr) {
            names.emplace_back(recordTypes[i].name);
        }
    }
    for (const dictionarySentence_t& entry : dictionary.get().sentences()) {
        names.push_back(entry.name);
    }
    return names;
}

std::string typeNameOfArgument(const std::string& name, dictionaryHolder_t& dictionary,
                               const char* where) {
    const typeIndex_t type = typeOfName(name);
    if (type != noType) {
        return std::string(recordTypes[type].name);
    }
    if (const dictionarySentence_t* const entry = dictionary.get().named(name)) {
        return entry->name;
    }
    const std::vector<std::string> names = allTypeNames(dictionary);
    const std::string meant = suggestion(name, {names.begin(), names.end()});
    throw usageError_t(where + ("no such record type: " + printable(name) +
                                (meant.empty() ? "; kalo fields lists them" : meant)));
}
