// Prints the kinds of findings and the ranges of values as the tables in docs/answers.md.
#include <cstdio>

#include "tools/analysis/check.h"

int main() {
    std::puts("| Name | | What it is |\n|---|---|---|");
    for (const findingKind_t& kind : findingKinds) {
        std::printf("| `%s` | %s | %s |\n", kind.name, kind.isFault ? "fault" : "note",
                    kind.meaning);
    }
    std::puts("\nThe ranges of `out-of-range`:\n");
    std::puts("| Value | Least | Greatest | Unit |\n|---|---|---|---|");
    for (const quantityRow_t& row : quantityRows) {
        if (row.title != nullptr) {
            std::printf("| %s | %g | %g | %s |\n", row.title, row.least, row.greatest, row.unit);
        }
    }
}
