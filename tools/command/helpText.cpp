#include "tools/command/helpText.h"

#include <fmt/format.h>

namespace {

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
    return line + wrapped(helpOf(option), nameWidth) + '\n';
}

} // namespace

std::string wrapped(std::string_view text, std::size_t indent) {
    constexpr std::size_t width = 79;
    std::string result;
    std::size_t column = indent;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find(' ', begin), text.size());
        const std::string_view word = text.substr(begin, end - begin);
        if (column != indent && column + 1 + word.size() > width) {
            result += '\n' + std::string(indent, ' ');
            column = indent;
        } else if (column != indent) {
            result += ' ';
            ++column;
        }
        result += word;
        column += word.size();
        begin = end + 1;
    }
    return result;
}

std::string helpOf(const option_t& option) {
    constexpr std::size_t few = 30;
    const std::vector<std::string> words =
        option.words ? option.words() : std::vector<std::string>();
    return words.empty() || words.size() > few ? option.help
                                               : fmt::format("{}: {}", option.help, listed(words));
}

std::string usageOf(const verb_t& verb) {
    return fmt::format("kalo {} [OPTION...]{}{}", verb.name, *verb.operands == '\0' ? "" : " ",
                       verb.operands);
}

std::string helpOf(const verb_t& verb) {
    std::string text = fmt::format("usage: {}\n\n{}\n\n", usageOf(verb), verb.details);
    for (const option_t& option : verb.options) {
        text += helpLine(option);
    }
    text += "\nExamples:\n";
    for (const example_t& example : verb.examples) {
        text += fmt::format("  {}\n      {}\n", example.command, example.meaning);
    }
    return text;
}

std::string helpOf(const std::vector<command_t>& commands) {
    std::string text = "usage: kalo COMMAND [OPTION...] [FILE...]\n\n"
                       "Decodes the text records of navigation and survey sensors.\n\n";
    for (const command_t& command : commands) {
        text += fmt::format("  {:11} {}\n", command.verb.name, command.verb.summary);
    }
    return text +
           "\n  -V, --version   Print the version, and what kalo was built with\n"
           "  -h, --help      Print this help; kalo COMMAND --help prints that of a command\n";
}
