#include "tools/command/commandLine.h"

#include <algorithm>

#include <fmt/format.h>
#include <unistd.h>

#include "tools/command/helpText.h"
#include "tools/command/nearest.h"
#include "tools/command/readInput.h"
#include "tools/command/verbs.h"
#include "tools/command/versionText.h"
#include "tools/terminal/message.h"
#include "tools/terminal/stopSignal.h"

namespace {

using texts_t = std::vector<std::string>;

bool isHelp(const std::string& word) { return word == "-h" || word == "--help"; }

// The format of `encode` stands in front of its files.
void takeFormat(texts_t& operands) {
    if (operands.empty()) {
        throw usageError_t("missing format (expected tss1)");
    }
    placeOf(operands[0], {"tss1"}, "format");
    operands.erase(operands.begin());
}

int runCommand(const command_t& command, const texts_t& arguments) {
    const auto end = std::find(arguments.begin(), arguments.end(), "--");
    if (std::any_of(arguments.begin(), end, isHelp)) {
        return print(helpOf(command.verb));
    }
    if (command.hear) {
        command.hear(arguments);
    }
    texts_t operands = parseArguments(command.verb, arguments);
    if (command.verb.name == std::string_view("encode")) {
        takeFormat(operands);
    }
    if (command.readsInput && operands.empty()) {
        if (isatty(STDIN_FILENO) != 0) {
            say(fmt::format("usage: {}\nkalo: standard input is a terminal; name a file, or see "
                            "kalo {} --help",
                            usageOf(command.verb), command.verb.name));
            return exitUsage;
        }
        if (command.verb.name != std::string_view("time")) {
            operands.emplace_back("-");
        }
    }
    catchStopSignals();
    return command.run(operands);
}

int run(const texts_t& arguments, std::string& place) {
    const std::vector<command_t> commands = allCommands();
    if (arguments.empty()) {
        say(helpOf(commands).erase(helpOf(commands).size() - 1));
        return exitUsage;
    }
    const std::string& word = arguments[0];
    if (word == "-V" || word == "--version") {
        return print(versionText());
    }
    if (isHelp(word)) {
        return print(helpOf(commands));
    }
    if (!word.empty() && word[0] == '-') {
        throw usageError_t("no such option: " + printable(word) +
                           suggestion(word, {"--help", "--version"}));
    }
    const command_t& command = commandNamed(word, commands);
    place = word + ' ';
    return runCommand(command, {arguments.begin() + 1, arguments.end()});
}

} // namespace

int runCommandLine(const std::vector<std::string>& arguments) {
    std::string place; // the command, once it is known
    try {
        return run(arguments, place);
    } catch (const usageError_t& error) {
        sayFault(fmt::format("{}{}\nkalo: see kalo {}--help",
                             place.empty() ? "" : place.substr(0, place.size() - 1) + ": ",
                             error.what(), place));
        return exitUsage;
    }
}
