#include "tools/record/recordClue.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "kalo/time/timeUtil.h"
#include "tools/record/plausible.h"
#include "tools/record/registry.h"

namespace {

// The fields of a record's own time; none if it has no time.
template <typename Row>
constexpr fieldSet_t timeFieldsOf(const Row& /*row*/) {
    return 0;
}
constexpr fieldSet_t timeFieldsOf(const row_t<ownTime>& row) { return row.fields; }

template <typename Record>
constexpr fieldSet_t timeFields = std::apply(
    [](const auto&... row) { return (timeFieldsOf(row) | ... | fieldSet_t{0}); }, Record::rows);

template <typename Record>
constexpr bool hasOwnDate = std::apply(
    [](const auto&... row) {
        return (std::is_same_v<std::decay_t<decltype(row)>, row_t<ownDate>> || ... || false);
    },
    Record::rows);

void readTime(const kalo::nmeaMsg_t& view, unsigned field, timeClue_t& clue) {
    const kalo::nmeaField_t* text = view.field(field);
    clue.hasTime =
        text != nullptr && isTimeOfDay(text->toString()) && view.decodeTimeOfDay(clue.time.time);
    if (clue.hasTime) {
        setDigits(text->toString(), clue.time);
    }
}

bool readDate(const kalo::nmeaMsg_t& view, kalo::date_t& out) { return view.decodeDate(out); }

// ZDA sends four digits of the year; where it sends two, they are meant as those of RMC are.
bool readDate(const kalo::zdaMsg_t& view, kalo::date_t& out) {
    constexpr unsigned yearField = 4;
    if (!view.decodeDate(out)) {
        return false;
    }
    if (view.field(yearField)->size() == 2) {
        out.year = kalo::twoDigitYearToAD(out.year, kalo::defaultTwoDigitYearCutoff);
    }
    return true;
}

bool isVoid(const kalo::nmeaMsg_t& /*view*/) { return false; }

bool isVoid(const kalo::rmcMsg_t& view) {
    char validity = 0;
    return view.decodeValidity(validity) && validity == 'V';
}

// Reads one block of a GSV sentence; false if all its fields are empty.
bool readSatellite(const kalo::gsvMsg_t& view, unsigned block, satellite_t& satellite, bool& lost) {
    const unsigned first = 4 + block * 4;
    bool anySent = false;
    // Reads a value if it was sent.
    const auto read = [&](unsigned offset, bool& has, auto decode) {
        if (!view.field(first + offset)->isEmpty()) {
            anySent = true;
            has = decode();
            lost = lost || !has;
        }
    };
    read(0, satellite.hasPrn, [&] { return view.decodeSatPrn(block, satellite.prn); });
    read(1, satellite.hasElevation, [&] {
        return view.decodeSatElevation(block, satellite.elevation) && isFinite(satellite.elevation);
    });
    read(2, satellite.hasAzimuth, [&] {
        return view.decodeSatAzimuth(block, satellite.azimuth) && isFinite(satellite.azimuth);
    });
    read(3, satellite.hasSnr,
         [&] { return view.decodeSatSnr(block, satellite.snr) && isFinite(satellite.snr); });
    return anySent;
}

void readSatellites(const kalo::nmeaMsg_t& /*view*/, std::vector<satellite_t>& /*satellites*/,
                    clue_t& /*clue*/) {}

void readSatellites(const kalo::gsvMsg_t& view, std::vector<satellite_t>& satellites,
                    clue_t& clue) {
    unsigned blocks = 0;
    satellites.clear();
    if (!view.decodeSatCount(blocks)) {
        return;
    }
    for (unsigned block = 0; block < blocks; ++block) {
        satellite_t satellite;
        if (readSatellite(view, block, satellite, clue.lostSatellite)) {
            satellites.push_back(satellite);
        }
    }
    clue.satellites = {satellites.data(), satellites.data() + satellites.size()};
}

template <typename Record>
void readClueOf(const kalo::nmeaFormat_t& sentence, std::vector<satellite_t>& satellites,
                clue_t& clue) {
    using view_t = typename Record::view_t;
    if constexpr (std::is_base_of_v<kalo::nmeaMsg_t, view_t>) {
        const view_t view(sentence);
        if constexpr (timeFields<Record> != 0) {
            readTime(view, firstOf(timeFields<Record>), clue);
        }
        if constexpr (hasOwnDate<Record>) {
            clue.hasDate = readDate(view, clue.date);
            clue.isVoid = isVoid(view);
        }
        readSatellites(view, satellites, clue);
    }
}

constexpr auto readers = arrayOfRecords([](auto record) { return &readClueOf<decltype(record)>; });

} // namespace

void readSentenceClue(const kalo::nmeaFormat_t& sentence, typeIndex_t type,
                      std::vector<satellite_t>& satellites, clue_t& clue) {
    readers[type](sentence, satellites, clue);
}

void readTrackingClue(const kalo::atsAsciiMsg_t& tracking, char (&milliseconds)[3], clue_t& clue) {
    constexpr unsigned timeSlot = 3;
    std::string text;
    clue.hasDate = tracking.decodeDate(clue.date);
    clue.hasTime = tracking.decodeTimeOfDay(clue.time.time) && tracking.decodeField(timeSlot, text);
    if (!clue.hasTime) {
        return;
    }
    // The milliseconds are a part of their own and a number, not the digits of a fraction.
    constexpr int partsWithMilliseconds = 4;
    int parts = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        parts += text[i] != ':' && (i == 0 || text[i - 1] == ':') ? 1 : 0;
    }
    const double whole = std::trunc(clue.time.time.second);
    clue.time.second = static_cast<unsigned>(whole);
    clue.time.fraction = {};
    if (parts >= partsWithMilliseconds) {
        const auto count =
            static_cast<unsigned>(std::lround((clue.time.time.second - whole) * 1000));
        const unsigned digits[] = {count / 100 % 10, count / 10 % 10, count % 10};
        std::transform(std::begin(digits), std::end(digits), milliseconds,
                       [](unsigned digit) { return static_cast<char>('0' + digit); });
        clue.time.fraction = {milliseconds, std::size(digits)};
    }
}
