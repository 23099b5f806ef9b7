#include "tools/record/dictionaryFile.h"

#include <algorithm>
#include <array>
#include <set>

#define TOML_ENABLE_FORMATTERS 0
#include <toml++/toml.h>

#include "tools/input/text.h"
#include "tools/record/builtInSentences.h"
#include "tools/record/recordTable.h"
#include "tools/record/registry.h"

namespace {

struct kindName_t {
    std::string_view name;
    valueKind_t kind;
};

constexpr kindName_t kindNames[] = {
    {"text", valueKind_t::text},         {"letter", valueKind_t::letter},
    {"integer", valueKind_t::integer},   {"number", valueKind_t::number},
    {"angle", valueKind_t::degrees},     {"rate", valueKind_t::degreesPerSecond},
    {"latitude", valueKind_t::latitude}, {"longitude", valueKind_t::longitude},
    {"time", valueKind_t::time},         {"duration", valueKind_t::duration},
    {"date", valueKind_t::date},         {"quantity", valueKind_t::quantity},
    {"texts", valueKind_t::texts},       {"rest", valueKind_t::rest},
    {"group", valueKind_t::group}};

// The units that stand in fields of their own. Where lengths come in feet, metres and fathoms, the
// foot is that of the library.
constexpr double foot = 1200.0 / 3937;
constexpr double fathom = 6 * foot;
constexpr double knot = 1852.0 / 3600;
constexpr unitLetter_t speeds[] = {{'N', knot}, {'K', 1 / 3.6}, {'M', 1}, {'S', 0.44704}, {}};
constexpr unitLetter_t depths[] = {{'f', foot}, {'M', 1}, {'F', fathom}, {}};
constexpr unitLetter_t distances[] = {{'N', 1852}, {'K', 1000}, {'M', 1}, {'S', 1609.344}, {}};
constexpr unitLetter_t temperatures[] = {{'C', 1}, {'F', 5.0 / 9, -32}, {}};
constexpr unitLetter_t pressures[] = {{'B', 1e5}, {'I', 3386.389}, {'P', 1}, {}};

struct dimension_t {
    std::string_view name;
    const char* unit;
    const unitLetter_t* letters;
};

constexpr dimension_t dimensions[] = {{"speed", "m/s", speeds},
                                      {"depth", "m", depths},
                                      {"distance", "m", distances},
                                      {"temperature", "deg C", temperatures},
                                      {"pressure", "Pa", pressures}};

template <typename Row, std::size_t count>
std::string namesOf(const Row (&rows)[count]) {
    std::string names;
    for (const Row& row : rows) {
        names.append(names.empty() ? "" : ", ").append(row.name);
    }
    return names;
}

template <typename Row, std::size_t count>
const Row* find(const Row (&rows)[count], std::string_view name) {
    const Row* const found = std::find_if(std::begin(rows), std::end(rows),
                                          [&](const Row& row) { return row.name == name; });
    return found == std::end(rows) ? nullptr : found;
}

// The lines of a text.
std::vector<std::string_view> linesOf(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const std::size_t length = std::min(text.find('\n'), text.size() - 1) + 1;
        lines.push_back(text.substr(0, length));
        text.remove_prefix(length);
    }
    return lines;
}

bool isName(std::string_view text) {
    return !text.empty() && isLetter(text[0]) &&
           std::all_of(text.begin(), text.end(), [](char c) { return isLetter(c) || isDigit(c); });
}

class reader_t {
public:
    reader_t(std::string_view text, const std::string& name)
        : m_name(name), m_lines(linesOf(text)) {}

    dictionarySentence_t readSentence(const toml::key& key, const toml::node& node) const;

private:
    // One table. A key that nobody has asked for at the end is a mistake.
    class table_t {
    public:
        table_t(const reader_t& reader, const toml::table& table)
            : m_reader(reader), m_table(table) {}

        template <typename T>
        std::optional<T> optional(std::string_view key, const char* what) {
            m_asked.insert(key);
            const toml::node* const node = m_table.get(key);
            if (node == nullptr) {
                return {};
            }
            std::optional<T> value = node->value_exact<T>();
            if (!value) {
                m_reader.fail(*node, std::string(key) + " must be " + what);
            }
            return value;
        }

