#include "tools/command/streamArguments.h"

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
