// Reads the values of a sentence that the dictionary describes.
#pragma once

#include <cstdint>

#include "tools/record/clue.h"
#include "tools/record/dictionary.h"
#include "tools/record/valueRow.h"

/// The fields that a value reads; for a group, all fields to the end.
fieldSet_t fieldSetOf(const dictionaryRow_t& row);

/// A row of the dictionary, handed to a sink as a column of the record table would be.
struct dictionaryColumn_t {
    const dictionaryRow_t& row;
};

/// All fields from one on.
struct fieldTexts_t {
    const kalo::nmeaFormat_t& sentence;
    unsigned first;
};

/// The members of a group, which repeat to the end of the sentence.
struct memberGroup_t {
    const kalo::nmeaFormat_t& sentence;
    const dictionaryRow_t& row;

    unsigned count() const;
    /// Reads the values of one member into a sink. Returns whether something is lost.
    template <typename Sink>
    bool read(unsigned member, Sink& sink) const;
};

/// The time of day in a field; false if its text cannot be one.
bool readTimeOfDay(const kalo::nmeaField_t& field, sentTime_t& out);

/// All fields from `first` on as one text, with the commas between.
std::string restOfText(const kalo::nmeaFormat_t& sentence, unsigned first);

// Each reads the value of a row. `offset` is added to the numbers of its fields.
reading_t readDictionary(const kalo::nmeaFormat_t& sentence, const dictionaryRow_t& row,
                         unsigned offset, std::string_view& out);
reading_t readDictionary(const kalo::nmeaFormat_t& sentence, const dictionaryRow_t& row,
                         unsigned offset, char& out);
reading_t readDictionary(const kalo::nmeaFormat_t& sentence, const dictionaryRow_t& row,
                         unsigned offset, std::int64_t& out);
reading_t readDictionary(const kalo::nmeaFormat_t& sentence, const dictionaryRow_t& row,
                         unsigned offset, double& out);
reading_t readDictionary(const kalo::nmeaFormat_t& sentence, const dictionaryRow_t& row,
                         unsigned offset, sentTime_t& out);
reading_t readDictionary(const kalo::nmeaFormat_t& sentence, const dictionaryRow_t& row,
                         unsigned offset, kalo::date_t& out);

/// The sentence's own time and date.
void readDictionaryClue(const kalo::nmeaFormat_t& sentence, const dictionarySentence_t& entry,
                        clue_t& clue);

template <typename T, typename Sink>
bool readDictionaryValue(const kalo::nmeaFormat_t& sentence, const dictionaryRow_t& row,
                         unsigned offset, Sink& sink) {
    T value{};
    const reading_t reading = readDictionary(sentence, row, offset, value);
    if (reading == reading_t::present) {
        sink.value(dictionaryColumn_t{row}, value);
    } else {
        sink.none(dictionaryColumn_t{row});
    }
    return reading == reading_t::lost;
}

template <typename Sink>
bool readDictionaryRow(const kalo::nmeaFormat_t& sentence, const dictionaryRow_t& row,
                       unsigned offset, Sink& sink) {
    switch (row.kind) {
    case valueKind_t::text:
        return readDictionaryValue<std::string_view>(sentence, row, offset, sink);
    case valueKind_t::letter: return readDictionaryValue<char>(sentence, row, offset, sink);
    case valueKind_t::integer:
        return readDictionaryValue<std::int64_t>(sentence, row, offset, sink);
    case valueKind_t::number:
    case valueKind_t::degrees:
    case valueKind_t::degreesPerSecond:
    case valueKind_t::latitude:
    case valueKind_t::longitude:
    case valueKind_t::duration:
    case valueKind_t::quantity: return readDictionaryValue<double>(sentence, row, offset, sink);
    case valueKind_t::time: return readDictionaryValue<sentTime_t>(sentence, row, offset, sink);
    case valueKind_t::date: return readDictionaryValue<kalo::date_t>(sentence, row, offset, sink);
    case valueKind_t::texts: {
        const unsigned first = row.fields[0] + offset;
        first < sentence.fieldCount()
            ? sink.value(dictionaryColumn_t{row}, fieldTexts_t{sentence, first})
            : sink.none(dictionaryColumn_t{row});
        return false;
    }
    case valueKind_t::rest: {
        const std::string text = restOfText(sentence, row.fields[0] + offset);
        text.empty() ? sink.none(dictionaryColumn_t{row})
                     : sink.value(dictionaryColumn_t{row}, std::string_view(text));
        return false;
    }
    case valueKind_t::group: {
        const memberGroup_t group{sentence, row};
        if (group.count() == 0) {
            sink.none(dictionaryColumn_t{row});
            return false;
        }
        return sink.value(dictionaryColumn_t{row}, group);
    }
    }
    return false;
}

template <typename Sink>
bool memberGroup_t::read(unsigned member, Sink& sink) const {
    bool lost = false;
    for (const dictionaryRow_t& inner : row.members) {
        const unsigned offset = row.fields[0] - 1 + member * row.every;
        lost = readDictionaryRow(sentence, inner, offset, sink) || lost;
    }
    return lost;
}

/// Reads all values into a sink, in their order. Returns whether something that was sent is lost.
/// `clue` is what `readDictionaryClue` gave.
template <typename Sink>
bool readValues(const dictionarySentence_t& entry, const kalo::nmeaFormat_t& sentence,
                const clue_t& clue, Sink& sink) {
    bool lost = false;
    for (const dictionaryRow_t& row : entry.rows) {
        if (&row == entry.time && clue.hasTime) { // decoded once
            sink.value(dictionaryColumn_t{row}, clue.time);
        } else {
            lost = readDictionaryRow(sentence, row, 0, sink) || lost;
        }
    }
    return lost;
}
