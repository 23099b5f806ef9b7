#include "tools/command/arguments.h"

#include <algorithm>
#include <cctype>
#include <set>
#include <string_view>

#include <getopt.h>

#include "tools/command/nearest.h"
#include "tools/terminal/message.h"

namespace {

// The same, in the table.
std::string_view longNameIn(const option_t& option) {
    const std::string_view names = option.names;
    return names.substr(names.rfind(',') + 1);
}

[[noreturn]] void refuse(const verb_t& verb, std::string_view name) {
    std::vector<std::string_view> names;
    for (const option_t& option : verb.options) {
        names.push_back(longNameIn(option));
    }
    throw usageError_t("no such option: " + printable(name) + suggestion(name, names));
}

// The values between the commas of a list. Empty ones are skipped, but an empty list is one empty
// value.
std::vector<std::string> valuesOf(const option_t& option, const std::string& text) {
    std::vector<std::string> values;
    for (std::size_t begin = 0; option.times == times_t::list && begin < text.size();) {
        const std::size_t end = std::min(text.find(',', begin), text.size());
        if (end > begin) {
            values.push_back(text.substr(begin, end - begin));
        }
        begin = end + 1;
    }
    return values.empty() ? std::vector{text} : values;
}

// The options of a verb as `getopt_long` has them: a long option is its index behind `firstLong`.
constexpr int firstLong = 256;
constexpr int operandCode = 1;

struct systemOptions_t {
    explicit systemOptions_t(const verb_t& verb) {
        for (std::size_t i = 0; i < verb.options.size(); ++i) {
            const option_t& each = verb.options[i];
            const int kind = each.operand == nullptr ? no_argument : required_argument;
            longOnes.push_back(
                {longNameIn(each).data() + 2, kind, nullptr, firstLong + static_cast<int>(i)});
            if (each.names[1] != '-') {
                shortOnes += each.names[1];
                shortOnes += kind == no_argument ? "" : ":";
            }
        }
        longOnes.push_back({});
    }

    // Operands come in their order, and a missing value is told apart from an unknown option.
    std::string shortOnes = "-:";
    std::vector<option> longOnes;
};

const option_t* optionOf(const verb_t& verb, int code) {
    if (code >= firstLong) {
        return &verb.options[static_cast<std::size_t>(code - firstLong)];
    }
    const auto found =
        std::find_if(verb.options.begin(), verb.options.end(), [&](const option_t& option) {
            return option.names[1] != '-' && option.names[1] == code;
        });
    return found == verb.options.end() ? nullptr : &*found;
}

// `code` is ":" where the value is missing, and "?" where there must be none.
void take(const option_t& option, int code, std::set<const option_t*>& given) {
    const std::string name = longName(option);
    if (code == ':') {
        throw usageError_t(name + ": missing " + option.operand);
    }
    if (code == '?') {
        throw usageError_t(name + ": takes no value");
    }
    if (option.operand == nullptr) {
        option.take({});
        return;
    }
    if (!given.insert(&option).second && option.times == times_t::once) {
        throw usageError_t(name + " is given more than once");
    }
    try {
        for (const std::string& each : valuesOf(option, optarg)) {
            option.take(each);
        }
    } catch (const usageError_t& error) {
        throw usageError_t(name + ": " + error.what());
    }
}

} // namespace

std::vector<std::string> parseArguments(const verb_t& verb,
                                        const std::vector<std::string>& arguments) {
    const systemOptions_t options(verb);
    std::vector<std::string> texts = {verb.name};
    texts.insert(texts.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    std::transform(texts.begin(), texts.end(), std::back_inserter(pointers),
                   [](std::string& text) { return text.data(); });
    pointers.push_back(nullptr);
    const auto end = pointers.end() - 1;
    std::vector<std::string> operands;
    std::set<const option_t*> given;
    optind = 0; // start again
    opterr = 0; // the messages are made below
    const auto next = [&] {
        return getopt_long(static_cast<int>(texts.size()), pointers.data(),
                           options.shortOnes.c_str(), options.longOnes.data(), nullptr);
    };
    for (int code = next(); code != -1; code = next()) {
        if (code == operandCode) {
            operands.emplace_back(optarg);
            continue;
        }
        const bool isWrong = code == ':' || code == '?';
        const option_t* const option = optionOf(verb, isWrong ? optopt : code);
        const auto last = pointers.begin() + optind - 1;
        const std::string word = !isWrong && *last == optarg ? *(last - 1) : *last;
        const std::string name = word.substr(0, word.find('='));
        const bool isLong = optopt == 0 || optopt >= firstLong || code >= firstLong;
        if (option == nullptr) {
            refuse(verb, isLong ? name : std::string{'-', static_cast<char>(optopt)});
        }
        if ((isWrong ? optopt : code) >= firstLong && name != longName(*option)) {
            refuse(verb, name); // an abbreviation: a later option could make it ambiguous
        }
        take(*option, code, given);
    }
    operands.insert(operands.end(), pointers.begin() + optind, end);
    return operands;
}

option_t flag(const char* names, bool& out, const char* help) {
    return {names, nullptr, help, [&out](const std::string& /*none*/) { out = true; }};
}

std::string shortName(const option_t& option) {
    const std::string names = option.names;
    return names.substr(0, names.find(',') == std::string::npos ? 0 : names.find(','));
}

std::string longName(const option_t& option) { return std::string(longNameIn(option)); }

std::string inSmallLetters(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

std::string inCapitals(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return text;
}

std::string listed(const std::vector<std::string>& words) {
    std::string text;
    for (std::size_t i = 0; i < words.size(); ++i) {
        text += i == 0 ? "" : i + 1 < words.size() ? ", " : " or ";
        text += words[i];
    }
    return text;
}

std::size_t placeOf(const std::string& word, const std::vector<std::string>& words,
                    const std::string& what) {
    const auto found = std::find(words.begin(), words.end(), word);
    if (found != words.end()) {
        return static_cast<std::size_t>(found - words.begin());
    }
    constexpr std::size_t few = 8;
    throw usageError_t("no such " + what + ": " + printable(word) +
                       (words.size() <= few ? " (expected " + listed(words) + ")" : "") +
                       suggestion(word, {words.begin(), words.end()}));
}
