#include "tools/report/reportPage.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <map>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "tools/analysis/satelliteSystem.h"
#include "tools/analysis/summaryText.h"
#include "tools/output/jsonString.h"
#include "tools/report/page.h" // made by CMake
#include "tools/time/instantText.h"

namespace {

using json_t = nlohmann::ordered_json;

constexpr std::size_t mostOfPanel = 8;
constexpr std::size_t mostStrips = 64;
constexpr std::size_t mostRows = 500; // of a table of senders or findings

// A plot over time, and what is drawn in it.
struct panel_t {
    const char* title;
    const char* unit;
    std::array<quantity_t, 3> quantities;
    bool isDirection = false; // the line breaks where it passes north
    bool growsDownwards = false;
};

constexpr panel_t panels[] = {
    {"Speed",
     "m/s",
     {quantity_t::speedOverGround, quantity_t::speedThroughWater, quantity_t::none}},
    {"Course and heading",
     "deg",
     {quantity_t::courseOverGround, quantity_t::heading, quantity_t::none},
     true},
    {"Rate of turn", "deg/s", {quantity_t::rateOfTurn, quantity_t::none, quantity_t::none}},
    {"Roll", "deg", {quantity_t::roll, quantity_t::none, quantity_t::none}},
    {"Pitch", "deg", {quantity_t::pitch, quantity_t::none, quantity_t::none}},
    {"Heave", "m", {quantity_t::heave, quantity_t::none, quantity_t::none}},
    {"Depth", "m", {quantity_t::depth, quantity_t::none, quantity_t::none}, false, true},
    {"Wind speed", "m/s", {quantity_t::windSpeed, quantity_t::none, quantity_t::none}},
    {"Wind direction",
     "deg",
     {quantity_t::windDirection, quantity_t::none, quantity_t::none},
     true},
    {"Water temperature",
     "deg C",
     {quantity_t::waterTemperature, quantity_t::none, quantity_t::none}},
    {"Altitude of the antenna", "m", {quantity_t::altitude, quantity_t::none, quantity_t::none}},
    {"Fix quality, code of GGA", "", {quantity_t::quality, quantity_t::none, quantity_t::none}},
    {"Satellites used", "", {quantity_t::satCount, quantity_t::none, quantity_t::none}},
    {"Dilution of precision", "", {quantity_t::hdop, quantity_t::pdop, quantity_t::vdop}},
    {"Standard deviation of the position",
     "m",
     {quantity_t::latitudeError, quantity_t::longitudeError, quantity_t::altitudeError}},
    {"Age of corrections", "s", {quantity_t::diffAge, quantity_t::none, quantity_t::none}}};

struct title_t {
    quantity_t quantity;
    const char* title;
};
constexpr title_t ownTitles[] = {{quantity_t::windDirection, "wind direction"},
                                 {quantity_t::diffAge, "age of corrections"},
                                 {quantity_t::pdop, "PDOP"},
                                 {quantity_t::vdop, "VDOP"},
                                 {quantity_t::latitudeError, "latitude"},
                                 {quantity_t::longitudeError, "longitude"},
                                 {quantity_t::altitudeError, "altitude"}};

std::string titleOf(quantity_t quantity) {
    for (const title_t& row : ownTitles) {
        if (row.quantity == quantity) {
            return row.title;
        }
    }
    return rowOf(quantity).title;
}

json_t textOf(std::string_view text) {
    buffer_t out;
    writeJsonString(out, text);
    return json_t::parse(out.text());
}

constexpr std::size_t longestName = 200; // letters

// At most `length` letters of UTF-8.
std::string_view beginOf(std::string_view text, std::size_t length) {
    constexpr unsigned char continues = 0x80;
    constexpr unsigned char mask = 0xC0;
    std::size_t letters = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isLetter = (static_cast<unsigned char>(text[i]) & mask) != continues;
        if (isLetter && letters++ == length) {
            return text.substr(0, i);
        }
    }
    return text;
}

