// Reads back what `kalo decode` wrote, and makes sentences for it to read.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

using json_t = nlohmann::ordered_json;

/// The checksum of a sentence without its "*hh", in two digits.
std::string checksumOf(std::string_view body);

/// `text` with each "<body>" replaced by the body and its checksum; "<body~>" gets a wrong one.
std::string withChecksums(std::string_view text);

/// The input's bytes that a string of the output stands for.
std::string unescape(const std::string& text);

/// The output's records. Each is checked on its own: UTF-8, keys in their order, a `type`, `raw`
/// with every `error`, and `raw` equal to the input's bytes at `offset`.
std::vector<json_t> readRecords(const std::string& output, std::string_view input);

/// Expects that the records, written with --raw, cover each byte of the input once, but for line
/// ends and blank lines.
void expectTiling(const std::vector<json_t>& records, std::string_view input);
