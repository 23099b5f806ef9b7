// Sentences for the tests, complete with checksum and line end.
#pragma once

#include <cstdio>
#include <string>

#include "kalo/nmea/nmeaFormat.h"

/// `body`, such as "$GPGGA,1,2", with its checksum, CR and LF.
inline std::string sentence(const std::string& body) {
    unsigned sum = 0;
    for (std::size_t i = 1; i < body.size(); ++i) {
        sum ^= static_cast<unsigned char>(body[i]);
    }
    char tail[6];
    std::snprintf(tail, sizeof tail, "*%02X\r\n", sum);
    return body + tail;
}

inline kalo::nmeaFormat_t framed(const std::string& body) {
    const std::string text = sentence(body);
    return {text.data(), text.size()};
}
