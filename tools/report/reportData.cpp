#include "tools/report/reportData.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <type_traits>

#include "tools/record/degrees.h"
#include "tools/record/registry.h"

namespace {

constexpr std::size_t longestText = 200;

class streamSink_t {
public:
    explicit streamSink_t(stream_t& out) : m_out(out) {}

    template <typename Column, typename T>
    void value(Column /*column*/, const T& value) {
        constexpr std::string_view name = Column::row.name;
        if constexpr (name == "latitude") {
            m_out.latitude = value;
        } else if constexpr (name == "longitude") {
            m_out.longitude = value;
        } else if constexpr (name == "bitrate") {
            m_out.bitrate = value;
        } else if constexpr (std::is_convertible_v<T, std::string_view>) {
            for (std::size_t i = 0; i < streamColumns.size(); ++i) {
                if (name == streamColumns[i]) {
                    m_out.texts[i] = std::string_view(value).substr(0, longestText);
                }
            }
        }
    }
    template <typename Column>
    void none(Column /*column*/) {}

private:
    stream_t& m_out;
};

bool isSameSender(const senderName_t& a, const senderName_t& b) {
    return a.prefix == b.prefix && a.talker == b.talker && a.type == b.type;
}

const intervals_t& timesOf(const series_t& series) { return series.values; }
const presenceTimes_t& timesOf(const presence_t& presence) { return presence.times; }

void append(series_t& to, const series_t& later) { to.values.append(later.values); }
void append(presence_t& to, const presence_t& later) {
    to.times.append(later.times);
    to.numbers.insert(to.numbers.end(), later.numbers.begin(), later.numbers.end());
}

// Positions make the track; letters are no values.
bool isDrawn(quantity_t quantity) {
    return quantity != quantity_t::latitude && quantity != quantity_t::longitude &&
           quantity < quantity_t::validity;
}

windReference_t referenceOf(const measurements_t& measured, quantity_t quantity) {
    const bool isWind = quantity == quantity_t::windSpeed || quantity == quantity_t::windDirection;
    if (!isWind || !measured.has(quantity_t::windReference)) {
        return windReference_t::none;
    }
    return measured[quantity_t::windReference] == 'R' ? windReference_t::relative
                                                      : windReference_t::trueWind;
}

} // namespace

reportData_t::reportData_t(std::size_t maxPoints) : m_maxPoints(maxPoints), m_track(maxPoints) {}

void reportData_t::beginInput(const std::string& name) {
    m_senders.beginInput(name);
    if (++m_inputCount <= mostInputs) {
        m_inputs.push_back({name, 0});
    }
    m_firstSeries = m_series.size();
    m_firstPresence = m_presences.size();
}

void reportData_t::add(const record_t& record) {
    const std::optional<double> moment = momentOf(record);
    const std::size_t sender = m_senders.of(record);
    if (sender >= m_seriesPlaces.size()) {
        places_t places;
        places.fill(unknown);
        m_seriesPlaces.resize(m_senders.count(), places);
        m_presencePlaces.resize(m_senders.count(), unknown);
    }
    if (moment && record.type != typeOf<satellitesRecord_t>) {
        if (m_presencePlaces[sender] == unknown && m_presences.size() < mostPresences) {
            m_presencePlaces[sender] = m_presences.size();
            m_presences.push_back({m_senders[sender], {sender}, {}});
        }
        if (m_presencePlaces[sender] != unknown) {
            m_presences[m_presencePlaces[sender]].times.add(*moment);
        }
    }
    if (record.fault != fault_t::none) {
        return;
    }
    readMeasurements(record, m_scratch, m_measured);
    addFix(m_epochs.add(record, m_measured));
    if (moment) {
        addMeasurements(*moment, sender);
    }
    addSatellites(record, moment);
    addBeacon(record, moment);
    if (record.type == typeOf<streamRecord_t>) {
        addStream(record);
    }
}

void reportData_t::addMeasurements(double moment, std::size_t sender) {
    const bool isVoid = m_measured.isVoid();
    m_measured.forEach([&](quantity_t quantity, double value) {
        if (!isDrawn(quantity) || (isVoid && quantity != quantity_t::quality)) {
            return;
        }
        const std::size_t place = seriesOf(sender, quantity, referenceOf(m_measured, quantity));
        if (place != unkept) {
            m_series[place].values.add(moment, printedValue(quantity, value));
        }
    });
}

std::size_t reportData_t::seriesOf(std::size_t sender, quantity_t quantity,
                                   windReference_t reference) {
    std::size_t& place =
        m_seriesPlaces[sender][static_cast<std::size_t>(quantity) * referenceCount +
                               static_cast<std::size_t>(reference)];
    if (place == unknown) {
        const bool isFull = m_series.size() >= mostSeries;
        place = isFull ? unkept : m_series.size();
        m_unkeptSeries += isFull ? 1 : 0;
        if (!isFull) {
            m_series.push_back(
                {m_senders[sender], quantity, reference, intervals_t(m_maxPoints / 2)});
        }
    }
    return place;
}

