// Reads all values of a record, be it decoded by the library or described in the dictionary.
#pragma once

#include "tools/record/dictionaryRows.h"
#include "tools/record/registry.h"

/// Reads the values of a record into a sink, in their order. Returns whether something that was
/// sent is in none of them. A sink is copied, so that what it refers to stays in registers.
template <typename Sink>
bool readRecord(const record_t& record, scratch_t& scratch, const Sink& sink) {
    bool isLost = record.hasMore;
    visitRecord(record, scratch, [&](auto type, const auto& source) {
        Sink own = sink;
        isLost = readValues<decltype(type)>(source, own) || isLost;
    });
    if (record.entry != nullptr) {
        const auto& sentence = *std::get<const kalo::nmeaFormat_t*>(record.content);
        Sink own = sink;
        isLost = readValues(*record.entry, sentence, record.clue, own) || isLost;
    }
    return isLost;
}
