#include "tools/record/sent.h"

#include <string>

namespace {

// Whether `isFilled` is true for a field of the set among the first `count` fields.
template <typename IsFilled>
bool anyFilled(fieldSet_t fields, unsigned count, IsFilled isFilled) {
    for (unsigned i = 0; i < count; ++i) {
        const unsigned bit = i < fieldBits ? i : fieldBits - 1;
        const fieldSet_t left = fields >> bit;
        if (left == 0) {
            return false;
        }
        if ((left & 1) != 0 && isFilled(i)) {
            return true;
        }
    }
    return false;
}

} // namespace

bool isSent(const kalo::nmeaMsg_t& sentence, fieldSet_t fields) {
    return anyFilled(fields, sentence.fieldCount(),
                     [&](unsigned i) { return !sentence.field(i)->isEmpty(); });
}

bool isSent(const kalo::ntripRecordDecoder_t& record, fieldSet_t fields) {
    return anyFilled(fields, record.fieldCount(),
                     [&](unsigned i) { return record.fieldAt(i) != nullptr; });
}

bool isSent(const kalo::atsAsciiMsg_t& record, fieldSet_t fields) {
    std::string text;
    return anyFilled(fields, fieldBits, [&](unsigned i) { return record.decodeField(i, text); });
}
