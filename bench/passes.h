// What the benchmark measures: passes over the sentences of a recording.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

using sentences_t = std::vector<std::string_view>; ///< each with its line end

/// A pass over lines; returns a number that depends on all it did.
struct pass_t {
    const char* type; ///< of the lines
    const char* name;
    unsigned long (*run)(const sentences_t& sentences);
};

/// The yardstick: every line end and comma by memchr, the exclusive-or byte by byte, nothing else.
unsigned long referencePass(const sentences_t& lines);

/// The fields of sentences that hold a number.
sentences_t numberTexts(const sentences_t& lines);

/// Converts each of such texts.
unsigned long numbersFromText(const sentences_t& texts);

/// The passes over the sentences of all types.
std::vector<pass_t> mixedPasses();

/// Passes over the records of one type.
std::vector<pass_t> typePasses();