// Names of inputs and senders. Long ones are shortened, and those that begin alike are numbered.
class names_t {
public:
    json_t operator()(const std::string& name) {
        if (name.size() <= longestName) {
            return textOf(name);
        }
        const auto known = m_short.find(name);
        if (known != m_short.end()) {
            return known->second;
        }
        constexpr std::size_t kept = longestName - 10; // and a number
        const std::string begin(beginOf(name, kept));
        if (begin.size() == name.size()) {
            return textOf(name);
        }
        const std::uint64_t number = ++m_alike[begin];
        json_t text = textOf(begin + (number > 1 ? fmt::format("… {}", number) : "…"));
        m_short.emplace(name, text);
        return text;
    }

private:
    std::map<std::string, json_t> m_short;
    std::map<std::string, std::uint64_t> m_alike; // shortened names, by how they begin
};

// Ten digits: angles are read in radians, and their last digits in degrees are noise.
double rounded(double value) { return std::strtod(fmt::format("{:.10g}", value).c_str(), nullptr); }

constexpr double milli = 1e-3;

// Unix time in whole milliseconds.
std::int64_t millisecondsOf(double time) {
    return static_cast<std::int64_t>(std::llround(time / milli));
}

// Times as differences, which are short texts.
class times_t {
public:
    void add(double time) {
        const std::int64_t now = millisecondsOf(time);
        m_differences.push_back(now - m_last);
        m_last = now;
    }
    json_t take() { return std::move(m_differences); }

private:
    std::int64_t m_last = 0;
    json_t m_differences = json_t::array();
};

struct point_t {
    double time;
    double value;
};

// The least and the greatest value of each interval, in the order of time. A value that is not a
// number stands where a gap is.
std::vector<point_t> pointsOf(const intervals_t& intervals) {
    std::vector<interval_t> all = intervals.all();
    std::stable_sort(all.begin(), all.end(),
                     [](const interval_t& a, const interval_t& b) { return a.first < b.first; });
    std::vector<point_t> points;
    double end = 0;
    for (const interval_t& interval : all) {
        if (!points.empty() && intervals.isGap(interval.first - end)) {
            points.push_back({end, std::nan("")});
        }
        end = points.empty() ? interval.last : std::max(end, interval.last);
        point_t first = {interval.leastTime, interval.least};
        point_t second = {interval.greatestTime, interval.greatest};
        if (second.time < first.time) {
            std::swap(first, second);
        }
        points.push_back(first);
        if (interval.least != interval.greatest) {
            points.push_back(second);
        } else if (interval.last > interval.first) {
            points.push_back({interval.last, interval.least});
        }
    }
    std::stable_sort(points.begin(), points.end(),
                     [](const point_t& a, const point_t& b) { return a.time < b.time; });
    return points;
}

json_t senderOf(const senderName_t& name, names_t& names) {
    return {{"source", names(name.source)},
            {"prefix", names(name.prefix)},
            {"talker", names(name.talker)},
            {"type", names(name.type)}};
}

// From where a sentence counts the direction of the wind.
struct windOrigin_t {
    const char* type;
    const char* text;
};
constexpr windOrigin_t windOrigins[] = {{"MWD", "from north"},
                                        {"MDA", "from north"},
                                        {"MWV", "from the bow"},
                                        {"VWR", "from the bow"},
                                        {"VWT", "from the bow"}};

std::string referenceOf(const series_t& series) {
    constexpr const char* references[] = {"", "relative", "true"};
    std::string text = references[static_cast<std::size_t>(series.reference)];
    for (const windOrigin_t& row : windOrigins) {
        if (series.quantity == quantity_t::windDirection && series.sender.type == row.type) {
            text += (text.empty() ? "" : ", ") + std::string(row.text);
        }
    }
    return text;
}

