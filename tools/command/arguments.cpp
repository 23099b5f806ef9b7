#include "tools/command/arguments.h"

#include <algorithm>
#include <optional>
#include <set>
#include <string_view>

#include <fmt/format.h>

#include "tools/command/nearest.h"
#include "tools/terminal/message.h"

namespace {

// "--type" of "-t,--type".
std::string_view longName(const option_t& option) {
    const std::string_view names = option.names;
    return names.substr(names.rfind(',') + 1);
}

bool isNamed(const option_t& option, std::string_view name) {
    const std::string_view names = option.names;
    return name == longName(option) || name == names.substr(0, names.find(','));
}

const option_t& optionOf(const verb_t& verb, std::string_view name) {
    std::vector<std::string_view> names = {"--help"};
    for (const option_t& option : verb.options) {
        if (isNamed(option, name)) {
            return option;
        }
        names.push_back(longName(option));
    }
    throw usageError_t("no such option: " + printable(name) + suggestion(name, names));
}

// What stands between the commas of a list. Nothing there is no value, but nothing at all is one.
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

// Reads arguments from the first to the last.
class argumentReader_t {
public:
    argumentReader_t(const verb_t& verb, const std::vector<std::string>& arguments)
        : m_verb(verb), m_next(arguments.begin()), m_end(arguments.end()) {}

    std::vector<std::string> readAll() {
        std::vector<std::string> operands;
        while (m_next != m_end) {
            const std::string& argument = *m_next++;
            if (argument == separator) {
                operands.insert(operands.end(), m_next, m_end);
                break;
            }
            if (argument.size() < 2 || argument[0] != '-') {
                operands.push_back(argument);
            } else if (argument[1] == '-') {
                readLong(argument);
            } else {
                readShort(argument);
            }
        }
        return operands;
    }

private:
    static constexpr std::string_view separator = "--"; // whatever follows it is no option

    // "--quiet", "--type A" or "--type=A".
    void readLong(const std::string& argument) {
        const std::size_t equals = argument.find('=');
        std::optional<std::string> value;
        if (equals < argument.size()) {
            value = argument.substr(equals + 1);
        }
        take(optionOf(m_verb, argument.substr(0, equals)), value);
    }

    // "-q", "-t A", "-tA", or several at once: "-qtA".
    void readShort(const std::string& argument) {
        for (std::size_t at = 1; at < argument.size(); ++at) {
            const option_t& option = optionOf(m_verb, std::string{'-', argument[at]});
            std::optional<std::string> value;
            if (at + 1 < argument.size() &&
                (option.operand != nullptr || argument[at + 1] == '=')) {
                value = argument.substr(at + 1);
                at = argument.size();
            }
            take(option, value);
        }
    }

    // The value is the one behind the name, or the next argument.
    void take(const option_t& option, std::optional<std::string> value) {
        const std::string name(longName(option));
        if (option.operand == nullptr) {
            if (value) {
                throw usageError_t(name + ": takes no value");
            }
            option.take({});
            return;
        }
        if (!value && (m_next == m_end || *m_next == separator)) {
            throw usageError_t(name + ": missing " + option.operand);
        }
        if (!m_given.insert(&option).second && option.times == times_t::once) {
            throw usageError_t(name + " is given more than once");
        }
        try {
            for (const std::string& each : valuesOf(option, value ? *value : *m_next++)) {
                option.take(each);
            }
        } catch (const usageError_t& error) {
            throw usageError_t(name + ": " + error.what());
        }
    }

    const verb_t& m_verb;
    std::vector<std::string>::const_iterator m_next;
    std::vector<std::string>::const_iterator m_end;
    std::set<const option_t*> m_given;
};

// Text of several lines, each but the first behind `indent` blanks.
std::string indented(std::string_view text, std::size_t indent) {
    constexpr std::size_t width = 79;
    std::string result;
    std::size_t column = indent;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find(' ', begin), text.size());
        const std::string_view word = text.substr(begin, end - begin);
        if (column > indent && column + 1 + word.size() > width) {
            result += '\n' + std::string(indent, ' ');
            column = indent;
        } else if (column > indent) {
            result += ' ';
            ++column;
        }
        result += word;
        column += word.size();
        begin = end + 1;
    }
    return result;
}

std::string helpLine(const option_t& option) {
    constexpr std::size_t nameWidth = 26;
    std::string names = option.names;
    const std::size_t comma = names.find(',');
    names = comma == std::string::npos ? "    " + names : names.replace(comma, 1, ", ");
    if (option.operand != nullptr) {
        names += std::string(" ") + option.operand;
    }
    std::string line = "  " + names;
    if (line.size() + 2 > nameWidth) {
        line += '\n' + std::string(nameWidth, ' ');
    } else {
        line.resize(nameWidth, ' ');
    }
    return line + indented(option.help, nameWidth) + '\n';
}

} // namespace

std::vector<std::string> parseArguments(const verb_t& verb,
                                        const std::vector<std::string>& arguments) {
    return argumentReader_t(verb, arguments).readAll();
}

option_t flag(const char* names, bool& out, const char* help) {
    return {names, nullptr, help, [&out](const std::string& /*none*/) { out = true; }};
}

std::string helpOf(const verb_t& verb) {
    std::string text = fmt::format("usage: kalo {} [OPTION...] {}\n\n{}\n\n", verb.name,
                                   verb.operands, verb.details);
    for (const option_t& option : verb.options) {
        text += helpLine(option);
    }
    return text + helpLine({"-h,--help", nullptr, "Print this help", {}});
}
