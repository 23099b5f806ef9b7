#include "tools/command/completion.h"

#include <fmt/format.h>

namespace {

std::string joined(const std::vector<std::string>& words, const char* between = " ") {
    std::string text;
    for (const std::string& word : words) {
        text += text.empty() ? word : between + word;
    }
    return text;
}

std::string wordsOf(const words_t& words) { return words ? joined(words()) : ""; }

std::vector<std::string> namesOf(const option_t& option) {
    std::vector<std::string> names = {longName(option)};
    if (!shortName(option).empty()) {
        names.push_back(shortName(option));
    }
    return names;
}

const char* nameOf(path_t path) {
    switch (path) {
    case path_t::none: return "none";
    case path_t::file: return "file";
    case path_t::folder: return "folder";
    }
    return "";
}

// Text with an escape in front of some letters.
std::string escaped(std::string_view text, std::string_view letters, std::string_view escape) {
    std::string result;
    for (const char c : text) {
        result += letters.find(c) == std::string_view::npos ? "" : escape;
        result += c;
    }
    return result;
}

// bash: a function finds the words for the word at the cursor.

constexpr const char* bashBegin = R"(# Completion of kalo for bash, printed by: kalo completion bash
_kalo() {
    local IFS=$' \t\n'
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} each
    local given=''
    ((COMP_CWORD > 1)) && given=" ${COMP_WORDS[*]:2:COMP_CWORD - 2} "
    local options='' words='' path=none value=none
    # The shell makes a word of the "=" in --format=csv.
    if [[ $word == = ]]; then
        word=''
    elif [[ $before == = ]]; then
        before=${COMP_WORDS[COMP_CWORD - 2]}
    fi
)";
constexpr const char* bashEnd =
    R"(    if [[ $value == none && $word == -* && $given != *' -- '* ]]; then
        words=$options path=none
    elif [[ $value == none && $words && $path != none ]]; then
        # One of the words comes first, then the files.
        for each in $words; do
            [[ $given == *" $each "* ]] && words=''
        done
        [[ $words ]] && path=none
    fi
    local begin=''
    if [[ $value == list ]]; then
        compopt -o nospace
        [[ $word == *,* ]] && begin=${word%,*}, word=${word##*,}
    fi
    COMPREPLY=()
    case $path in
    file) compopt -o default ;;
    folder) compopt -o dirnames ;;
    none) mapfile -t COMPREPLY < <(compgen -P "$begin" -W "$words" -- "$word") ;;
    esac
}
complete -F _kalo kalo
)";

std::string bashVerb(const verb_t& verb) {
    std::vector<std::string> names;
    std::string values;
    for (const option_t& option : verb.options) {
        names.push_back(longName(option));
        if (option.operand != nullptr) {
            values += fmt::format("        {}) value={} words='{}' path={} ;;\n",
                                  joined(namesOf(option), " | "),
                                  option.times == times_t::list ? "list" : "one",
                                  wordsOf(option.words), nameOf(option.path));
        }
    }
    return fmt::format("    {})\n        options='{}' words='{}' path={}\n        case $before in\n"
                       "{}        esac\n        ;;\n",
                       verb.name, joined(names), wordsOf(verb.words), nameOf(verb.path), values);
}

std::string bashScript(const std::vector<command_t>& commands) {
    std::string text = bashBegin;
    text += "    local command=${COMP_WORDS[1]}\n"
            "    ((COMP_CWORD == 1)) && command='' before=''\n"
            "    case $command in\n";
    text += fmt::format("    '') options='--help --version' words='{}' ;;\n",
                        joined(namesOf(commands)));
    for (const command_t& command : commands) {
        text += bashVerb(command.verb);
    }
    return text + "    esac\n" + bashEnd;
}

// zsh: `_arguments` knows the syntax of options.

// Text between single quotes.
std::string quoted(std::string_view text) {
    std::string result = "'";
    for (const char c : text) {
        result += c == '\'' ? "'\\''" : std::string(1, c);
    }
    return result + '\'';
}

// What completes a value or an operand.
std::string zshAction(const words_t& words, path_t path, bool isList) {
    switch (path) {
    case path_t::file: return "_files";
    case path_t::folder: return "_files -/";
    case path_t::none: break;
    }
    const std::string all = wordsOf(words);
    return all.empty() ? "" : isList ? "_sequence compadd - " + all : "(" + all + ")";
}

// One more argument of `_arguments`, in a line of its own.
std::string zshArgument(const std::string& text) { return " \\\n            " + quoted(text); }

std::string zshOption(const option_t& option) {
    const std::vector<std::string> names = namesOf(option);
    std::string rest = "[" + escaped(option.help, "[]\\", "\\") + "]";
    if (option.operand != nullptr) {
        rest += ":" + escaped(option.operand, ":\\", "\\") + ":" +
                zshAction(option.words, option.path, option.times == times_t::list);
    }
    const bool isHelp = names[0] == "--help";
    std::string text;
    for (const std::string& name : names) {
        const bool isLong = name[1] == '-';
        const std::string mark = option.operand == nullptr ? "" : isLong ? "=" : "+";
        const std::string others = isHelp                          ? "(- *)"
                                   : option.times == times_t::once ? "(" + joined(names) + ")"
                                                                   : "*";
        text += zshArgument(fmt::format("{}{}{}{}", others, name, mark, rest));
    }
    return text;
}

