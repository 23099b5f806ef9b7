#include "tools/record/dictionaryRows.h"

#include <algorithm>
#include <cmath>

#include "kalo/time/timeUtil.h"
#include "kalo/util/stringUtil.h"
#include "tools/input/text.h"
#include "tools/record/degrees.h"
#include "tools/record/plausible.h"

namespace {

// The text of a field; empty after the last one.
const std::string& textOf(const kalo::nmeaFormat_t& sentence, unsigned field) {
    static const std::string none;
    const kalo::nmeaField_t* const text = sentence.field(field);
    return text == nullptr ? none : text->toString();
}

// How to report a value that did not decode.
reading_t missing(const kalo::nmeaFormat_t& sentence, const dictionaryRow_t& row, unsigned offset) {
    const bool isSent = std::any_of(row.fields.begin(), row.fields.end(), [&](unsigned field) {
        return !textOf(sentence, field + offset).empty();
    });
    return isSent ? reading_t::lost : reading_t::absent;
}

// Changes the sign of a number if its letter says so.
bool applySign(const std::string& letter, const dictionaryRow_t& row, double& value) {
    if (row.positive == '\0') {
        return true;
    }
    const bool isNegative = letter.size() == 1 && letter[0] == row.negative;
    value = isNegative ? -value : value;
    return isNegative || (letter.size() == 1 && letter[0] == row.positive);
}

bool readNumber(const kalo::nmeaField_t& field, const dictionaryRow_t& row, double& out) {
    if (row.before.empty()) {
        return field.decode(out);
    }
    const std::string& text = field.toString();
    return std::any_of(row.before.begin(), row.before.end(), [&](const std::string& letters) {
        return startsWith(text, letters) && kalo::decode(text.substr(letters.size()), out);
    });
}

// Hours, minutes and seconds in a row.
bool readDuration(const kalo::nmeaField_t& field, double& out) {
    constexpr double secondsPerHour = 3600;
    constexpr double secondsPerMinute = 60;
    sentTime_t sent;
    if (!readTimeOfDay(field, sent)) {
        return false;
    }
    out = sent.time.hour * secondsPerHour + sent.time.minute * secondsPerMinute + sent.time.second;
    return true;
}

// The first usable pair of a number and its unit letter.
bool readQuantity(const kalo::nmeaFormat_t& sentence, const dictionaryRow_t& row, unsigned offset,
                  double& out) {
    for (std::size_t i = 0; i + 1 < row.fields.size(); i += 2) {
        const std::string& letter = textOf(sentence, row.fields[i + 1] + offset);
        const unitLetter_t* unit = row.units;
        while (unit->letter != '\0' && (letter.size() != 1 || letter[0] != unit->letter)) {
            ++unit;
        }
        const kalo::nmeaField_t* const field = sentence.field(row.fields[i] + offset);
        if (unit->letter != '\0' && field != nullptr && field->decode(out)) {
            out = (out + unit->offset) * unit->factor;
            return true;
        }
    }
    return false;
}

bool readCoordinate(const kalo::nmeaFormat_t& sentence, unsigned index, bool isOfLatitude,
                    double& out) {
    const kalo::nmeaField_t* const field = sentence.field(index);
    const kalo::nmeaField_t* const letter = sentence.field(index + 1);
    double sign = 0;
    if (letter == nullptr ||
        !(isOfLatitude ? isLatitude(field->toString()) && field->decodeLatitude(out) &&
                             letter->decodeNS(sign)
                       : isLongitude(field->toString()) && field->decodeLongitude(out) &&
                             letter->decodeEW(sign))) {
        return false;
    }
    out *= sign;
    return true;
}

// As text, in any of the orders, with the day first.
bool readSixDigits(std::string text, bool isMonthFirst, kalo::date_t& out) {
    constexpr std::size_t length = 6;
    if (text.size() != length || !std::all_of(text.begin(), text.end(), isDigit)) {
        return false;
    }
    if (isMonthFirst) {
        std::swap_ranges(text.begin(), text.begin() + 2, text.begin() + 2);
    }
    return kalo::nmeaField_t(text).decodeDDMMYY(out, kalo::defaultTwoDigitYearCutoff);
}

} // namespace

fieldSet_t fieldSetOf(const dictionaryRow_t& row) {
    const bool isToEnd = row.kind == valueKind_t::group || row.kind == valueKind_t::texts ||
                         row.kind == valueKind_t::rest;
    if (isToEnd) {
        return from(std::min(row.fields[0], fieldBits - 1));
    }
    fieldSet_t set = 0;
    for (const unsigned field : row.fields) {
        set |= fields(std::min(field, fieldBits - 1));
    }
    return set;
}

