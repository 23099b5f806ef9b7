// What a framing object holds, for the sources beside it; not installed.
#pragma once

#include <cstddef>
#include <vector>

#include "kalo/nmea/nmeaFormat.h"

namespace kalo {

struct nmeaFormat_t::state_t {
    bool valid = false;
    int formatError = 0;
    nmeaMsgType_t type = msgTypeUnknown;
    // The first `fieldCount` fields are in use; those after them keep their memory for the next
    // sentence.
    std::vector<nmeaField_t> fields;
    std::size_t fieldCount = 0;

    // One more field, which is not in use yet.
    void addField() {
        constexpr std::size_t usualCount = 24; // what nearly all sentences keep to
        if (fields.empty()) {
            fields.reserve(usualCount);
        }
        fields.emplace_back();
    }
};

} // namespace kalo
