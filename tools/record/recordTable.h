// What the records of one type hold, as a description: the keys of their JSON objects, which are
// the columns of their tables, in order.
#pragma once

#include <string>
#include <vector>

#include "tools/record/dictionaryFile.h"
#include "tools/record/shape.h"

/// The keys that are not values of one type of record. `value` is all the others.
enum class recordKey_t {
    source,
    line,
    offset,
    received,
    tag,
    prefix,
    type,
    talker,
    time,
    timeRule,
    value,
    checksum,
    address,
    fields,
    error,
    stated,
    computed,
    suffix,
    raw
};
constexpr std::size_t recordKeyCount = static_cast<std::size_t>(recordKey_t::raw) + 1;

struct recordColumn_t {
    std::string name;
    shape_t shape = shape_t::text;
    std::string unit;
    std::string radianUnit; ///< with --radians; of a value that is no angle the same
    std::string meaning;
    recordKey_t key = recordKey_t::value;
    bool isAlways = false;               ///< every record of the type has it
    std::vector<recordColumn_t> members; ///< of a list of objects
};

struct recordTable_t {
    std::string name; ///< that of the type
    std::string meaning;
    std::vector<recordColumn_t> columns;
};

/// Records without a type have tables of their own, with names that no type can have.
constexpr std::string_view untypedTable = "untyped-records";
constexpr std::string_view malformedTable = "malformed-records";

/// The table of this name, which is that of a type as it is printed, or one of the two above. The
/// dictionary is not asked for types that the library decodes.
recordTable_t tableNamed(std::string_view name, dictionaryHolder_t& dictionary);

/// Whether records have a key of this name that is not one of their values.
bool isRecordKey(std::string_view name);