// Directions of the wind from 0 to 360 degrees, also where they are counted to both sides.
double shownValue(const series_t& series, double value) {
    constexpr double turn = 360;
    const bool isTurned = series.quantity == quantity_t::windDirection && value < 0;
    return isTurned ? value + turn : value;
}

json_t seriesOf(const series_t& series, names_t& names) {
    times_t times;
    json_t values = json_t::array();
    for (const point_t& point : pointsOf(series.values)) {
        times.add(point.time);
        values.push_back(
            std::isnan(point.value) ? json_t() : json_t(rounded(shownValue(series, point.value))));
    }
    return {{"sender", senderOf(series.sender, names)},
            {"what", titleOf(series.quantity)},
            {"quantity", rowOf(series.quantity).name},
            {"reference", referenceOf(series)},
            {"count", series.values.count()},
            {"length", series.values.length()},
            {"times", times.take()},
            {"values", std::move(values)}};
}

// How many of the series, those with the most values first, are drawn: a single value is not if
// other series have more.
std::size_t drawnOf(const std::vector<const series_t*>& sorted) {
    std::size_t drawn = 0;
    while (drawn < std::min(sorted.size(), mostOfPanel) &&
           (sorted[drawn]->values.count() > 1 || sorted[0]->values.count() == 1)) {
        ++drawn;
    }
    return drawn;
}

json_t panelsOf(const reportData_t& data, names_t& names) {
    json_t all = json_t::array();
    for (const panel_t& panel : panels) {
        std::vector<const series_t*> chosen;
        for (const series_t& series : data.series()) {
            const bool isOfPanel = series.quantity != quantity_t::none &&
                                   std::find(panel.quantities.begin(), panel.quantities.end(),
                                             series.quantity) != panel.quantities.end();
            if (isOfPanel) {
                chosen.push_back(&series);
            }
        }
        if (chosen.empty()) {
            continue;
        }
        std::stable_sort(chosen.begin(), chosen.end(), [](const series_t* a, const series_t* b) {
            return a->values.count() > b->values.count();
        });
        const std::size_t drawn = drawnOf(chosen);
        json_t object = {{"title", panel.title},
                         {"unit", panel.unit},
                         {"isDirection", panel.isDirection},
                         {"growsDownwards", panel.growsDownwards},
                         {"undrawn", chosen.size() - drawn},
                         {"series", json_t::array()}};
        chosen.resize(drawn);
        for (const series_t* const series : chosen) {
            object["series"].push_back(seriesOf(*series, names));
        }
        all.push_back(std::move(object));
    }
    return all;
}

json_t trackOf(const reportData_t& data) {
    json_t lines = json_t::array();
    for (const trackPoint_t& point : data.track().points()) {
        if (point.beginsLine || lines.empty()) {
            lines.push_back(json_t::array());
        }
        // seven decimals of a degree are a centimetre
        lines.back().push_back({point.time ? json_t(millisecondsOf(*point.time)) : json_t(),
                                rounded(std::round(point.latitude * 1e7) / 1e7),
                                rounded(std::round(point.longitude * 1e7) / 1e7), point.quality});
    }
    return {{"length", data.track().length()}, {"lines", std::move(lines)}};
}

// The figures are those of the table of senders.
json_t stripOf(const presence_t& presence, const summary_t& summary, names_t& names) {
    std::uint64_t count = 0;
    double duration = 0;
    double steps = 0;
    double longestGap = 0;
    for (const std::size_t number : presence.numbers) {
        const senderSummary_t& sender = summary.sent()[number];
        count += sender.count;
        duration += sender.period.duration();
        steps += sender.rate() * sender.period.duration();
        longestGap = std::max(longestGap, sender.longestGap);
    }
    json_t runs = json_t::array();
    for (const interval_t& run : presence.times.runs()) {
        runs.push_back({millisecondsOf(run.first), millisecondsOf(run.last), run.count});
    }
    json_t gaps = json_t::array();
    for (const gap_t& gap : presence.times.gaps()) {
        gaps.push_back({millisecondsOf(gap.begin), millisecondsOf(gap.end)});
    }
    return {{"sender", senderOf(presence.sender, names)},
            {"count", count},
            {"rate", duration > 0 ? fmt::format("{:.3g}", steps / duration) : ""},
            {"longestGap", longestGap > 0 ? durationText(longestGap) : ""},
            {"usualStep", millisecondsOf(presence.times.usualStep())},
            {"runs", std::move(runs)},
            {"gaps", std::move(gaps)}};
}

