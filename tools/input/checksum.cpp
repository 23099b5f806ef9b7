#include "tools/input/checksum.h"

#include "tools/input/text.h"

namespace {

unsigned valueAt(std::string_view text, std::size_t at, unsigned digits) {
    const unsigned first = hexDigit(text[at]);
    return digits == 1 ? first : first * 16 + hexDigit(text[at + 1]);
}

// The "*" of the digits at the very end of `text`; its size without such digits.
std::size_t starOfEnd(std::string_view text) {
    for (const std::size_t digits : {2U, 1U}) {
        if (text.size() > digits + 1) {
            const std::size_t star = text.size() - digits - 1;
            if (text[star] == '*' && hexDigitsAt(text, star + 1) == digits) {
                return star;
            }
        }
    }
    return text.size();
}

} // namespace

unsigned hexDigitsAt(std::string_view text, std::size_t at) {
    unsigned count = 0;
    while (count < 2 && at + count < text.size() && hexDigit(text[at + count]) < 16) {
        ++count;
    }
    return count;
}

checksum_t checksumAtEnd(std::string_view sentence) {
    checksum_t checksum;
    const std::size_t star = starOfEnd(sentence);
    if (star == sentence.size()) {
        const bool hasStar = sentence.find('*') != std::string_view::npos;
        checksum.state = hasStar ? checksum_t::unreadable : checksum_t::none;
        return checksum;
    }
    checksum.end = sentence.size();
    checksum.digits = static_cast<unsigned>(sentence.size() - star - 1);
    checksum.stated = valueAt(sentence, star + 1, checksum.digits);
    checksum.computed = exclusiveOr(sentence.substr(1, star - 1));
    checksum.state =
        checksum.stated == checksum.computed ? checksum_t::matching : checksum_t::different;
    return checksum;
}

checksum_t findChecksum(std::string_view piece) {
    const std::string_view text = withoutBlanksBehind(piece);
    const checksum_t atEnd = checksumAtEnd(text);
    if (atEnd.state == checksum_t::matching || atEnd.state == checksum_t::none) {
        return atEnd;
    }
    unsigned computed = 0;
    for (std::size_t i = 1; i < text.size(); ++i) {
        if (text[i] == '*') {
            const unsigned digits = hexDigitsAt(text, i + 1);
            if (digits > 0 && valueAt(text, i + 1, digits) == computed) {
                return {checksum_t::matching, i + 1 + digits, digits, computed, computed};
            }
        }
        computed ^= static_cast<unsigned char>(text[i]);
    }
    return atEnd;
}
