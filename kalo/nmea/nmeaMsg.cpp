#include "kalo/nmea/nmeaMsg.h"

#include <array>
#include <limits>

#include "kalo/nmea/dbtMsg.h"
#include "kalo/nmea/dptMsg.h"
#include "kalo/nmea/dtmMsg.h"
#include "kalo/nmea/gbsMsg.h"
#include "kalo/nmea/ggaMsg.h"
#include "kalo/nmea/gllMsg.h"
#include "kalo/nmea/gsaMsg.h"
#include "kalo/nmea/gstMsg.h"
#include "kalo/nmea/gsvMsg.h"
#include "kalo/nmea/hdtMsg.h"
#include "kalo/nmea/mwdMsg.h"
#include "kalo/nmea/mwvMsg.h"
#include "kalo/nmea/psimLbpMsg.h"
#include "kalo/nmea/psimSsbMsg.h"
#include "kalo/nmea/ptpsrMsg.h"
#include "kalo/nmea/pzwbGgaMsg.h"
#include "kalo/nmea/pzwbGstMsg.h"
#include "kalo/nmea/pzwbMdeMsg.h"
#include "kalo/nmea/rmcMsg.h"
#include "kalo/nmea/rotMsg.h"
#include "kalo/nmea/thsMsg.h"
#include "kalo/nmea/vtgMsg.h"
#include "kalo/nmea/zdaMsg.h"

namespace kalo {

namespace {

struct viewClass_t {
    nmeaMsgType_t type;
    nmeaMsg_t* (*create)(const nmeaFormat_t& format);
};

template <typename View>
nmeaMsg_t* createView(const nmeaFormat_t& format) {
    return new View(format);
}

// The one place that ties types to view classes.
constexpr viewClass_t viewClasses[] = {
    {msgTypeDbt, createView<dbtMsg_t>},         {msgTypeDpt, createView<dptMsg_t>},
    {msgTypeDtm, createView<dtmMsg_t>},         {msgTypeGbs, createView<gbsMsg_t>},
    {msgTypeGga, createView<ggaMsg_t>},         {msgTypeGll, createView<gllMsg_t>},
    {msgTypeGsa, createView<gsaMsg_t>},         {msgTypeGst, createView<gstMsg_t>},
    {msgTypeGsv, createView<gsvMsg_t>},         {msgTypeHdt, createView<hdtMsg_t>},
    {msgTypeMwd, createView<mwdMsg_t>},         {msgTypeMwv, createView<mwvMsg_t>},
    {msgTypeRmc, createView<rmcMsg_t>},         {msgTypeRot, createView<rotMsg_t>},
    {msgTypeThs, createView<thsMsg_t>},         {msgTypeVtg, createView<vtgMsg_t>},
    {msgTypeZda, createView<zdaMsg_t>},         {msgTypePzwbGga, createView<pzwbGgaMsg_t>},
    {msgTypePzwbGst, createView<pzwbGstMsg_t>}, {msgTypePzwbMde, createView<pzwbMdeMsg_t>},
    {msgTypePsimLbp, createView<psimLbpMsg_t>}, {msgTypePsimSsb, createView<psimSsbMsg_t>},
    {msgTypePtpsr, createView<ptpsrMsg_t>},
};

// The same by the value of the type.
constexpr auto creators = [] {
    std::array<nmeaMsg_t* (*)(const nmeaFormat_t&), msgTypePtpsr + 1> table{};
    for (const viewClass_t& row : viewClasses) {
        table[static_cast<std::size_t>(row.type)] = row.create;
    }
    return table;
}();

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
    if (!format.isValid()) {
        return nullptr;
    }
    const auto type = static_cast<std::size_t>(format.type());
    return type < creators.size() && creators[type] != nullptr ? creators[type](format) : nullptr;
}

} // namespace kalo
