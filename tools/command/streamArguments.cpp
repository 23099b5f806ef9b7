#include "tools/command/streamArguments.h"

#include "tools/input/input.h"
#include "tools/terminal/message.h"

option_t outputOption(outputOptions_t& output) {
    return {"-o,--output",
            "FILE",
            "Write to this file, which is named FILE.part until it is complete",
            [&output](const std::string& text) {
                if (text.empty()) {
                    throw usageError_t("missing name of the file");
                }
                output.path = text;
            },
            times_t::once,
            {},
            path_t::file};
}

option_t followOption(bool& follows) {
    return flag("--follow", follows,
                "Read the last FILE as it grows, also when it is rotated or truncated, until a "
                "signal such as Ctrl-C");
}

void checkFollowed(const std::string& name) {
    struct stat file = {};
    if (name == "-") {
        throw usageError_t("--follow: standard input is read until it ends; name a file");
    }
    if (readStatus(name, file) && !S_ISREG(file.st_mode)) {
        throw usageError_t("--follow: " + printable(name) +
                           " is not a regular file; pipes and devices are read until they end");
    }
}

void checkRanged(const std::vector<std::string>& names) {
    struct stat file = {};
    if (names.size() > 1) {
        throw usageError_t("--range needs one FILE, not several");
    }
    if (names[0] == "-") {
        throw usageError_t("--range: standard input has no ranges; name a file");
    }
    if (readStatus(names[0], file) && !S_ISREG(file.st_mode)) {
        throw usageError_t("--range: " + printable(names[0]) + " is not a regular file");
    }
}
