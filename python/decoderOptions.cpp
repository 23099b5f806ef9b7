#include "python/decoderOptions.h"

#include <algorithm>

#include "tools/input/pieces.h"
#include "tools/time/calendarDate.h"

namespace {

kalo::date_t dateOfText(const char* text) {
    kalo::date_t date;
    if (!parseDate(text, date)) {
        throw usageError_t("no such date: " + std::string(text) + " (expected YYYY-MM-DD)");
    }
    return date;
}

template <typename T>
struct word_t {
    std::string_view word;
    T value;
};
constexpr word_t<kind_t> kinds[] = {{"nmea", kind_t::sentence},
                                    {"tss1", kind_t::motion},
                                    {"ats", kind_t::tracking},
                                    {"ntrip", kind_t::table}};
constexpr word_t<dateOrder_t> dateOrders[] = {{"dmy", dateOrder_t::dayFirst},
                                              {"mdy", dateOrder_t::monthFirst}};

// What a word stands for; `what` is that of which it is none.
template <typename T, std::size_t count>
T valueOfWord(std::string_view word, const word_t<T> (&words)[count], const char* what) {
    std::string known;
    for (const word_t<T>& row : words) {
        if (row.word == word) {
            return row.value;
        }
        known.append(known.empty() ? "" : ", ").append(row.word);
    }
    throw usageError_t("no such " + std::string(what) + ": " + std::string(word) + " (expected " +
                       known + ")");
}

std::vector<std::string> tablesOfObject(PyObject* names, dictionaryHolder_t& dictionary) {
    std::vector<std::string> tables;
    for (const std::string& name : textsOfObject(names)) {
        tables.push_back(columnReader_t::nameOf(name, dictionary));
        if (tables.back().empty()) {
            throw usageError_t("no such type: " + name);
        }
    }
    return tables;
}

// No name at all would mean every type or column, where the caller computed that there is none.
void checkCount(const std::vector<std::string>& names, const char* argument) {
    if (names.empty()) {
        throw usageError_t(std::string(argument) + " is empty; leave it out to get all of them");
    }
}

// A column that no table has is a slip, and a name stands for one column only.
void checkColumns(const columnReaderOptions_t& options) {
    dictionaryHolder_t& dictionary = *options.read.dictionary;
    columnOptions_t all = options.columns;
    all.columns.clear();
    std::vector<std::string> known;
    for (const std::string& name :
         options.tables.empty() ? columnReader_t::names(dictionary) : options.tables) {
        for (const columnType_t& type :
             columnTypes(columnReader_t::tableOf(name, dictionary), all)) {
            known.push_back(type.name);
        }
    }
    const std::vector<std::string>& wanted = options.columns.columns;
    for (const std::string& name : wanted) {
        if (std::find(known.begin(), known.end(), name) == known.end()) {
            throw usageError_t("no such column: " + name);
        }
        if (std::count(wanted.begin(), wanted.end(), name) > 1) {
            throw usageError_t("column named twice: " + name);
        }
    }
}

} // namespace

columnReaderOptions_t decoderOptions(PyObject* arguments, PyObject* keywords) {
    static const char* names[] = {"types",  "columns",          "radians",    "raw",
                                  "strict", "require_checksum", "kind",       "date",
                                  "begin",  "not_before",       "date_order", "sentences",
                                  nullptr};
    PyObject* types = nullptr;
    PyObject* columns = nullptr;
    int radians = 0;
    int raw = 0;
    int strict = 0;
    int requireChecksum = 0;
    const char* kind = nullptr;
    const char* date = nullptr;
    PyObject* begin = nullptr;
    const char* notBefore = nullptr;
    const char* dateOrder = nullptr;
    PyObject* sentences = nullptr;
    if (!PyArg_ParseTupleAndKeywords(arguments, keywords, "|$OOppppzzOzzO:Decoder",
                                     const_cast<char**>(names), &types, &columns, &radians, &raw,
                                     &strict, &requireChecksum, &kind, &date, &begin, &notBefore,
                                     &dateOrder, &sentences)) {
        throw raised_t();
    }
    const auto isGiven = [](PyObject* object) { return object != nullptr && object != Py_None; };
    columnReaderOptions_t options;
    options.columns.radians = radians != 0;
    options.columns.raw = raw != 0;
    options.read.split.strict = strict != 0;
    options.read.split.requireChecksum = requireChecksum != 0;
    if (kind != nullptr) {
        options.read.split.only = valueOfWord(kind, kinds, "kind");
    }
    if (date != nullptr) {
        options.read.dating.date = dateOfText(date);
    }
    if (isGiven(begin)) {
        options.read.dating.begin = PyFloat_AsDouble(begin);
        if (PyErr_Occurred() != nullptr) {
            throw raised_t();
        }
    }
    if (notBefore != nullptr) {
        options.read.dating.notBefore = dateOfText(notBefore);
    }
    if (dateOrder != nullptr) {
        options.read.dateOrder = valueOfWord(dateOrder, dateOrders, "order");
    }
    if (isGiven(sentences)) { // name and text of one file after another
        const std::vector<std::string> files = textsOfObject(sentences);
        for (std::size_t i = 0; i + 1 < files.size(); i += 2) {
            options.read.dictionary->add(files[i + 1], files[i]);
        }
    }
    if (isGiven(types)) {
        options.tables = tablesOfObject(types, *options.read.dictionary);
        checkCount(options.tables, "types");
    }
    if (isGiven(columns)) {
        options.columns.columns = textsOfObject(columns);
        checkCount(options.columns.columns, "columns");
        checkColumns(options);
    }
    return options;
}
