// Numbers from a range of bytes, by the rules of `kalo::decode`, for texts that are not strings of
// their own. Not installed.
#pragma once

#include <cstddef>

namespace kalo {

/// As `kalo::decode` of the same bytes, without a copy of them where the text is well formed.
bool decodeText(const char* data, std::size_t length, unsigned short& out, int base);
bool decodeText(const char* data, std::size_t length, short& out, int base);
bool decodeText(const char* data, std::size_t length, int& out, int base);
bool decodeText(const char* data, std::size_t length, unsigned& out, int base);
bool decodeText(const char* data, std::size_t length, long long& out, int base);
bool decodeText(const char* data, std::size_t length, unsigned long long& out, int base);
bool decodeText(const char* data, std::size_t length, float& out);
bool decodeText(const char* data, std::size_t length, double& out);

/// Whether streams read by the rules of the C locale.
bool isClassicLocale();

} // namespace kalo
