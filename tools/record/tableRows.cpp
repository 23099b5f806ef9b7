#include "tools/record/tableRows.h"

#include <array>

#include "kalo/util/bufferStream.h"

namespace {

// Each word is printed only once, because streams are slow.
template <typename... Enumerator>
auto wordsOf(Enumerator... value) {
    const auto print = [](auto printed) {
        char word[16];
        kalo::bufferStream_t stream(word, sizeof word);
        stream << printed;
        return std::string(word, stream.written());
    };
    return std::array<std::string, sizeof...(value)>{print(value)...};
}

} // namespace

const std::string& tableWord(kalo::ntripCarrierType_t value) {
    static const auto words = wordsOf(kalo::carrierNone, kalo::carrierL1, kalo::carrierL1L2);
    return words.at(static_cast<std::size_t>(value));
}

const std::string& tableWord(kalo::ntripSolutionType_t value) {
    static const auto words = wordsOf(kalo::solutionSingle, kalo::solutionNetwork);
    return words.at(static_cast<std::size_t>(value));
}

const std::string& tableWord(kalo::ntripAuthType_t value) {
    static const auto words = wordsOf(kalo::authNone, kalo::authBasic, kalo::authDigest);
    return words.at(static_cast<std::size_t>(value));
}

bool networkAuth(const kalo::ntripStreamDecoder_t& record, std::string_view& out) {
    constexpr unsigned index = 3;
    const std::string* text = record.fieldAt(index);
    const std::string_view letter = text == nullptr ? std::string_view() : *text;
    if (letter == "N") {
        out = tableWord(kalo::authNone);
    } else if (letter == "B") {
        out = tableWord(kalo::authBasic);
    } else if (letter == "D") {
        out = tableWord(kalo::authDigest);
    } else {
        return false;
    }
    return true;
}
