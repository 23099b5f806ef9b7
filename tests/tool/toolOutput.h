// Reads back what `kalo decode` wrote, and makes sentences for it to read.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

using json_t = nlohmann::ordered_json;

/// A run of `kalo decode`. In inputs and expectations "<body>" is a sentence with its checksum and
/// "<body~>" one with a wrong checksum.
struct row_t {
    std::string options; // --quiet too, unless `closing` is given
    std::string input;
    /// Words key=value, " | " between records. Nothing stands for a key that is not there; `sats`
    /// is the number of satellites.
    std::string records;
    const char* closing = ""; // parts of the closing line, "; " between
};

/// Expects for each row the records, that they tile the input where --raw stands in the options,
/// and the same from single bytes.
void expectRecords(const std::vector<row_t>& rows);

/// Expects that each part, "; " between them, stands in the text.
void expectParts(const std::string& text, const std::string& parts);

/// The checksum of a sentence without its "*hh", in two digits.
std::string checksumOf(std::string_view body);
std::string withChecksums(std::string_view text);

/// The input's bytes that a string of the output stands for.
std::string unescape(const std::string& text);

/// The output's records. Each is checked on its own: UTF-8, keys in their order, a `type`, `raw`
/// with every `error`, and `raw` equal to the input's bytes at `offset`.
std::vector<json_t> readRecords(const std::string& output, std::string_view input);

/// Expects that the records, written with --raw, cover each byte of the input once, but for line
/// ends and blank lines.
void expectTiling(const std::vector<json_t>& records, std::string_view input);

std::string contentOf(const std::string& path);
