#include "kalo/nmea/nmeaMsg.h"

#include <limits>
#include <type_traits>

#include "kalo/nmea/sentences.h"

namespace kalo {

namespace {

using creator_t = nmeaMsg_t* (*)(const nmeaFormat_t& format);

template <typename View>
nmeaMsg_t* createView(const nmeaFormat_t& format) {
    if constexpr (std::is_same_v<View, noView_t>) {
        return nullptr;
    } else {
        return new View(format);
    }
}

// By the value of the type, from 1 on.
constexpr auto creators = arrayOfSentences(
    [](auto sentence) -> creator_t { return createView<typename decltype(sentence)::view_t>; });

} // namespace

nmeaMsg_t::nmeaMsg_t(nmeaMsgType_t type, const nmeaFormat_t& format)
    : m_type(type), m_format(&format) {}

nmeaMsg_t::~nmeaMsg_t() = default;

unsigned nmeaMsg_t::capabilities() const { return 0; }

bool nmeaMsg_t::decodeDate(date_t& /*out*/) const { return false; }

bool nmeaMsg_t::decodeTimeOfDay(timeOfDay_t& /*out*/) const { return false; }

nmeaMsgType_t nmeaMsg_t::type() const { return m_type; }

const nmeaFormat_t& nmeaMsg_t::format() const { return *m_format; }

unsigned nmeaMsg_t::fieldCount() const { return m_format->fieldCount(); }

const nmeaField_t* nmeaMsg_t::field(unsigned index) const { return m_format->field(index); }

const nmeaField_t* nmeaMsg_t::addressField() const { return field(0); }

int nmeaMsg_t::findField(const std::string& text, unsigned start) const {
    for (unsigned i = start; i < fieldCount(); ++i) {
        if (*field(i) == text) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

std::vector<std::string> nmeaMsg_t::getFields(unsigned first, unsigned count) const {
    std::vector<std::string> texts;
    for (unsigned i = first; i < fieldCount() && i - first < count; ++i) {
        texts.push_back(field(i)->toString());
    }
    return texts;
}

std::vector<std::string> nmeaMsg_t::getFields(unsigned first) const {
    return getFields(first, std::numeric_limits<unsigned>::max());
}

nmeaMsg_t* nmeaMsg_t::create(const nmeaFormat_t& format) {
    if (!format.isValid() || format.type() == msgTypeUnknown) {
        return nullptr;
    }
    return creators[static_cast<std::size_t>(format.type()) - 1](format);
}

} // namespace kalo
