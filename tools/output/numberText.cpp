#include "tools/output/numberText.h"

#include <fmt/compile.h>

char* writeInteger(char* at, std::uint64_t value) {
    return fmt::format_to(at, FMT_COMPILE("{}"), value);
}

char* writeInteger(char* at, int value) { return fmt::format_to(at, FMT_COMPILE("{}"), value); }

char* writePadded(char* at, unsigned value, unsigned digits) {
    return fmt::format_to(at, FMT_COMPILE("{:0{}}"), value, digits);
}

char* writeShortest(char* at, double value) { return fmt::format_to(at, FMT_COMPILE("{}"), value); }

char* writeShortest(char* at, float value) { return fmt::format_to(at, FMT_COMPILE("{}"), value); }

char* writeFifteenDigits(char* at, double value) {
    return fmt::format_to(at, FMT_COMPILE("{:.15g}"), value);
}
