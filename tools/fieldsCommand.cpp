#include "tools/fieldsCommand.h"

#include <cstdio>

#include <unistd.h>

#include "tools/message.h"
#include "tools/output.h"
#include "tools/recordTable.h"

int fieldsCommand() {
    output_t output(STDOUT_FILENO);
    const auto print = [&](std::string_view type, std::string_view name, std::string_view unit,
                           std::string_view fields, std::string_view meaning) {
        fmt::format_to(fmt::appender(output.buffer()), "{:10} {:24} {:8} {:9} {}\n", type, name,
                       unit, fields, meaning);
    };
    print("type", "name", "unit", "fields", "meaning");
    for (std::size_t i = 0; i < recordTypeCount; ++i) {
        const recordType_t& type = recordTypes[i];
        if (type.rowCount == 0) {
            print(type.name, "address, fields", "", "", fmt::format("{}, as sent", type.meaning));
        }
        for (const valueRow_t& row : type) {
            print(type.name, row.name, row.unit.name, placeOf(row), row.meaning);
        }
    }
    output.flush();
    return exitStatus(output);
}