json_t stripsOf(const reportData_t& data, const summary_t& summary, names_t& names) {
    std::vector<const presence_t*> chosen;
    for (const presence_t& presence : data.presences()) {
        chosen.push_back(&presence);
    }
    std::stable_sort(chosen.begin(), chosen.end(), [](const presence_t* a, const presence_t* b) {
        return a->times.count() > b->times.count();
    });
    json_t object = {{"undrawn", chosen.size() - std::min(chosen.size(), mostStrips)},
                     {"strips", json_t::array()}};
    chosen.resize(std::min(chosen.size(), mostStrips));
    for (const presence_t* const presence : chosen) {
        object["strips"].push_back(stripOf(*presence, summary, names));
    }
    return object;
}

json_t satellitesOf(const reportData_t& data) {
    json_t all = json_t::array();
    for (const auto& [key, satellite] : data.satellites()) {
        json_t object = {{"talker", textOf(key.first)},
                         {"system", textOf(systemOf(key.first, key.second))},
                         {"prn", key.second},
                         {"way", json_t::array()}};
        const auto add = [&](const satelliteInView_t::place_t& place) {
            object["way"].push_back(
                {millisecondsOf(place.time), rounded(place.azimuth), rounded(place.elevation)});
        };
        for (const satelliteInView_t::place_t& place : satellite.way) {
            add(place);
        }
        if (satellite.placeCount > 0) {
            add(satellite.last);
        }
        if (satellite.signalCount > 0) {
            object["signal"] = {
                {"count", satellite.signalCount},
                {"least", satellite.weakest},
                {"mean", rounded(satellite.signalSum / static_cast<double>(satellite.signalCount))},
                {"greatest", satellite.strongest}};
        }
        all.push_back(std::move(object));
    }
    return all;
}

// In the order of `beaconFrame_t`.
constexpr const char* beaconFrames[] = {"bow", "north", "localGrid", "utm", "xy"};

json_t beaconsOf(const reportData_t& data) {
    json_t places = json_t::array();
    for (const beaconPlace_t& place : data.beaconPlaces()) {
        places.push_back({textOf(place.name), beaconFrames[static_cast<std::size_t>(place.frame)],
                          place.time ? json_t(millisecondsOf(*place.time)) : json_t(),
                          rounded(place.right), rounded(place.up)});
    }
    return {{"everyNth", data.beaconEveryNth()},
            {"others", data.otherBeacons()},
            {"places", std::move(places)}};
}

json_t streamsOf(const reportData_t& data) {
    json_t rows = json_t::array();
    for (const stream_t& stream : data.streams()) {
        json_t row = json_t::array();
        for (const std::string& text : stream.texts) {
            row.push_back(textOf(text));
        }
        row.push_back(stream.bitrate ? json_t(*stream.bitrate) : json_t());
        for (const std::optional<float>& degrees : {stream.latitude, stream.longitude}) {
            // the digits of the float, not those of the double that it becomes
            row.push_back(degrees
                              ? json_t(std::strtod(fmt::format("{}", *degrees).c_str(), nullptr))
                              : json_t());
        }
        rows.push_back(std::move(row));
    }
    return {
        {"columns", streamColumns}, {"undrawn", data.unkeptStreams()}, {"rows", std::move(rows)}};
}

