// The arguments of a command (here: verb): which options it has, what each does, and how they are
// read. The help is made from the same table.
#pragma once

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

struct option_t {
    const char* names;   ///< "--quiet", or "-q,--quiet"
    const char* operand; ///< what its value is called; null for a flag
    const char* help;
    /// Gets the value, which is empty for a flag. Throws `usageError_t` if the value is wrong.
    std::function<void(const std::string& value)> take;
    times_t times = times_t::once;
};

struct verb_t {
    const char* name;
    const char* operands; ///< "[FILE...]"; empty without
    const char* summary;  ///< one line
    const char* details;  ///< the text at the start of its own help
    std::vector<option_t> options;
};

/// Calls `take` for each option in `arguments`, and returns the other arguments. `-h` and `--help`
/// are left to the caller. Throws `usageError_t`.
std::vector<std::string> parseArguments(const verb_t& verb,
                                        const std::vector<std::string>& arguments);

/// An option without a value, which sets `out`.
option_t flag(const char* names, bool& out, const char* help);

/// The help of a verb.
std::string helpOf(const verb_t& verb);
