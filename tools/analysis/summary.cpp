#include "tools/analysis/summary.h"

#include <algorithm>

#include "tools/analysis/satelliteSystem.h"
#include "tools/input/text.h"
#include "tools/record/degrees.h"
#include "tools/record/registry.h"

namespace {

// Whether the sentence holds no data: no digit in any field. The checksum is not a field.
bool isEmpty(const record_t& record) {
    if (!std::holds_alternative<const kalo::nmeaFormat_t*>(record.content)) {
        return false;
    }
    const std::size_t comma = std::min(record.text.find(','), record.text.size());
    for (const char c : record.text.substr(comma)) {
        if (isDigit(c) || c == '*') {
            return c == '*';
        }
    }
    return true;
}

// The texts of a stream in a sourcetable.
class streamSink_t {
public:
    template <typename Column, typename T>
    void value(Column /*column*/, const T& value) {
        constexpr std::string_view name = Column::row.name;
        if constexpr (name == "mountpoint") {
            mountpoint = value;
        } else if constexpr (name == "format") {
            format = value;
        } else if constexpr (name == "network") {
            network = value;
        } else if constexpr (name == "authType") {
            authType = value;
        } else if constexpr (name == "latitude") {
            latitude = value;
        } else if constexpr (name == "longitude") {
            longitude = value;
        }
    }
    template <typename Column>
    void none(Column /*column*/) {}

    std::string mountpoint;
    std::string format;
    std::string network;
    std::string authType;
    std::optional<double> latitude; // degrees
    std::optional<double> longitude;
};

template <typename Map>
auto& boundedPlace(Map& map, const typename Map::key_type& key) {
    const bool isFull = map.size() >= summary_t::most && map.find(key) == map.end();
    return map[isFull ? typename Map::key_type() : key];
}

} // namespace

void period_t::add(double moment) {
    first = std::min(moment, first.value_or(moment));
    last = std::max(moment, last.value_or(moment));
}

void summary_t::beginInput(const std::string& name) {
    m_names.beginInput(name);
    ++m_inputs;
}

void summary_t::add(const record_t& record) {
    m_counts.add(record);
    const std::optional<double> moment = momentOf(record);
    if (moment) {
        m_period.add(*moment);
    }
    const std::size_t number = m_names.of(record);
    m_sent.resize(m_names.count());
    senderSummary_t& sender = m_sent[number];
    ++sender.count;
    if (moment) {
        if (sender.latest) {
            sender.longestGap = std::max(sender.longestGap, *moment - *sender.latest);
        }
        sender.latest = moment;
        sender.period.add(*moment);
    }
    if (record.fault == fault_t::none) {
        addMeasurements(record, number);
    }
}

void summary_t::endInput(const recordReader_t& reader) {
    if (!m_options.isPart) {
        m_counts.add(reader);
    }
    m_bytes += reader.bytes();
    addFix(m_epochs.finish());
    m_voyage.interrupt();
    for (senderSummary_t& sender : m_sent) {
        sender.latest.reset(); // so that the time to the next input does not count as a gap
    }
}

void summary_t::addMeasurements(const record_t& record, std::size_t number) {
    senderSummary_t& sender = m_sent[number];
    readMeasurements(record, m_scratch, m_measured);
    const bool isVoid = m_measured.isVoid();
    sender.voidCount += isVoid ? 1 : 0;
    sender.emptyCount += !isVoid && isEmpty(record) ? 1 : 0;
    addFix(m_epochs.add(record, m_measured));
    if (sender.ranges == nullptr || m_names.isOthers(number)) {
        sender.ranges = &m_ranges[std::string(typeNameOf(record))];
    }
    m_measured.forEach([&](quantity_t quantity, double value) {
        const bool counts = !isVoid || quantity == quantity_t::quality;
        if (counts && rowOf(quantity).title != nullptr) {
            (*sender.ranges)[static_cast<std::size_t>(quantity)].add(printedValue(quantity, value));
        }
    });
    for (const satellite_t& satellite : record.clue.satellites) {
        if (satellite.hasSnr) {
            const char* const system = systemName(record.talker, satellite.prn);
            if (sender.signals == nullptr || system != sender.system || m_names.isOthers(number)) {
                sender.system = system;
                sender.signals = &boundedPlace(m_signals, systemOf(record.talker, satellite.prn));
            }
            sender.signals->add(satellite.snr);
        }
    }
    if (record.type == typeOf<streamRecord_t>) {
        addStream(record);
    }
}

void summary_t::addStream(const record_t& record) {
    streamSink_t sink;
    visitRecord(record, m_scratch, [&](auto kind, const auto& source) {
        if constexpr (std::is_same_v<decltype(kind), streamRecord_t>) {
            readValues<streamRecord_t>(source, sink);
        }
    });
    ++boundedPlace(m_formats, sink.format);
    ++boundedPlace(m_networks, sink.network);
    ++boundedPlace(m_authTypes, sink.authType);
    if (m_options.near && sink.latitude && sink.longitude) {
        const place_t place{*sink.latitude * radiansPerDegree, *sink.longitude * radiansPerDegree};
        const nearStream_t stream{sink.mountpoint, distanceBetween(*m_options.near, place)};
        const auto isNearer = [](const nearStream_t& a, const nearStream_t& b) {
            return a.distance < b.distance;
        };
        m_near.insert(std::upper_bound(m_near.begin(), m_near.end(), stream, isNearer), stream);
        m_near.resize(std::min(m_near.size(), mostNear));
    }
}

void summary_t::addFix(const fix_t* fix) {
    if (fix != nullptr) {
        m_voyage.add(*fix);
    }
}