bool readTimeOfDay(const kalo::nmeaField_t& field, sentTime_t& out) {
    if (!isTimeOfDay(field.toString()) || !field.decodeHHMMSS(out.time)) {
        return false;
    }
    setDigits(field.toString(), out);
    return true;
}

std::string restOfText(const kalo::nmeaFormat_t& sentence, unsigned first) {
    std::string text = textOf(sentence, first);
    for (unsigned i = first + 1; i < sentence.fieldCount(); ++i) {
        text.append(1, ',').append(textOf(sentence, i));
    }
    return text;
}

unsigned memberGroup_t::count() const {
    const unsigned first = row.fields[0];
    const unsigned fields = sentence.fieldCount();
    return fields > first ? (fields - first + row.every - 1) / row.every : 0;
}

reading_t readDictionary(const kalo::nmeaFormat_t& sentence, const dictionaryRow_t& row,
                         unsigned offset, std::string_view& out) {
    out = textOf(sentence, row.fields[0] + offset);
    return out.empty() ? reading_t::absent : reading_t::present;
}

reading_t readDictionary(const kalo::nmeaFormat_t& sentence, const dictionaryRow_t& row,
                         unsigned offset, char& out) {
    const std::string& text = textOf(sentence, row.fields[0] + offset);
    if (text.size() != 1) {
        return missing(sentence, row, offset);
    }
    out = text[0];
    return reading_t::present;
}

reading_t readDictionary(const kalo::nmeaFormat_t& sentence, const dictionaryRow_t& row,
                         unsigned offset, std::int64_t& out) {
    const kalo::nmeaField_t* const field = sentence.field(row.fields[0] + offset);
    long long value = 0;
    if (field == nullptr || !field->decode(value, 10)) {
        return missing(sentence, row, offset);
    }
    out = value;
    return reading_t::present;
}

reading_t readDictionary(const kalo::nmeaFormat_t& sentence, const dictionaryRow_t& row,
                         unsigned offset, double& out) {
    const unsigned index = row.fields[0] + offset;
    const kalo::nmeaField_t* const field = sentence.field(index);
    bool isRead = false;
    if (field == nullptr) {
        return reading_t::absent;
    }
    switch (row.kind) {
    case valueKind_t::latitude: isRead = readCoordinate(sentence, index, true, out); break;
    case valueKind_t::longitude: isRead = readCoordinate(sentence, index, false, out); break;
    case valueKind_t::duration: isRead = readDuration(*field, out); break;
    case valueKind_t::quantity: isRead = readQuantity(sentence, row, offset, out); break;
    default:
        isRead = readNumber(*field, row, out) &&
                 applySign(textOf(sentence, row.fields.back() + offset), row, out);
        out *= row.factor;
        out = row.isAngle() ? radiansOf(out) : out;
        break;
    }
    return isRead && std::isfinite(out) ? reading_t::present : missing(sentence, row, offset);
}

reading_t readDictionary(const kalo::nmeaFormat_t& sentence, const dictionaryRow_t& row,
                         unsigned offset, sentTime_t& out) {
    const kalo::nmeaField_t* const field = sentence.field(row.fields[0] + offset);
    return field != nullptr && readTimeOfDay(*field, out) ? reading_t::present
                                                          : missing(sentence, row, offset);
}

reading_t readDictionary(const kalo::nmeaFormat_t& sentence, const dictionaryRow_t& row,
                         unsigned offset, kalo::date_t& out) {
    constexpr std::size_t parts = 3;
    bool isRead = false;
    if (row.fields.size() == parts) {
        const std::string& year = textOf(sentence, row.fields[2] + offset);
        isRead = kalo::decode(textOf(sentence, row.fields[0] + offset), out.day, 10) &&
                 kalo::decode(textOf(sentence, row.fields[1] + offset), out.month, 10) &&
                 kalo::decode(year, out.year, 10);
        if (isRead && year.size() == 2) {
            out.year = kalo::twoDigitYearToAD(out.year, kalo::defaultTwoDigitYearCutoff);
        }
    } else {
        isRead = readSixDigits(textOf(sentence, row.fields[0] + offset), row.isMonthFirst, out);
    }
    return isRead ? reading_t::present : missing(sentence, row, offset);
}

void readDictionaryClue(const kalo::nmeaFormat_t& sentence, const dictionarySentence_t& entry,
                        clue_t& clue) {
    if (entry.time != nullptr) {
        clue.hasTime = readDictionary(sentence, *entry.time, 0, clue.time) == reading_t::present;
    }
    if (entry.date != nullptr) {
        clue.hasDate = readDictionary(sentence, *entry.date, 0, clue.date) == reading_t::present;
    }
}