std::string zshVerb(const verb_t& verb) {
    std::string text = fmt::format("    {})\n        _arguments -s -S", verb.name);
    for (const option_t& option : verb.options) {
        text += zshOption(option);
    }
    const std::string words = zshAction(verb.words, path_t::none, false);
    if (!words.empty()) {
        text += zshArgument((verb.path == path_t::none ? "*:word:" : "1:word:") + words);
    }
    if (verb.path != path_t::none) {
        text += zshArgument("*:file:" + zshAction({}, verb.path, false));
    }
    return text + " && result=0\n        ;;\n";
}

std::string zshScript(const std::vector<command_t>& commands) {
    std::string text = R"(#compdef kalo
# Completion of kalo for zsh, printed by: kalo completion zsh
_kalo() {
    local curcontext=$curcontext state line result=1
    typeset -A opt_args
    local -a commands=(
)";
    for (const command_t& command : commands) {
        text += "        " + quoted(command.verb.name + (":" + std::string(command.verb.summary))) +
                '\n';
    }
    text += R"(    )
    _arguments -C \
        '(- *)'{-h,--help}'[Print the list of commands]' \
        '(- *)'{-V,--version}'[Print the version]' \
        '1:command:->command' '*::argument:->argument' && result=0
    if [[ $state == command ]]; then
        _describe -t commands command commands && result=0
        return result
    fi
    curcontext=${curcontext%:*:*}:kalo-$words[1]:
    case $words[1] in
)";
    for (const command_t& command : commands) {
        text += zshVerb(command.verb);
    }
    return text + R"(    esac
    return result
}
if [[ $funcstack[1] == _kalo ]]; then
    _kalo "$@"
else
    compdef _kalo kalo
fi
)";
}

// fish: a line for each command and each option.

std::string fishQuoted(std::string_view text) { return "'" + escaped(text, "'\\", "\\") + "'"; }

std::string fishLine(const std::string& condition, const std::string& what,
                     const std::string& description = "") {
    return fmt::format("complete -c kalo -n {} {}{}\n", fishQuoted(condition), what,
                       description.empty() ? "" : " -d " + fishQuoted(description));
}

// What completes a value.
std::string fishValue(const option_t& option) {
    switch (option.path) {
    case path_t::file: return " -r -F";
    case path_t::folder: return " -x -a '(__fish_complete_directories)'";
    case path_t::none: break;
    }
    const std::string words = wordsOf(option.words);
    if (words.empty()) {
        return " -x";
    }
    return " -x -a " +
           fishQuoted(option.times == times_t::list ? "(__fish_append , " + words + ")" : words);
}

std::string fishOption(const std::string& condition, const option_t& option) {
    std::string what = "-l " + longName(option).substr(2);
    if (!shortName(option).empty()) {
        what += " -s " + shortName(option).substr(1);
    }
    return fishLine(condition, what + (option.operand == nullptr ? "" : fishValue(option)),
                    option.help);
}

std::string fishScript(const std::vector<command_t>& commands) {
    const std::string first = "__kalo_command";
    std::string text = R"(# Completion of kalo for fish, printed by: kalo completion fish
# Whether the command is this one; without an argument: whether it is yet to come.
function __kalo_command
    set -l given (commandline -opc)
    test "$given[2]" = "$argv[1]"
end
complete -c kalo -f
)";
    text += fishLine(first, "-l help -s h", "Print the list of commands") +
            fishLine(first, "-l version -s V", "Print the version");
    for (const command_t& command : commands) {
        text += fishLine(first, "-a " + std::string(command.verb.name), command.verb.summary);
    }
    for (const command_t& command : commands) {
        const verb_t& verb = command.verb;
        const std::string condition = first + ' ' + verb.name;
        for (const option_t& option : verb.options) {
            text += fishOption(condition, option);
        }
        const std::string words = wordsOf(verb.words);
        std::string wordsAreGiven;
        if (!words.empty() && verb.path != path_t::none) {
            for (const std::string& word : verb.words()) {
                wordsAreGiven += "; and contains " + word + " (commandline -opc)";
            }
        }
        if (!words.empty()) {
            text += fishLine(condition, "-a " + fishQuoted(words));
        }
        if (verb.path != path_t::none) {
            text += fishLine(condition + wordsAreGiven, "-F");
        }
    }
    return text;
}

} // namespace

std::string completionScript(shell_t shell, const std::vector<command_t>& commands) {
    switch (shell) {
    case shell_t::bash: return bashScript(commands);
    case shell_t::zsh: return zshScript(commands);
    case shell_t::fish: return fishScript(commands);
    }
    return {};
}
