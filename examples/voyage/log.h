// The log that the instruments write to: sentences with their checksums, plain lines, and the
// damage that lines and loggers do to them on the way.

#pragma once

#include "vessel.h"

#include <cstdint>
#include <cstdio>
#include <initializer_list>
#include <string>

namespace voyage {

/// One field: a text, or a number that counts units of 10^-decimals and has at least `digits`
/// digits before the point.
struct field_t {
    field_t(const char* words = "") : text(words) {}
    field_t(number_t units, int places, int whole)
        : value(units), decimals(places), digits(whole) {}

    const char* text = nullptr;
    number_t value = 0;
    int decimals = 0;
    int digits = 0;
};

inline field_t number(number_t value, int decimals = 0, int digits = 1) {
    return {value, decimals, digits};
}
inline field_t fieldIf(bool present, const field_t& field) { return present ? field : field_t(); }
/// hhmmss with hundredths
field_t time(number_t clock, number_t hundredths = 0);
/// Degrees and minutes of a latitude (2 digits of degrees) or a longitude (3)
field_t minutes(number_t value, int degreeDigits);

/// The body of a sentence; the address comes with its start character.
class sentence_t {
public:
    sentence_t(const char* address, std::initializer_list<field_t> fields) : m_body(address) {
        add(fields);
    }
    void add(std::initializer_list<field_t> fields);
    const std::string& body() const { return m_body; }

private:
    std::string m_body;
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
    log_t(std::uint64_t seed, bool faulty);

    void beginEpoch(number_t clock);
    void sentence(const sentence_t& sentence, checksum_t checksum = checksum_t::upperCase);
    /// Any other record; the log adds the line end.
    void line(std::string text);
    /// Keeps a sentence back until shortly after midnight.
    void hold(const sentence_t& sentence);

    bool faulty() const { return m_faulty; }
    std::uint64_t bytes() const { return m_written + m_buffer.size(); }
    std::size_t buffered() const { return m_buffer.size(); }
    /// Writes what is buffered; false when that fails.
    bool flush(std::FILE* file);
    /// Takes the line end of the last line away.
    void cutLastEnd();

private:
    void damage(std::string& text);
    std::string stamp();

    std::string m_buffer;
    std::uint64_t m_written = 0;
    bool m_faulty;
    trouble_t m_trouble;
    std::size_t m_forced = 0;   // rows of the fault table that have had their first turn
    number_t m_quietLines = 12; // lines that stay whole before the next fault
    number_t m_clock = 0;
    number_t m_lineOfEpoch = 0;
    std::string m_held;
};

} // namespace voyage
