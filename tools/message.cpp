#include "tools/message.h"

#include <cstdio>

void complain(const std::string& name, const std::string& reason) {
    fmt::print(stderr, "kalo: {}: {}\n", name, reason);
}

int exitStatus(const output_t& output) {
    if (!output.failed()) {
        return 0;
    }
    complain("standard output", output.reason());
    return exitFailure;
}
