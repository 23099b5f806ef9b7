// The list of the sentences that kalo recognises. What depends on all of them is made from it when
// it is compiled: recognition (nmeaFormat.cpp), the factory (nmeaMsg.cpp), the table in
// docs/formats/nmea.md and the benchmark. Not installed.
#pragma once

#include <array>
#include <string_view>
#include <tuple>

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
#include "kalo/nmea/nmeaFormat.h"
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

/// How the name of a sentence is found in its address field.
enum class addressRule_t {
    end,             ///< the address starts with "$" and ends with the name
    encapsulatedEnd, ///< the address starts with "!" and ends with the name
    whole            ///< the address is "$" and the name; goes before `end`
};

/// Stands in the list for the view class of a sentence that has none.
struct noView_t {};

template <typename View>
struct sentence_t {
    using view_t = View;

    nmeaMsgType_t type;
    addressRule_t rule;
    std::string_view name;
    std::string_view meaning; ///< for people
};

/// In the order of the enumerators, from 1 on.
inline constexpr std::tuple sentences{
    sentence_t<noView_t>{msgTypeAlm, addressRule_t::end, "ALM", "almanac of a satellite"},
    sentence_t<dbtMsg_t>{msgTypeDbt, addressRule_t::end, "DBT", "depth below the transducer"},
    sentence_t<dptMsg_t>{msgTypeDpt, addressRule_t::end, "DPT",
                         "depth and offset of the transducer"},
    sentence_t<dtmMsg_t>{msgTypeDtm, addressRule_t::end, "DTM", "datum"},
    sentence_t<gbsMsg_t>{msgTypeGbs, addressRule_t::end, "GBS", "satellite fault detection"},
    sentence_t<ggaMsg_t>{msgTypeGga, addressRule_t::end, "GGA", "fix data"},
    sentence_t<gllMsg_t>{msgTypeGll, addressRule_t::end, "GLL", "position"},
    sentence_t<gsaMsg_t>{msgTypeGsa, addressRule_t::end, "GSA",
                         "satellites used and dilutions of precision"},
    sentence_t<gstMsg_t>{msgTypeGst, addressRule_t::end, "GST",
                         "error statistics of the pseudoranges"},
    sentence_t<gsvMsg_t>{msgTypeGsv, addressRule_t::end, "GSV", "satellites in view"},
    sentence_t<hdtMsg_t>{msgTypeHdt, addressRule_t::end, "HDT", "true heading"},
    sentence_t<mwdMsg_t>{msgTypeMwd, addressRule_t::end, "MWD", "wind direction and speed"},
    sentence_t<mwvMsg_t>{msgTypeMwv, addressRule_t::end, "MWV", "wind speed and angle"},
    sentence_t<rmcMsg_t>{msgTypeRmc, addressRule_t::end, "RMC", "recommended minimum data"},
    sentence_t<rotMsg_t>{msgTypeRot, addressRule_t::end, "ROT", "rate of turn"},
    sentence_t<thsMsg_t>{msgTypeThs, addressRule_t::end, "THS", "true heading and status"},
    sentence_t<noView_t>{msgTypeVdm, addressRule_t::encapsulatedEnd, "VDM",
                         "message of another vessel's transponder"},
    sentence_t<vtgMsg_t>{msgTypeVtg, addressRule_t::end, "VTG", "course and speed over ground"},
    sentence_t<zdaMsg_t>{msgTypeZda, addressRule_t::end, "ZDA", "date and time"},
    sentence_t<pzwbGgaMsg_t>{msgTypePzwbGga, addressRule_t::whole, "PZWBGGA", "fix data"},
    sentence_t<pzwbGstMsg_t>{msgTypePzwbGst, addressRule_t::whole, "PZWBGST",
                             "error statistics with F-test"},
    sentence_t<pzwbMdeMsg_t>{msgTypePzwbMde, addressRule_t::whole, "PZWBMDE",
                             "marginally detectable error"},
    sentence_t<psimLbpMsg_t>{msgTypePsimLbp, addressRule_t::whole, "PSIMLBP",
                             "acoustic position of a vessel or vehicle"},
    sentence_t<psimSsbMsg_t>{msgTypePsimSsb, addressRule_t::whole, "PSIMSSB",
                             "acoustic position of a beacon"},
    sentence_t<ptpsrMsg_t>{msgTypePtpsr, addressRule_t::whole, "PTPSR",
                           "heading and attitude of two antennas"},
};

/// An array of what `make` gives for each sentence.
template <typename Make>
constexpr auto arrayOfSentences(Make make) {
    return std::apply([&](const auto&... sentence) { return std::array{make(sentence)...}; },
                      sentences);
}

constexpr bool isInOrder() {
    int next = 0;
    bool inOrder = true;
    for (const nmeaMsgType_t type : arrayOfSentences([](auto sentence) { return sentence.type; })) {
        inOrder = inOrder && type == ++next;
    }
    return inOrder;
}
static_assert(isInOrder(), "the list has the order of the enumerators");

} // namespace kalo
