// The log that the instruments write to: records with their checksums and values, plain lines, and
// the damage that lines and loggers do to them on the way.

#pragma once

#include "vessel.h"

#include <cstdint>
#include <cstdio>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

namespace voyage {

/// What a reader of the log has to find under `key`: words, or a number within `resolution`.
struct value_t {
    const char* key = nullptr;
    std::string words; ///< empty if the value is a number
    double number = 0;
    double resolution = 0; ///< 0 if it is an integer
    number_t place = -1;   ///< place in a list, from 0; -1 if there is no list
};

/// One field: its text, and the values that a reader has to find in it. These come from the state
/// of the vessel; the text may show fewer digits.
struct field_t {
    field_t(const char* words = "") : text(words) {}
    /// A text that shows `amount`, off by `accuracy` at most
    field_t(std::string words, number_t amount, double accuracy);

    /// Adds the number as a value; `unit` is the reader's value of 1. A field without a number adds
    /// its text.
    field_t as(const char* key, double unit = 1, number_t place = -1) const;
    /// Adds these words as a value.
    field_t as(const char* key, const std::string& words) const;

    std::string text;
    bool isNumber = false;
    double number = 0;
    double resolution = 0;
    std::vector<value_t> values;
};

/// A number that counts units of 10^-decimals and has at least `digits` digits before the point.
field_t number(number_t value, int decimals = 0, int digits = 1);
inline field_t fieldIf(bool present, const field_t& field) { return present ? field : field_t(); }
/// The last `digits` digits to base 16
std::string hexadecimal(number_t value, std::size_t digits,
                        const char* alphabet = "0123456789ABCDEF");
std::string clockText(number_t clock); ///< hh:mm:ss
std::string dateText(number_t clock);  ///< YYYY-MM-DD
/// `text` with the time of day and the instant as values; `fraction` is the digits of the second.
field_t instant(const std::string& text, number_t clock, const std::string& fraction);
/// hhmmss with hundredths
field_t time(number_t clock, number_t hundredths = 0);
/// Degrees and minutes of a latitude (2 digits of degrees) or a longitude (3)
field_t minutes(number_t value, int degreeDigits);

/// A record without its checksum, and the values in it.
class record_t {
public:
    /// A sentence; the address comes with its start character.
    record_t(const char* address, std::initializer_list<field_t> fields);
    /// Another record: its type, how it starts, and what stands before each field.
    record_t(const char* type, const char* start, const char* separator,
             std::initializer_list<field_t> fields);
    void add(std::initializer_list<field_t> fields);
    /// A value that is in no single field. A key that is there already keeps its value: of a speed
    /// in two units, say, a reader takes the first.
    void add(const value_t& value);
    const std::string& text() const { return m_text; }
    /// Type, talker and values as members of a JSON object; empty if there are no values.
    std::string values() const;

private:
    std::string m_type;
    std::string m_talker;
    std::string m_text;
    const char* m_separator;
    std::vector<value_t> m_values;
};

enum class checksum_t { upperCase, lowerCase, none };

/// Damage to come: chosen by a generator of its own, so that it leaves the values alone.
struct trouble_t {
    random_t random;
    const char* stampEnd = ""; ///< what follows the receive stamps of a stretch of lines
    number_t stampLines = 0;   ///< lines left of that stretch
};

class log_t {
public:
    /// With `keepsValues` it also notes the values of each record that it leaves undamaged.
    log_t(std::uint64_t seed, bool faulty, bool keepsValues);

    void beginEpoch(number_t clock);
    void record(const record_t& record, checksum_t checksum = checksum_t::upperCase);
    /// Any other line, and its values as members of a JSON object; the log adds the line end.
    void line(std::string text, const std::string& values = "");
    /// Keeps a record back until shortly after midnight.
    void hold(const record_t& record);

    bool faulty() const { return m_faulty; }
    std::uint64_t bytes() const { return m_written + m_buffer.size(); }
    /// Writes what is buffered, the values to a file of their own; false when that fails.
    bool flush(std::FILE* file, std::FILE* valueFile);
    /// Takes the line end of the last line away.
    void cutLastEnd();

private:
    bool damage(std::string& text);
    void append(const std::string& text, const std::string& values);
    std::string stamp();

    std::string m_buffer;
    std::string m_values; // one JSON object a line
    bool m_keepsValues;
    std::uint64_t m_written = 0;
    bool m_lineEnded = true;
    bool m_faulty;
    trouble_t m_trouble;
    std::size_t m_forced = 0;   // rows of the fault table that have had their first turn
    number_t m_quietLines = 12; // lines that stay whole before the next fault
    number_t m_clock = 0;
    number_t m_lineOfEpoch = 0;
    std::pair<std::string, std::string> m_held; // a line and its values
};

} // namespace voyage
