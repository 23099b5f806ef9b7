// Descriptions of sentences in TOML; docs/sentences.md has their form.
#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "tools/record/dictionary.h"

/// What is wrong with a description, with its place: "FILE:LINE: REASON".
class dictionaryError_t : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Adds the sentences that `toml` describes, whose file has this name. Throws `dictionaryError_t`.
void addSentences(std::string_view toml, const std::string& name, dictionary_t& dictionary);

/// A dictionary that reads the built-in descriptions when they are first needed, so that a log
/// without such sentences does not wait for it.
class dictionaryHolder_t {
public:
    const dictionary_t& get();
    /// Adds the sentences of a file; they replace others with the same names.
    void add(std::string_view toml, const std::string& name);

private:
    std::optional<dictionary_t> m_dictionary;
};
