// The arguments of a command (here: verb): which options it has, what each does, and how they are
// read. Helps, manual pages and completions are made from the same table.
#pragma once

#include <array>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

/// What is wrong with the arguments, for people.
class usageError_t : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// How often an option may be given.
enum class times_t {
    once,
    again, ///< several times, one value each
    list   ///< several times, each time one or more values with commas between them
};

/// The words of which a value or an operand is one. A function, because some lists are long.
using words_t = std::function<std::vector<std::string>()>;

/// Whether a value or an operand is the name of a file or of a folder.
enum class path_t { none, file, folder };

struct option_t {
    const char* names;   ///< "--quiet", or "-q,--quiet"
    const char* operand; ///< what its value is called; null for a flag
    const char* help;
    /// Gets the value, which is empty for a flag. Throws `usageError_t` if the value is wrong.
    std::function<void(const std::string& value)> take;
    times_t times = times_t::once;
    words_t words = {}; ///< empty if the value is not one of a list
    path_t path = path_t::none;
};

/// "-t" and "--type" of "-t,--type". The short name may be empty.
std::string shortName(const option_t& option);
std::string longName(const option_t& option);

struct example_t {
    const char* command; ///< it works in a folder that holds a recording `voyage.log`
    const char* meaning;
};

struct verb_t {
    const char* name;
    const char* operands; ///< "[FILE...]"; empty without
    const char* summary;  ///< one line
    const char* details;  ///< the text at the start of its own help
    std::array<example_t, 2> examples;
    std::vector<option_t> options;
    words_t words = {}; ///< what an operand may be; if there are paths too, what the first one is
    path_t path = path_t::none;
};

/// Calls `take` for each option in `arguments`, and returns the other arguments. `-h` and `--help`
/// are left to the caller. Throws `usageError_t`.
std::vector<std::string> parseArguments(const verb_t& verb,
                                        const std::vector<std::string>& arguments);

/// An option without a value, which sets `out`.
option_t flag(const char* names, bool& out, const char* help);

/// The place of `word` in `words`. Throws `usageError_t`: "no such WHAT: WORD", with the nearest
/// word, and with all words if they are few.
std::size_t placeOf(const std::string& word, const std::vector<std::string>& words,
                    const std::string& what);

std::string inSmallLetters(std::string text);
std::string inCapitals(std::string text);

/// "json, csv or tsv".
std::string listed(const std::vector<std::string>& words);

/// A word that an option takes, and what it stands for.
template <typename Value>
struct choice_t {
    const char* name;
    Value value;
};

template <typename Value, std::size_t count>
std::vector<std::string> namesOf(const choice_t<Value> (&choices)[count]) {
    std::vector<std::string> names;
    for (const choice_t<Value>& choice : choices) {
        names.emplace_back(choice.name);
    }
    return names;
}

/// An option whose value is one of `choices`, which must outlive it. In messages the value is
/// called what `operand` is, in small letters. `take` gets what the word stands for.
template <typename Value, std::size_t count, typename Take>
option_t choiceOption(const char* names, const char* operand,
                      const choice_t<Value> (&choices)[count], const char* help, Take take) {
    const words_t words = [&choices] { return namesOf(choices); };
    return {names,
            operand,
            help,
            [&choices, operand, words, take](const std::string& text) {
                take(choices[placeOf(text, words(), inSmallLetters(operand))].value);
            },
            times_t::once,
            words};
}