        std::string text(std::string_view key) {
            const auto value = optional<std::string>(key, "text");
            if (!value || value->empty()) {
                m_reader.fail(m_table, std::string(key) + " is missing");
            }
            return *value;
        }

        std::string textOr(std::string_view key, std::string other) {
            return optional<std::string>(key, "text").value_or(std::move(other));
        }

        // One text, or a list of them.
        std::vector<std::string> texts(std::string_view key) {
            m_asked.insert(key);
            const toml::node* const node = m_table.get(key);
            std::vector<std::string> result;
            const auto take = [&](const toml::node& value) {
                const auto text = value.value_exact<std::string>();
                if (!text || text->empty()) {
                    m_reader.fail(*node, std::string(key) + " must be text, or a list of texts");
                }
                result.push_back(*text);
            };
            if (node != nullptr && node->is_array()) {
                for (const toml::node& value : *node->as_array()) {
                    take(value);
                }
            } else if (node != nullptr) {
                take(*node);
            }
            return result;
        }

        const toml::array* array(std::string_view key) {
            m_asked.insert(key);
            const toml::node* const node = m_table.get(key);
            if (node != nullptr && !node->is_array()) {
                m_reader.fail(*node, std::string(key) + " must be a list");
            }
            return node == nullptr ? nullptr : node->as_array();
        }

        unsigned field(std::string_view key) {
            const auto number = optional<std::int64_t>(key, "the number of a field");
            if (!number) {
                m_reader.fail(m_table, std::string(key) + " is missing");
            }
            return m_reader.fieldOf(m_table, *number);
        }

        bool has(std::string_view key) const { return m_table.contains(key); }
        const toml::table& node() const { return m_table; }

        void finish() const {
            for (const auto& [key, node] : m_table) {
                if (m_asked.find(key.str()) == m_asked.end()) {
                    m_reader.fail(node, "unknown key: " + std::string(key.str()));
                }
            }
        }

        [[noreturn]] void fail(const std::string& reason) const { m_reader.fail(m_table, reason); }

    private:
        const reader_t& m_reader;
        const toml::table& m_table;
        std::set<std::string_view> m_asked;
    };

    [[noreturn]] void fail(const toml::node& node, const std::string& reason) const {
        fail(node.source().begin.line, reason);
    }
    [[noreturn]] void fail(std::size_t line, const std::string& reason) const {
        throw dictionaryError_t(m_name + ":" + std::to_string(line) + ": " + reason);
    }

    unsigned fieldOf(const toml::node& place, std::int64_t number) const {
        constexpr std::int64_t most = 999;
        if (number < 1 || number > most) {
            fail(place, "no such field: " + std::to_string(number));
        }
        return static_cast<unsigned>(number);
    }

    std::vector<dictionaryRow_t> readRows(const toml::node& place, const toml::array* rows,
                                          bool isMember) const;
    dictionaryRow_t readRow(const toml::table& node, bool isMember) const;
    void readKind(table_t& table, dictionaryRow_t& row, bool isMember) const;
    void readSign(table_t& table, dictionaryRow_t& row) const;
    std::vector<unsigned> fieldsOf(const toml::array& list) const;
    std::string linesAt(const toml::source_region& key) const;

    std::string m_name;
    std::vector<std::string_view> m_lines;
};

dictionarySentence_t reader_t::readSentence(const toml::key& key, const toml::node& node) const {
    dictionarySentence_t sentence;
    sentence.name = key.str();
    if (!node.is_table() || !isName(sentence.name)) {
        fail(key.source().begin.line, "not a sentence: " + sentence.name);
    }
    table_t table(*this, *node.as_table());
    sentence.address = table.textOr("address", sentence.name);
    sentence.meaning = table.text("meaning");
    sentence.source = table.text("source");
    sentence.subtype = table.textOr("subtype", "");
    if (table.has("subtypeField")) {
        sentence.subtypeField = table.field("subtypeField");
    }
    sentence.rows = readRows(node, table.array("values"), false);
    sentence.positionRank = positionRankOf(sentence.name);
    for (dictionaryRow_t& row : sentence.rows) {
        row.quantity = quantityOf(sentence.name, row.name);
    }
    table.finish();
    const bool isProprietary = sentence.address[0] == 'P' && sentence.address.size() > 3;
    if (!isProprietary && sentence.address.size() != 3) {
        fail(node, "the address must be the last three letters of an address, or a whole "
                   "proprietary name that starts with P: " +
                       sentence.address);
    }
    const typeIndex_t type = typeOfName(sentence.name);
    if (type != noType && recordTypes[type].rowCount > 0) {
        fail(node, "kalo decodes this type itself: " + sentence.name);
    }
    sentence.toml = linesAt(key.source());
    return sentence;
}

