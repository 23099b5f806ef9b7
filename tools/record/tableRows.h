// What the lines of an NTRIP sourcetable hold.
#pragma once

#include <string>

#include "kalo/ntrip/ntripStreamDecoder.h"
#include "tools/record/valueRow.h"

template <unsigned index>
bool tableText(const kalo::ntripStreamDecoder_t& record, std::string_view& out) {
    const std::string* text = record.fieldAt(index);
    out = text == nullptr ? std::string_view() : *text;
    return text != nullptr;
}

/// The last field of the record type, with everything up to the end of the line.
template <unsigned index>
reading_t tableRest(const recordView_t<kalo::ntripStreamDecoder_t>& record, std::string_view& out) {
    out = record.text;
    for (unsigned i = 0; i < index && !out.empty(); ++i) {
        out.remove_prefix(std::min(out.find(';'), out.size() - 1) + 1);
    }
    return out.empty() ? reading_t::absent : reading_t::present;
}

template <unsigned index, typename Number>
bool tableNumber(const kalo::ntripStreamDecoder_t& record, Number& out) {
    return record.decodeField(index, out);
}

template <unsigned index, bool (kalo::ntripRecordDecoder_t::*decoder)(unsigned, bool&) const>
bool tableFlag(const kalo::ntripStreamDecoder_t& record, bool& out) {
    const kalo::ntripRecordDecoder_t& decoded = record;
    return (decoded.*decoder)(index, out);
}

/// An enumeration as the word that the library prints for it.
const std::string& tableWord(kalo::ntripCarrierType_t value);
const std::string& tableWord(kalo::ntripSolutionType_t value);
const std::string& tableWord(kalo::ntripAuthType_t value);

template <auto accessor>
bool tableWord(const kalo::ntripStreamDecoder_t& record, std::string_view& out) {
    decltype(outputOf(accessor)) value{};
    if (!(record.*accessor)(value)) {
        return false;
    }
    out = tableWord(value);
    return true;
}

/// A network has its authentication in another field than a stream.
bool networkAuth(const kalo::ntripStreamDecoder_t& record, std::string_view& out);

inline bool wholeText(const recordView_t<kalo::ntripStreamDecoder_t>& record,
                      std::string_view& out) {
    out = record.text;
    return true;
}

struct streamRecord_t {
    using view_t = kalo::ntripStreamDecoder_t;
    static constexpr std::string_view name = "STR";
    static constexpr std::string_view meaning = "stream of a sourcetable";
    static constexpr std::tuple rows{
        row_t<tableText<1>>{"mountpoint", noUnit, fields(1),
                            "name under which the caster offers the stream"},
        row_t<tableText<2>>{"identifier", noUnit, fields(2),
                            "where the stream comes from, usually a place"},
        row_t<tableText<3>>{"format", noUnit, fields(3), "data format"},
        row_t<tableText<4>>{"formatDetails", noUnit, fields(4),
                            "such as message types, with their intervals in seconds"},
        row_t<tableWord<&view_t::decodeCarrierType>>{"carrierType", noUnit, fields(5),
                                                     "None, L1 or L1L2"},
        row_t<tableText<6>>{"navSystem", noUnit, fields(6), "satellite systems"},
        row_t<tableText<7>>{"network", noUnit, fields(7), "name of the network of the stream"},
        row_t<tableText<8>>{"country", noUnit, fields(8), "three letters"},
        row_t<tableNumber<9, float>>{"latitude", degreesAsSent, fields(9), "north positive"},
        row_t<tableNumber<10, float>>{"longitude", degreesAsSent, fields(10), "east positive"},
        row_t<tableFlag<11, &view_t::decodeOneZero>>{"nmea", noUnit, fields(11),
                                                     "whether users must send their position"},
        row_t<tableWord<&view_t::decodeSolutionType>>{
            "solutionType", noUnit, fields(12), "Single or Network: one base station or several"},
        row_t<tableText<13>>{"generator", noUnit, fields(13),
                             "hardware or software that makes the stream"},
        row_t<tableText<14>>{"compression", noUnit, fields(14), "compression or encryption"},
        row_t<tableWord<&view_t::decodeAuthType>>{"authType", noUnit, fields(15),
                                                  "None, Basic or Digest"},
        row_t<tableFlag<16, &view_t::decodeYN>>{"fee", noUnit, fields(16),
                                                "whether it costs a fee"},
        row_t<tableNumber<17, unsigned>>{"bitrate", bitPerSecond, fields(17), ""},
        row_t<tableRest<18>>{"misc", noUnit, from(18), "the rest of the record"}};
};

struct casterRecord_t {
    using view_t = kalo::ntripStreamDecoder_t;
    static constexpr std::string_view name = "CAS";
    static constexpr std::string_view meaning = "caster of a sourcetable";
    static constexpr std::tuple rows{
        row_t<tableText<1>>{"host", noUnit, fields(1), "address of the caster"},
        row_t<tableNumber<2, unsigned>>{"port", noUnit, fields(2), ""},
        row_t<tableText<3>>{"identifier", noUnit, fields(3), "name of the caster"},
        row_t<tableText<4>>{"operator", noUnit, fields(4), "who runs the caster"},
        row_t<tableFlag<5, &view_t::decodeOneZero>>{"nmea", noUnit, fields(5),
                                                    "whether the caster accepts a position"},
        row_t<tableText<6>>{"country", noUnit, fields(6), "three letters"},
        row_t<tableNumber<7, float>>{"latitude", degreesAsSent, fields(7), "north positive"},
        row_t<tableNumber<8, float>>{"longitude", degreesAsSent, fields(8), "east positive"},
        row_t<tableText<9>>{"fallbackHost", noUnit, fields(9),
                            "address of the caster to use if this one is down"},
        row_t<tableNumber<10, unsigned>>{"fallbackPort", noUnit, fields(10), "its port"},
        row_t<tableRest<11>>{"misc", noUnit, from(11), "the rest of the record"}};
};

struct networkRecord_t {
    using view_t = kalo::ntripStreamDecoder_t;
    static constexpr std::string_view name = "NET";
    static constexpr std::string_view meaning = "network of a sourcetable";
    static constexpr std::tuple rows{
        row_t<tableText<1>>{"identifier", noUnit, fields(1), "name of the network"},
        row_t<tableText<2>>{"operator", noUnit, fields(2), "who runs the network"},
        row_t<networkAuth>{"authType", noUnit, fields(3), "None, Basic or Digest"},
        row_t<tableFlag<4, &view_t::decodeYN>>{"fee", noUnit, fields(4), "whether it costs a fee"},
        row_t<tableText<5>>{"webNet", noUnit, fields(5), "web address: about the network"},
        row_t<tableText<6>>{"webStr", noUnit, fields(6), "web address: about its streams"},
        row_t<tableText<7>>{"webReg", noUnit, fields(7), "web or mail address for registration"},
        row_t<tableRest<8>>{"misc", noUnit, from(8), "the rest of the record"}};
};

struct tableLineRecord_t {
    using view_t = kalo::ntripStreamDecoder_t;
    static constexpr std::string_view name = "TABLE";
    static constexpr std::string_view meaning = "another line of a sourcetable";
    static constexpr std::tuple rows{row_t<wholeText>{"text", noUnit, 0, "the line"}};
};
