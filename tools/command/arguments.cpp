#include "tools/command/arguments.h"

#include <algorithm>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include "tools/command/nearest.h"
#include "tools/terminal/message.h"

namespace {

// "--type" of "-t,--type".
std::string_view longName(const option_t& option) {
    const std::string_view names = option.names;
    return names.substr(names.rfind(',') + 1);
}

void takeValues(const option_t& option, const std::vector<std::string>& values) {
    for (const std::string& value : values) {
        try {
            option.take(value);
        } catch (const usageError_t& error) {
            throw usageError_t(std::string(longName(option)) + ": " + error.what());
        }
    }
}

[[noreturn]] void refuseOption(const verb_t& verb, const std::string& argument) {
    std::vector<std::string_view> names = {"--help"};
    for (const option_t& option : verb.options) {
        names.push_back(longName(option));
    }
    const std::string name = argument.substr(0, argument.find('='));
    throw usageError_t("no such option: " + printable(name) + suggestion(name, names));
}

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
    // Whatever follows "--" is no option.
    const auto separator = std::find(arguments.begin(), arguments.end(), "--");
    std::vector<std::string> before(arguments.begin(), separator);
    CLI::App app;
    app.set_help_flag();
    app.allow_extras();
    std::vector<std::vector<std::string>> values(verb.options.size());
    std::vector<const CLI::Option*> parsed;
    for (std::size_t i = 0; i < verb.options.size(); ++i) {
        const option_t& option = verb.options[i];
        if (option.operand == nullptr) {
            parsed.push_back(app.add_flag(option.names));
            continue;
        }
        CLI::Option* const added = app.add_option(option.names, values[i]);
        added->allow_extra_args(false);
        if (option.times == times_t::list) {
            added->delimiter(',');
        }
        parsed.push_back(added);
    }
    std::reverse(before.begin(), before.end()); // the order in which they are taken
    try {
        app.parse(before);
    } catch (const CLI::ParseError& error) {
        throw usageError_t(error.what());
    }
    std::vector<std::string> operands = app.remaining();
    for (const std::string& operand : operands) {
        if (operand.size() > 1 && operand[0] == '-') {
            refuseOption(verb, operand);
        }
    }
    for (std::size_t i = 0; i < verb.options.size(); ++i) {
        const option_t& option = verb.options[i];
        if (option.operand == nullptr) {
            if (parsed[i]->count() > 0) {
                option.take({});
            }
        } else if (parsed[i]->count() > 1 && option.times == times_t::once) {
            throw usageError_t(fmt::format("{} is given more than once", longName(option)));
        } else {
            takeValues(option, values[i]);
        }
    }
    if (separator != arguments.end()) {
        operands.insert(operands.end(), separator + 1, arguments.end());
    }
    return operands;
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