std::vector<dictionaryRow_t> reader_t::readRows(const toml::node& place, const toml::array* rows,
                                                bool isMember) const {
    if (rows == nullptr || rows->empty()) {
        fail(place, "values are missing");
    }
    std::vector<dictionaryRow_t> result;
    for (const toml::node& node : *rows) {
        if (!node.is_table()) {
            fail(node, "a value must be a table: {name = \"...\", kind = \"...\", field = 1}");
        }
        result.push_back(readRow(*node.as_table(), isMember));
        const std::string& name = result.back().name;
        if (std::count_if(result.begin(), result.end(),
                          [&](const dictionaryRow_t& row) { return row.name == name; }) > 1) {
            fail(node, "two values have the name " + name);
        }
    }
    return result;
}

dictionaryRow_t reader_t::readRow(const toml::table& node, bool isMember) const {
    table_t table(*this, node);
    dictionaryRow_t row;
    row.name = table.text("name");
    if (!isName(row.name)) {
        table.fail("not a name: " + row.name);
    }
    if (!isMember && isRecordKey(row.name)) {
        table.fail("every record may have " + row.name + "; choose another name");
    }
    row.key = ",\"" + row.name + "\":";
    row.meaning = table.textOr("meaning", "");
    row.source = table.textOr("source", "");
    const std::string kind = table.text("kind");
    const kindName_t* const known = find(kindNames, kind);
    if (known == nullptr) {
        table.fail("unknown kind: " + kind + " (expected " + namesOf(kindNames) + ")");
    }
    row.kind = known->kind;
    readKind(table, row, isMember);
    table.finish();
    return row;
}

void reader_t::readKind(table_t& table, dictionaryRow_t& row, bool isMember) const {
    const auto takeField = [&] { row.fields.push_back(table.field("field")); };
    switch (row.kind) {
    case valueKind_t::number:
        row.unit = table.textOr("unit", "");
        row.before = table.texts("after");
        [[fallthrough]];
    case valueKind_t::degrees:
    case valueKind_t::degreesPerSecond:
        takeField();
        if (table.has("factor")) {
            const auto factor = table.optional<double>("factor", "a number with a point");
            row.factor = *factor;
        }
        readSign(table, row);
        break;
    case valueKind_t::latitude:
    case valueKind_t::longitude:
        takeField();
        row.fields.push_back(row.fields[0] + 1);
        break;
    case valueKind_t::time:
        takeField();
        row.isOwn = table.optional<bool>("own", "true or false").value_or(true);
        break;
    case valueKind_t::date:
        if (const toml::array* const parts = table.array("fields")) {
            constexpr std::size_t partCount = 3;
            row.fields = fieldsOf(*parts);
            if (row.fields.size() != partCount) {
                table.fail("a date has three fields: day, month, year");
            }
        } else {
            takeField();
            const std::string order = table.text("order");
            row.isMonthFirst = order == "mmddyy";
            if (!row.isMonthFirst && order != "ddmmyy") {
                table.fail("unknown order: " + order + " (expected ddmmyy or mmddyy)");
            }
        }
        break;
    case valueKind_t::quantity: {
        const std::string of = table.text("of");
        const dimension_t* const dimension = find(dimensions, of);
        const toml::array* const pairs = table.array("pairs");
        if (dimension == nullptr) {
            table.fail("unknown quantity: " + of + " (expected " + namesOf(dimensions) + ")");
        }
        row.unit = dimension->unit;
        row.units = dimension->letters;
        for (std::size_t i = 0; pairs != nullptr && i < pairs->size(); ++i) {
            const toml::array* const pair = (*pairs)[i].as_array();
            if (pair == nullptr || pair->size() != 2) {
                table.fail("a pair is two fields: [number, unit]");
            }
            const std::vector<unsigned> fields = fieldsOf(*pair);
            row.fields.insert(row.fields.end(), fields.begin(), fields.end());
        }
        if (row.fields.empty()) {
            table.fail("pairs are missing");
        }
        break;
    }
    case valueKind_t::group:
        if (isMember) {
            table.fail("a group cannot hold another group");
        }
        takeField();
        row.every = table.field("every");
        row.members = readRows(table.node(), table.array("values"), true);
        break;
    case valueKind_t::duration: row.unit = "s"; [[fallthrough]];
    default: takeField(); break;
    }
    if (row.isAngle()) {
        row.unit = row.kind == valueKind_t::degreesPerSecond ? rate.name : angle.name;
    }
}