void reportData_t::addSatellites(const record_t& record, std::optional<double> moment) {
    for (const satellite_t& satellite : record.clue.satellites) {
        if (!satellite.hasPrn) {
            continue;
        }
        const std::pair<std::string, unsigned> key(record.talker, satellite.prn);
        if (m_satellites.size() >= mostSatellites && m_satellites.find(key) == m_satellites.end()) {
            continue;
        }
        satelliteInView_t& seen = m_satellites[key];
        if (satellite.hasElevation && satellite.hasAzimuth) {
            seen.last = {moment.value_or(0), satellite.azimuth * degreesPerRadian,
                         satellite.elevation * degreesPerRadian};
            if (seen.placeCount++ % seen.everyNth == 0) {
                seen.way.push_back(seen.last);
            }
            if (seen.way.size() > placesOfSatellite) {
                for (std::size_t i = 0; 2 * i < seen.way.size(); ++i) {
                    seen.way[i] = seen.way[2 * i];
                }
                seen.way.resize((seen.way.size() + 1) / 2);
                seen.everyNth *= 2;
            }
        }
        if (satellite.hasSnr) {
            const bool isFirst = seen.signalCount++ == 0;
            seen.weakest = isFirst ? satellite.snr : std::min(seen.weakest, satellite.snr);
            seen.strongest = isFirst ? satellite.snr : std::max(seen.strongest, satellite.snr);
            seen.signalSum += satellite.snr;
        }
    }
}

// Where the vessel is at that moment. Without times nobody knows whether its last position is old.
std::optional<place_t> reportData_t::vesselAt(std::optional<double> moment) const {
    constexpr double oldest = 10; // seconds
    const bool isKnown = m_vessel && moment && std::abs(*moment - m_vesselTime) <= oldest;
    return isKnown ? m_vessel : std::nullopt;
}

void reportData_t::addBeacon(const record_t& record, std::optional<double> moment) {
    if (m_measured.hasPosition() && moment) {
        m_vessel = {m_measured[quantity_t::latitude], m_measured[quantity_t::longitude]};
        m_vesselTime = *moment;
    }
    if (!isBeacon(record) || m_measured.isVoid()) {
        return;
    }
    std::optional<beaconPlace_t> place = readBeacon(record, m_scratch, vesselAt(moment));
    if (!place) {
        ++m_otherBeacons;
        return;
    }
    place->time = moment;
    if (m_beaconCount++ % m_beaconEveryNth == 0) {
        m_beaconPlaces.push_back(std::move(*place));
    }
    if (m_beaconPlaces.size() > mostBeaconPlaces) {
        for (std::size_t i = 0; 2 * i < m_beaconPlaces.size(); ++i) {
            m_beaconPlaces[i] = m_beaconPlaces[2 * i];
        }
        m_beaconPlaces.resize((m_beaconPlaces.size() + 1) / 2);
        m_beaconEveryNth *= 2;
    }
}

void reportData_t::addStream(const record_t& record) {
    if (m_streams.size() >= mostStreams) {
        ++m_unkeptStreams;
        return;
    }
    stream_t stream;
    streamSink_t sink(stream);
    visitRecord(record, m_scratch, [&](auto kind, const auto& source) {
        if constexpr (std::is_same_v<decltype(kind), streamRecord_t>) {
            readValues<streamRecord_t>(source, sink);
        }
    });
    m_streams.push_back(std::move(stream));
}

void reportData_t::addFix(const fix_t* fix) {
    if (fix != nullptr) {
        m_track.add(*fix);
    }
}

// The items of an input continue those of an input before it, if they begin after their end: days
// of one vessel become one series, feeds of one day stay apart.
template <typename Item, typename IsSame>
void reportData_t::joinInputs(std::vector<Item>& items, std::size_t begin, IsSame isSame) {
    std::size_t kept = begin;
    for (std::size_t i = begin; i < items.size(); ++i) {
        const auto earlier = std::find_if(
            items.begin(), items.begin() + static_cast<std::ptrdiff_t>(begin),
            [&](const Item& item) {
                return isSame(item, items[i]) && timesOf(item).last() <= timesOf(items[i]).first();
            });
        if (earlier != items.begin() + static_cast<std::ptrdiff_t>(begin)) {
            append(*earlier, items[i]);
            earlier->sender.source.clear();
        } else {
            if (kept != i) {
                items[kept] = std::move(items[i]);
            }
            ++kept;
        }
    }
    items.erase(items.begin() + static_cast<std::ptrdiff_t>(kept), items.end());
}

void reportData_t::endInput(const recordReader_t& reader) {
    if (m_inputCount <= mostInputs) {
        m_inputs.back().bytes = reader.bytes();
    }
    m_undated += reader.dating().undated();
    addFix(m_epochs.finish());
    m_track.endLine();
    m_vessel.reset();
    joinInputs(m_series, m_firstSeries, [](const series_t& a, const series_t& b) {
        return a.quantity == b.quantity && a.reference == b.reference &&
               isSameSender(a.sender, b.sender);
    });
    joinInputs(m_presences, m_firstPresence, [](const presence_t& a, const presence_t& b) {
        return isSameSender(a.sender, b.sender);
    });
    // The senders of the next input have numbers of their own, and places to be found.
    for (places_t& places : m_seriesPlaces) {
        places.fill(unknown);
    }
    std::fill(m_presencePlaces.begin(), m_presencePlaces.end(), unknown);
}
