#include "kalo/nmea/nmeaFormat.h"

#include <cstring>
#include <string>
#include <vector>

#include "kalo/util/stringUtil.h"

namespace kalo {

namespace {

struct typeName_t {
    const char* text;
    nmeaMsgType_t type;
};

// Compared with the whole address field, before the suffixes.
constexpr typeName_t wholeNames[] = {
    {"$PZWBGST", msgTypePzwbGst}, {"$PZWBMDE", msgTypePzwbMde}, {"$PZWBGGA", msgTypePzwbGga},
    {"$PSIMLBP", msgTypePsimLbp}, {"$PSIMSSB", msgTypePsimSsb}, {"$PTPSR", msgTypePtpsr},
};

// Compared with the end of an address field that starts with "$".
constexpr typeName_t suffixes[] = {
    {"ALM", msgTypeAlm}, {"DBT", msgTypeDbt}, {"DPT", msgTypeDpt}, {"DTM", msgTypeDtm},
    {"GGA", msgTypeGga}, {"GLL", msgTypeGll}, {"GSA", msgTypeGsa}, {"GST", msgTypeGst},
    {"GSV", msgTypeGsv}, {"MWD", msgTypeMwd}, {"MWV", msgTypeMwv}, {"RMC", msgTypeRmc},
    {"VTG", msgTypeVtg}, {"ZDA", msgTypeZda}, {"HDT", msgTypeHdt}, {"GBS", msgTypeGbs},
    {"ROT", msgTypeRot}, {"THS", msgTypeThs},
};

// Compared with the end of an address field that starts with "!".
constexpr typeName_t encapSuffixes[] = {
    {"VDM", msgTypeVdm},
};

nmeaMsgType_t recognise(const nmeaField_t& address) {
    if (*address.data() == '!') {
        for (const typeName_t& row : encapSuffixes) {
            if (address.endsWith(row.text)) {
                return row.type;
            }
        }
        return msgTypeUnknown;
    }
    for (const typeName_t& row : wholeNames) {
        if (address == row.text) {
            return row.type;
        }
    }
    for (const typeName_t& row : suffixes) {
        if (address.endsWith(row.text)) {
            return row.type;
        }
    }
    return msgTypeUnknown;
}

unsigned exclusiveOr(const char* begin, const char* end) {
    unsigned result = 0;
    for (; begin != end; ++begin) {
        result ^= static_cast<unsigned char>(*begin);
    }
    return result;
}

} // namespace

struct nmeaFormat_t::state_t {
    bool valid = false;
    int formatError = 0;
    nmeaMsgType_t type = msgTypeUnknown;
    std::vector<nmeaField_t> fields;
};

nmeaFormat_t::nmeaFormat_t() : m_state(new state_t) {}

nmeaFormat_t::nmeaFormat_t(const char* data, std::size_t length) : nmeaFormat_t() {
    init(data, length);
}

nmeaFormat_t::nmeaFormat_t(const nmeaFormat_t& other) : nmeaFormat_t() { *this = other; }

nmeaFormat_t& nmeaFormat_t::operator=(const nmeaFormat_t& other) {
    if (this != &other) {
        *m_state = *other.m_state;
    }
    return *this;
}

nmeaFormat_t::~nmeaFormat_t() { delete m_state; }

bool nmeaFormat_t::init(const char* data, std::size_t length) {
    m_state->valid = false;
    m_state->type = msgTypeUnknown;
    m_state->fields.clear();

    if (length == 0 || (data[0] != '$' && data[0] != '!')) {
        m_state->formatError = 0;
        return false;
    }
    if (length < 2 || data[length - 2] != '\r' || data[length - 1] != '\n') {
        m_state->formatError = 1;
        return false;
    }
    std::size_t bodyLength = length - 2;
    if (length >= 5 && data[length - 5] == '*') {
        bodyLength = length - 5;
        unsigned stated = 0;
        if (!kalo::decode(std::string(data + length - 4, 2), stated, 16)) {
            m_state->formatError = 1;
            return false;
        }
        if (exclusiveOr(data + 1, data + bodyLength) != (stated & 0xFF)) {
            m_state->formatError = 2;
            return false;
        }
    }
    splitFields(data, bodyLength);
    m_state->type = recognise(m_state->fields[0]);
    m_state->valid = true;
    return true;
}

bool nmeaFormat_t::isValid() const { return m_state->valid; }

int nmeaFormat_t::formatError() const { return m_state->formatError; }

nmeaMsgType_t nmeaFormat_t::type() const { return m_state->type; }

unsigned nmeaFormat_t::fieldCount() const { return static_cast<unsigned>(m_state->fields.size()); }

const nmeaField_t* nmeaFormat_t::field(unsigned index) const {
    return index < m_state->fields.size() ? &m_state->fields[index] : nullptr;
}

void nmeaFormat_t::splitFields(const char* body, std::size_t length) {
    if (length == 0) {
        return;
    }
    const char* const end = body + length;
    for (const char* start = body;;) {
        const auto left = static_cast<std::size_t>(end - start);
        const char* comma = static_cast<const char*>(std::memchr(start, ',', left));
        if (comma == nullptr) {
            m_state->fields.emplace_back(start, left);
            return;
        }
        m_state->fields.emplace_back(start, static_cast<std::size_t>(comma - start));
        start = comma + 1;
    }
}

} // namespace kalo