void reader_t::readSign(table_t& table, dictionaryRow_t& row) const {
    const toml::array* const sign = table.array("sign");
    if (sign == nullptr) {
        return;
    }
    const std::optional<std::int64_t> field =
        sign->size() == 2 ? (*sign)[0].value_exact<std::int64_t>() : std::nullopt;
    const std::optional<std::string> letters =
        sign->size() == 2 ? (*sign)[1].value_exact<std::string>() : std::nullopt;
    if (!field || !letters || letters->size() != 2) {
        table.fail("a sign is a field and two letters: [3, \"EW\"]");
    }
    row.fields.push_back(fieldOf(*sign, *field));
    row.positive = (*letters)[0];
    row.negative = (*letters)[1];
}

std::vector<unsigned> reader_t::fieldsOf(const toml::array& list) const {
    std::vector<unsigned> fields;
    for (const toml::node& node : list) {
        const std::optional<std::int64_t> number = node.value_exact<std::int64_t>();
        if (!number) {
            fail(node, "not the number of a field");
        }
        fields.push_back(fieldOf(node, *number));
    }
    return fields;
}

// From the line of the key to the next table, without blank lines and comments at the end.
std::string reader_t::linesAt(const toml::source_region& key) const {
    std::size_t end = key.begin.line;
    const auto isStart = [&](std::size_t i) { return startsWith(m_lines[i], "["); };
    while (end < m_lines.size() && !isStart(end)) {
        ++end;
    }
    const auto isOver = [&](std::string_view line) {
        return line.find_first_not_of("\r\n") == std::string_view::npos || line[0] == '#';
    };
    while (end > key.begin.line && isOver(m_lines[end - 1])) {
        --end;
    }
    std::string text;
    for (std::size_t i = key.begin.line - 1; i < end; ++i) {
        text.append(m_lines[i]);
    }
    return text;
}

} // namespace

void addSentences(std::string_view toml, const std::string& name, dictionary_t& dictionary) {
    toml::table file;
    try {
        file = toml::parse(toml, name);
    } catch (const toml::parse_error& error) {
        throw dictionaryError_t(name + ":" + std::to_string(error.source().begin.line) + ": " +
                                std::string(error.description()));
    }
    const reader_t reader(toml, name);
    // In the order of the file, not of the names.
    std::vector<std::pair<const toml::key*, const toml::node*>> sentences;
    for (const auto& [key, node] : file) {
        sentences.emplace_back(&key, &node);
    }
    std::sort(sentences.begin(), sentences.end(), [](const auto& a, const auto& b) {
        return a.first->source().begin.line < b.first->source().begin.line;
    });
    for (const auto& [key, node] : sentences) {
        dictionary.add(reader.readSentence(*key, *node));
    }
}

const dictionary_t& dictionaryHolder_t::get() {
    if (!m_dictionary) {
        m_dictionary.emplace();
        addSentences(builtInSentences, "sentences.toml", *m_dictionary);
    }
    return *m_dictionary;
}

void dictionaryHolder_t::add(std::string_view toml, const std::string& name) {
    get();
    addSentences(toml, name, *m_dictionary);
}
