#include "tools/record/tableRows.h"

#include "kalo/util/bufferStream.h"

namespace {

template <typename Enumeration>
std::string wordOf(Enumeration value) {
    char word[16];
    kalo::bufferStream_t stream(word, sizeof word);
    stream << value;
    return {word, stream.written()};
}

} // namespace

std::string tableWord(kalo::ntripCarrierType_t value) { return wordOf(value); }

std::string tableWord(kalo::ntripSolutionType_t value) { return wordOf(value); }

std::string tableWord(kalo::ntripAuthType_t value) { return wordOf(value); }

bool networkAuth(const kalo::ntripStreamDecoder_t& record, std::string& out) {
    constexpr unsigned index = 3;
    const std::string* text = record.fieldAt(index);
    const std::string letter = text == nullptr ? "" : *text;
    if (letter == "N") {
        out = wordOf(kalo::authNone);
    } else if (letter == "B") {
        out = wordOf(kalo::authBasic);
    } else if (letter == "D") {
        out = wordOf(kalo::authDigest);
    } else {
        return false;
    }
    return true;
}
