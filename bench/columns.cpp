#include "bench/columns.h"

#include <algorithm>

#include "tools/column/columnReader.h"

unsigned long columnsPass(const sentences_t& lines) {
    constexpr std::size_t blockSize = 65536; // as much as the package for Python feeds at a time
    constexpr std::size_t batchBytes = std::size_t{8} << 20; // as its scan() hands over
    unsigned long rows = 0;
    if (lines.empty()) {
        return rows;
    }
    columnReader_t reader({});
    const auto take = [&] {
        for (const namedBatches_t& table : reader.take()) {
            for (const auto& batch : table.batches) {
                rows += batch->rows;
            }
        }
    };
    const char* at = lines.front().data();
    const char* const end = lines.back().data() + lines.back().size();
    reader.begin("bench.log");
    while (at != end) {
        const std::size_t size = std::min(blockSize, static_cast<std::size_t>(end - at));
        reader.feed({at, size});
        at += size;
        if (reader.bytes() >= batchBytes) {
            take();
        }
    }
    reader.end();
    take();
    return rows;
}
