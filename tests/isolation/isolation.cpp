// Prints a number for everything of each kind that the library decodes: before `main`, and again in
// it, under the C locale that the environment names. With an argument also under a global C++
// locale of other numbers. By design they are read by it, as a stream does:
// numberDifferenceTest.cpp has the tests for that. Texts and whole numbers have to be the same.
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <locale>

#include "tests/isolation/decodeAll.h"

namespace {

// Needs no locale of the system, and has no name.
struct commaNumbers_t : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

digests_t digestsOfLogs() {
    digests_t digests = decodeAll_t()(sampleLog());
    for (const auto& [kind, digest] : decodeAll_t()(withoutDecimals(sampleLog()))) {
        digests["whole " + kind] = digest;
    }
    return digests;
}

const digests_t beforeMain = digestsOfLogs();

} // namespace

int main(int argc, char** /*argv*/) {
    std::setlocale(LC_ALL, "");
    const bool hasCommas = argc > 1;
    if (hasCommas) {
        std::locale::global(std::locale(std::locale(), new commaNumbers_t));
    }
    const digests_t inMain = digestsOfLogs();
    for (const auto& [kind, digest] : inMain) {
        std::printf("%s %016llx\n", kind.c_str(), static_cast<unsigned long long>(digest));
    }
    std::printf("decimal point %s\n", std::localeconv()->decimal_point);
    if (!hasCommas && inMain != beforeMain) {
        std::puts("before main it was different");
        return EXIT_FAILURE;
    }
}
