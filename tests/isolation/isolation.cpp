// Prints a number for everything of each kind that the library decodes: before `main`, and again in
// it, under the C locale that the environment names. (A global C++ locale is another matter:
// numbers are read by it, as a stream does. numberDifferenceTest.cpp has the tests for that.)
#include <clocale>
#include <cstdio>
#include <cstdlib>

#include "tests/isolation/decodeAll.h"

namespace {

const digests_t beforeMain = decodeAll_t()(sampleLog());

} // namespace

int main() {
    std::setlocale(LC_ALL, "");
    const digests_t inMain = decodeAll_t()(sampleLog());
    for (const auto& [kind, digest] : inMain) {
        std::printf("%s %016llx\n", kind.c_str(), static_cast<unsigned long long>(digest));
    }
    std::printf("decimal point %s\n", std::localeconv()->decimal_point);
    if (inMain != beforeMain) {
        std::puts("before main it was different");
        return EXIT_FAILURE;
    }
}