json_t findingsOf(const findingGroups_t& findings, names_t& names) {
    const auto placeOf = [&](const recordPlace_t& place) {
        return json_t{
            {"source", names(place.source)}, {"line", place.line}, {"offset", place.offset}};
    };
    std::uint64_t faults = 0;
    std::uint64_t notes = 0;
    json_t groups = json_t::array();
    for (const finding_t& group : findings.all()) {
        const findingKind_t& kind = kindOf(group.id);
        (kind.isFault ? faults : notes) += group.count;
        if (groups.size() < mostRows) {
            groups.push_back({{"kind", kind.name},
                              {"severity", kind.isFault ? "fault" : "note"},
                              {"message", textOf(messageOf(group))},
                              {"count", group.count},
                              {"first", placeOf(group.first)},
                              {"last", placeOf(group.last)},
                              {"raw", textOf(group.raw)}});
        }
    }
    return {{"faults", faults},
            {"notes", notes},
            {"undrawn", findings.all().size() - groups.size()},
            {"groups", std::move(groups)}};
}

// The page itself shows what cannot be printed.
std::string asSent(std::string_view text) { return std::string(text); }

json_t tablesOf(const summary_t& summary, names_t& names) {
    json_t all = json_t::array();
    for (const summaryTable_t& table : summaryTables(summary, asSent)) {
        json_t columns = json_t::array();
        for (const textTable_t::column_t& column : table.table.columns()) {
            columns.push_back({{"head", column.head}, {"isNumber", column.isNumber}});
        }
        json_t rows = json_t::array();
        for (const auto& row : table.table.rows()) {
            if (rows.size() < mostRows) {
                json_t cells = json_t::array();
                for (const std::string& cell : row) {
                    cells.push_back(names(cell));
                }
                rows.push_back(std::move(cells));
            }
        }
        const std::size_t undrawn = table.table.rows().size() - rows.size();
        all.push_back({{"title", table.title},
                       {"columns", std::move(columns)},
                       {"undrawn", undrawn},
                       {"rows", std::move(rows)}});
    }
    return all;
}

json_t dataOf(const reportText_t& text, const summary_t& summary, const findingGroups_t& findings,
              const reportData_t& data) {
    names_t names;
    json_t inputs = json_t::array();
    for (const inputSize_t& input : data.inputs()) {
        inputs.push_back({{"name", names(input.name)}, {"bytes", input.bytes}});
    }
    json_t lines = json_t::array();
    for (const summaryLine_t& line : summaryLines(summary)) {
        lines.push_back({{"head", line.head}, {"text", line.text}});
    }
    json_t all = {{"version", text.version},
                  {"command", textOf(text.command)},
                  {"inputCount", summary.inputs()},
                  {"inputs", std::move(inputs)},
                  {"undated", data.undated()},
                  {"records", summary.counts().records()},
                  {"isPart", text.isPart},
                  {"lines", std::move(lines)},
                  {"findings", findingsOf(findings, names)},
                  {"track", trackOf(data)},
                  {"unkeptSeries", data.unkeptSeries()},
                  {"panels", panelsOf(data, names)},
                  {"satellites", satellitesOf(data)},
                  {"beacons", beaconsOf(data)},
                  {"presence", stripsOf(data, summary, names)},
                  {"tables", tablesOf(summary, names)},
                  {"streams", streamsOf(data)}};
    if (summary.period().first) {
        all["period"] = {millisecondsOf(*summary.period().first),
                         millisecondsOf(*summary.period().last)};
    }
    return all;
}

} // namespace

void writeReportPage(buffer_t& out, const reportText_t& text, const summary_t& summary,
                     const findingGroups_t& findings, const reportData_t& data) {
    const std::string json = dataOf(text, summary, findings, data).dump();
    out.append(pageBeforeData);
    // No text of the input may end the element that holds the data.
    for (std::size_t done = 0; done < json.size();) {
        const std::size_t end = std::min(json.find('<', done), json.size());
        out.append(std::string_view(json).substr(done, end - done));
        if (end < json.size()) {
            out.append("\\u003c");
        }
        done = end + 1;
    }
    out.append(pageAfterData);
}
