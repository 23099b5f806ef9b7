#include "tools/command/fieldsCommand.h"

#include <numeric>

#include <fmt/format.h>
#include <unistd.h>

#include "tools/command/readInput.h"
#include "tools/record/registry.h"

int fieldsCommand(std::vector<typeIndex_t> types) {
    output_t output(STDOUT_FILENO);
    const auto print = [&](std::string_view type, std::string_view name, std::string_view unit,
                           std::string_view fields, std::string_view meaning) {
        output.buffer().append(
            fmt::format("{:10} {:24} {:8} {:9} {}\n", type, name, unit, fields, meaning));
    };
    if (types.empty()) {
        types.resize(recordTypeCount);
        std::iota(types.begin(), types.end(), typeIndex_t{0});
    }
    print("type", "name", "unit", "fields", "meaning");
    for (const typeIndex_t index : types) {
        const recordType_t& type = recordTypes[index];
        if (type.rowCount == 0) {
            print(type.name, "address, fields", "", "", fmt::format("{}, as sent", type.meaning));
        }
        for (const recordType_t::row_t& row : type) {
            print(type.name, row.name, row.unit.name, placeOf(row), row.meaning);
        }
    }
    return finish(output, 0);
}
