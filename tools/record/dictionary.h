// Sentences without a view in the library, described by data: those of tools/record/sentences.toml,
// and those of users.
#pragma once

#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "kalo/nmea/nmeaFormat.h"
#include "tools/record/quantity.h"

/// How the text of a field becomes a value.
enum class valueKind_t {
    text,
    letter,
    integer,
    number,
    degrees,
    degreesPerSecond,
    latitude,  ///< and N or S in the next field
    longitude, ///< and E or W in the next field
    time,      ///< of day
    duration,  ///< hhmmss
    date,      ///< of six digits, or in three fields
    quantity,  ///< with its unit in another field
    texts,     ///< all fields to the end, a list
    rest,      ///< all fields to the end, one text with its commas
    group      ///< several fields that repeat to the end
};

/// A letter that names a unit: SI is (number + offset) * factor.
struct unitLetter_t {
    char letter;
    double factor;
    double offset = 0;
};

/// One value of a sentence.
struct dictionaryRow_t {
    std::string name;
    std::string key; ///< of a JSON object: ,"NAME":
    quantity_t quantity = quantity_t::none;
    valueKind_t kind = valueKind_t::text;
    std::string meaning;
    std::string source; ///< a note on where the facts come from
    std::string unit;
    std::vector<unsigned>
        fields; ///< the fields that it reads; for a group, those of its first member
    double factor = 1;
    std::vector<std::string>
        before; ///< one of these texts must stand in front of the number; empty: no text
    char positive =
        '\0'; ///< the letter in the last field that keeps the sign; NUL if there is no such field
    char negative = '\0';                ///< the letter that changes the sign
    bool isOwn = true;                   ///< whether a time is the time of the record
    bool isMonthFirst = false;           ///< of a date of six digits
    const unitLetter_t* units = nullptr; ///< of a quantity; the last one is NUL
    unsigned every = 0;                  ///< fields of one member of a group
    std::vector<dictionaryRow_t> members;

    bool isAngle() const {
        return kind == valueKind_t::degrees || kind == valueKind_t::degreesPerSecond ||
               kind == valueKind_t::latitude || kind == valueKind_t::longitude;
    }
};

/// One sentence.
struct dictionarySentence_t {
    std::string name;    ///< the type of its records
    std::string address; ///< the last three letters, or a whole proprietary name
    std::string subtype; ///< the text that a field must hold; empty if there is none
    unsigned subtypeField = 1;
    std::string meaning;
    std::string source;
    std::string toml; ///< the lines that describe it
    std::vector<dictionaryRow_t> rows;
    std::size_t positionRank = 0;
    const dictionaryRow_t* time = nullptr; ///< the row that dates a record
    const dictionaryRow_t* date = nullptr;
    std::size_t index = 0; ///< in the dictionary
};

class dictionary_t {
public:
    /// Adds a sentence, or puts it in the place of the one with its name.
    void add(dictionarySentence_t sentence);

    /// The description of a sentence; null if there is none.
    const dictionarySentence_t* find(const kalo::nmeaFormat_t& sentence) const;
    /// By its name, in letters of any case.
    const dictionarySentence_t* named(std::string_view name) const;

    /// In the order in which they were added.
    const std::deque<dictionarySentence_t>& sentences() const { return m_sentences; }

private:
    std::deque<dictionarySentence_t> m_sentences; // a deque, so that their addresses stay valid
    std::unordered_map<std::string, std::vector<const dictionarySentence_t*>> m_byAddress;
};
