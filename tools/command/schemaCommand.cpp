#include "tools/command/schemaCommand.h"

#include <algorithm>

#include <fmt/format.h>
#include <nlohmann/json.hpp>
#include <unistd.h>

#include "tools/command/readInput.h"
#include "tools/input/pieces.h"
#include "tools/output/output.h"

namespace {

using json_t = nlohmann::ordered_json;

constexpr const char* dialect = "https://json-schema.org/draft/2020-12/schema";

json_t textLike(const char* pattern) { return {{"type", "string"}, {"pattern", pattern}}; }

json_t listOf(json_t items) { return {{"type", "array"}, {"items", std::move(items)}}; }

json_t schemaOf(const recordColumn_t& column, const valueOptions_t& values);

json_t objectOf(const std::vector<recordColumn_t>& columns, const valueOptions_t& values) {
    json_t properties = json_t::object();
    json_t required = json_t::array();
    for (const recordColumn_t& column : columns) {
        if (column.key == recordKey_t::timeRule && !values.explain) {
            continue;
        }
        properties[column.name] = schemaOf(column, values);
        if (column.isAlways) {
            required.push_back(column.name);
        }
    }
    json_t object = {{"type", "object"}, {"properties", std::move(properties)}};
    if (!required.empty()) {
        object["required"] = std::move(required);
    }
    object["additionalProperties"] = false;
    return object;
}

json_t schemaOfShape(const recordColumn_t& column, const valueOptions_t& values) {
    switch (column.shape) {
    case shape_t::text: return {{"type", "string"}};
    case shape_t::integer: return {{"type", "integer"}};
    case shape_t::number: return {{"type", "number"}};
    case shape_t::boolean: return {{"type", "boolean"}};
    case shape_t::date: return textLike("^\\d{4,}-\\d{2,}-\\d{2,}$");
    case shape_t::timeOfDay: return textLike("^\\d{2}:\\d{2}:\\d{2}(\\.\\d+)?$");
    case shape_t::instant:
        return values.epoch ? json_t{{"type", "number"}}
                            : textLike("^\\d{4}-\\d{2}-\\d{2}T\\d{2}:\\d{2}:\\d{2}(\\.\\d+)?Z$");
    case shape_t::tags:
        return {{"type", "object"},
                {"additionalProperties", {{"type", {"string", "integer", "boolean"}}}}};
    case shape_t::integers: return listOf({{"type", "integer"}});
    case shape_t::texts: return listOf({{"type", "string"}});
    case shape_t::members: return listOf(objectOf(column.members, values));
    }
    return {};
}

// The words that a key has, where they are few; null of another.
json_t wordsOf(recordKey_t key) {
    json_t words;
    if (key == recordKey_t::checksum) {
        words.push_back(false);
    } else if (key == recordKey_t::timeRule) {
        for (const dayRule_t rule : {dayRule_t::own, dayRule_t::near, dayRule_t::stamp,
                                     dayRule_t::option, dayRule_t::isVoid, dayRule_t::rollover}) {
            words.push_back(dayRuleText(rule));
        }
    } else if (key == recordKey_t::error) {
        for (std::size_t i = 1; i < faultCount; ++i) {              // behind "none"
            const json_t text = faultText(static_cast<fault_t>(i)); // which several may share
            if (std::find(words.begin(), words.end(), text) == words.end()) {
                words.push_back(text);
            }
        }
    }
    return words;
}

json_t schemaOf(const recordColumn_t& column, const valueOptions_t& values) {
    json_t schema = schemaOfShape(column, values);
    if (column.key == recordKey_t::line) {
        schema["type"] = {"integer", "null"};
    }
    json_t words = wordsOf(column.key);
    if (!words.is_null()) {
        schema["enum"] = std::move(words);
    }
    const std::string unit = unitOf(column, values);
    std::string description = column.meaning;
    if (!unit.empty()) {
        description += fmt::format("{}[{}]", description.empty() ? "" : " ", unit);
    }
    if (!description.empty()) {
        schema["description"] = std::move(description);
    }
    return schema;
}

json_t schemaOf(const recordTable_t& table, const valueOptions_t& values) {
    json_t schema = {{"title", table.name}, {"description", table.meaning}};
    schema.update(objectOf(table.columns, values));
    const bool hasType = table.name != untypedTable && table.name != malformedTable;
    schema["properties"]["type"] = {{"const", hasType ? json_t(table.name) : json_t()}};
    return schema;
}

std::string jsonSchema(schemaOptions_t& options) {
    const auto schemaOfName = [&](const std::string& name) {
        return schemaOf(tableNamed(name, options.dictionary), options.table.values);
    };
    json_t schema = {{"$schema", dialect}};
    if (options.types.size() == 1) {
        schema.update(schemaOfName(options.types[0]));
        return schema.dump(2) + '\n';
    }
    schema["title"] = "records of kalo decode";
    for (const std::string& name :
         options.types.empty() ? allTables(options.dictionary) : options.types) {
        schema["anyOf"].push_back({{"$ref", "#/$defs/" + name}});
        schema["$defs"][name] = schemaOfName(name);
    }
    return schema.dump(2) + '\n';
}

// Dates and times of day are texts, because some that are sent are in no calendar and on no clock.
std::string duckdbType(const recordColumn_t& column, const schemaOptions_t& options) {
    const bool isTable = options.format != format_t::json;
    switch (column.shape) {
    case shape_t::text:
    case shape_t::date:
    case shape_t::timeOfDay:
    case shape_t::tags: return "VARCHAR";
    case shape_t::integer: return "BIGINT";
    case shape_t::number: return "DOUBLE";
    case shape_t::boolean: return "BOOLEAN";
    case shape_t::instant: return options.table.values.epoch ? "DOUBLE" : "TIMESTAMP";
    case shape_t::integers: return isTable ? "VARCHAR" : "BIGINT[]";
    case shape_t::texts: return isTable ? "VARCHAR" : "VARCHAR[]";
    case shape_t::members: {
        std::string members;
        for (const recordColumn_t& member : column.members) {
            members += fmt::format("{}\"{}\" {}", members.empty() ? "" : ", ", member.name,
                                   duckdbType(member, options));
        }
        return fmt::format("STRUCT({})[]", members);
    }
    }
    return {};
}

// As DuckDB takes them for the parameter `columns`.
std::string duckdbColumns(schemaOptions_t& options) {
    const recordTable_t records = tableNamed(options.types[0], options.dictionary);
    std::string list;
    const auto add = [&](const std::string& name, const recordColumn_t& column) {
        list += fmt::format("{}'{}': '{}'", list.empty() ? "{" : ",\n ", name,
                            duckdbType(column, options));
    };
    if (options.format == format_t::json) {
        for (const recordColumn_t& column : records.columns) {
            if (column.key != recordKey_t::timeRule || options.table.values.explain) {
                add(column.name, column);
            }
        }
    } else {
        for (const tableColumn_t& column : chosenColumns(records, options.table)) {
            add(column.name, *column.column);
        }
    }
    return list + "}\n";
}

} // namespace

int schemaCommand(schemaOptions_t& options) {
    output_t output(STDOUT_FILENO);
    output.buffer().append(options.isForDuckdb ? duckdbColumns(options) : jsonSchema(options));
    return finish(output, 0);
}
