#include "tools/column/columnTable.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <utility>

#include "tools/input/tagBlock.h"
#include "tools/output/valueText.h"
#include "tools/record/recordValues.h"
#include "tools/record/satelliteMembers.h"
#include "tools/time/calendarDate.h"

namespace {

constexpr std::size_t noPlace = static_cast<std::size_t>(-1);
// The keys of a record, and behind them the zone of `received`.
constexpr std::size_t zoneKey = recordKeyCount;
constexpr std::size_t keyCount = recordKeyCount + 1;

constexpr std::size_t mostRows = std::size_t{1} << 17;
constexpr std::size_t leastRoom = 64;
constexpr std::size_t rowsBetweenChecks = 1024;

constexpr std::int64_t secondsPerMinute = 60;
constexpr std::int64_t secondsPerHour = 3600;
constexpr std::int64_t secondsPerDay = 86400;
constexpr std::int64_t microsecondsPerSecond = 1'000'000;

struct keyForm_t {
    recordKey_t key;
    form_t form;
};

// The columns around the values, in their order.
constexpr keyForm_t keyForms[] = {
    {recordKey_t::source, form_t::text},      {recordKey_t::line, form_t::integer},
    {recordKey_t::offset, form_t::integer},   {recordKey_t::received, form_t::instant},
    {recordKey_t::time, form_t::instant},     {recordKey_t::timeRule, form_t::text},
    {recordKey_t::prefix, form_t::text},      {recordKey_t::suffix, form_t::text},
    {recordKey_t::tag, form_t::object},       {recordKey_t::talker, form_t::text},
    {recordKey_t::checksum, form_t::boolean}, {recordKey_t::value, form_t::text},
    {recordKey_t::address, form_t::text},     {recordKey_t::fields, form_t::list},
    {recordKey_t::error, form_t::text},       {recordKey_t::stated, form_t::text},
    {recordKey_t::computed, form_t::text},    {recordKey_t::raw, form_t::bytes}};

// The items of tag blocks that have columns, and all blocks as text.
struct tagMember_t {
    const char* name;
    form_t form;
    const char* meaning;
};
constexpr tagMember_t tagMembers[] = {{"s", form_t::text, "source"},
                                      {"c", form_t::integer, "time, as sent"},
                                      {"g", form_t::text, "group of sentences"},
                                      {"d", form_t::text, "destination"},
                                      {"n", form_t::integer, "number of the line"},
                                      {"text", form_t::text, "the blocks as they were sent"}};

form_t formOf(shape_t shape) {
    switch (shape) {
    case shape_t::integer: return form_t::integer;
    case shape_t::number:
    case shape_t::timeOfDay: return form_t::number;
    case shape_t::boolean: return form_t::boolean;
    case shape_t::date: return form_t::date;
    case shape_t::instant: return form_t::instant;
    case shape_t::integers:
    case shape_t::texts:
    case shape_t::members: return form_t::list;
    case shape_t::tags: return form_t::object;
    case shape_t::text: break;
    }
    return form_t::text;
}

columnType_t typeOfItem(form_t form) { return {"item", form, {}, {}, {}}; }

columnType_t typeOfColumn(const recordColumn_t& column, const columnOptions_t& options) {
    columnType_t type = {column.name,
                         formOf(column.shape),
                         options.radians ? column.radianUnit : column.unit,
                         column.meaning,
                         {}};
    if (column.shape == shape_t::timeOfDay) {
        type.unit = "s";
    } else if (column.shape == shape_t::integers || column.shape == shape_t::texts) {
        const bool areTexts = column.shape == shape_t::texts;
        type.members.push_back(typeOfItem(areTexts ? form_t::text : form_t::integer));
    } else if (column.shape == shape_t::members) {
        type.members.push_back(typeOfItem(form_t::object));
        for (const recordColumn_t& member : column.members) {
            type.members[0].members.push_back(typeOfColumn(member, options));
        }
    } else if (column.shape == shape_t::tags) {
        for (const tagMember_t& member : tagMembers) {
            type.members.push_back({member.name, member.form, {}, member.meaning, {}});
        }
    }
    return type;
}

// A column of a table, with what it holds.
struct place_t {
    columnType_t type;
    std::size_t key = 0;      // of the columns around the values
    std::size_t position = 0; // of a value
    bool isValue = false;
};

std::vector<place_t> allPlaces(const recordTable_t& records, const columnOptions_t& options) {
    std::vector<place_t> places;
    for (const keyForm_t& row : keyForms) {
        std::size_t position = 0;
        for (const recordColumn_t& column : records.columns) {
            if (column.key != row.key) {
                continue;
            }
            places.push_back({typeOfColumn(column, options), static_cast<std::size_t>(row.key),
                              position++, row.key == recordKey_t::value});
            if (row.key != recordKey_t::value) {
                places.back().type.form = row.form;
            }
            if (row.key == recordKey_t::received) {
                places.push_back({{"receivedZone",
                                   form_t::boolean,
                                   {},
                                   "whether received states its time zone; otherwise it is taken "
                                   "as UTC",
                                   {}},
                                  zoneKey});
            }
        }
    }
    return places;
}

std::vector<place_t> placesOf(const recordTable_t& records, const columnOptions_t& options) {
    std::vector<place_t> places = allPlaces(records, options);
    if (options.columns.empty()) {
        return places;
    }
    std::vector<place_t> chosen;
    for (const std::string& name : options.columns) {
        const auto found = std::find_if(places.begin(), places.end(), [&](const place_t& place) {
            return place.type.name == name;
        });
        if (found != places.end()) {
            chosen.push_back(*found);
        }
    }
    return chosen;
}

std::int64_t dayOf(const kalo::date_t& date) {
    return static_cast<std::int64_t>(kalo::dateTime_t(date, {}).toTimestamp()) / secondsPerDay;
}

std::int64_t microseconds(const kalo::date_t& date, std::int64_t secondOfDay,
                          std::string_view fraction) {
    constexpr std::size_t digits = 6;
    std::int64_t part = 0;
    for (std::size_t i = 0; i < digits; ++i) {
        part = part * 10 + (i < fraction.size() ? fraction[i] - '0' : 0);
    }
    if (fraction.size() > digits && fraction[digits] >= '5') {
        ++part;
    }
    return (dayOf(date) * secondsPerDay + secondOfDay) * microsecondsPerSecond + part;
}

unsigned numberAt(std::string_view text, std::size_t at, std::size_t digits) {
    unsigned number = 0;
    for (const char c : text.substr(at, digits)) {
        number = number * 10 + static_cast<unsigned>(c - '0');
    }
    return number;
}

// The double that has the same shortest text.
double sameText(float value) {
    char text[longestPlain];
    double result = 0;
    std::from_chars(text, writePlain(text, value), result);
    return result;
}

// Whether `text` is an integer of 64 bits.
bool isInteger(std::string_view text, std::int64_t& out) {
    const char* const end = text.data() + text.size();
    const auto [last, error] = std::from_chars(text.data(), end, out);
    return error == std::errc() && last == end;
}

double secondsOf(const sentTime_t& sent) {
    return static_cast<double>(sent.time.hour * secondsPerHour +
                               sent.time.minute * secondsPerMinute) +
           sent.time.second;
}

} // namespace

columnTypes_t columnTypes(const recordTable_t& records, const columnOptions_t& options) {
    columnTypes_t types;
    for (place_t& place : placesOf(records, options)) {
        types.push_back(std::move(place.type));
    }
    return types;
}

std::shared_ptr<const batch_t> emptyBatch(std::shared_ptr<const columnTypes_t> types) {
    batch_t batch = {std::move(types), {}, 0, {}};
    for (const columnType_t& type : *batch.types) {
        batch.columns.emplace_back(type);
        batch.columns.back().finish(0);
    }
    return std::make_shared<const batch_t>(std::move(batch));
}

// Puts the values of a record into the current row.
class columnTable_t::sink_t {
public:
    /// `entry` describes the record, if the dictionary does.
    sink_t(columnTable_t& table, const dictionarySentence_t* entry)
        : m_table(table), m_entry(entry) {}

    template <typename Column, typename T>
    void value(Column /*column*/, const T& value) {
        if (array_t* const column = m_table.m_values[Column::position]) {
            set(*column, m_table.m_rows, value, Column::row.unit.radianName != nullptr);
        }
    }
    template <typename Column>
    void none(Column /*column*/) {}

    template <typename T>
    void value(dictionaryColumn_t column, const T& value) {
        if (m_group == nullptr) {
            if (array_t* const own = columnOf(column.row)) {
                set(*own, m_table.m_rows, value, column.row.isAngle());
            }
        } else if (m_items != nullptr) {
            const auto member = static_cast<std::size_t>(&column.row - m_group->members.data());
            set(m_items->member(member), m_item, value, column.row.isAngle());
        }
    }
    // Values that are lost must be found in a list that is not wanted, too.
    bool value(dictionaryColumn_t column, const memberGroup_t& group) {
        array_t* const list = columnOf(column.row);
        m_group = &column.row;
        m_items = list != nullptr ? &list->items() : nullptr;
        if (list != nullptr) {
            list->setPresent(m_table.m_rows);
        }
        bool isLost = false;
        for (unsigned i = 0; i < group.count(); ++i) {
            if (list != nullptr) {
                m_item = list->addItem();
                m_items->setPresent(m_item);
            }
            isLost = group.read(i, *this) || isLost;
        }
        m_group = nullptr;
        return isLost;
    }

private:
    array_t* columnOf(const dictionaryRow_t& row) const {
        return m_table.m_values[static_cast<std::size_t>(&row - m_entry->rows.data())];
    }

    template <typename T>
    void set(array_t& column, std::size_t row, const T& value, [[maybe_unused]] bool isAngle) {
        if constexpr (std::is_same_v<T, bool>) {
            column.setFlag(row, value);
        } else if constexpr (std::is_same_v<T, char>) {
            column.setText(row, {&value, 1});
        } else if constexpr (std::is_integral_v<T>) {
            column.setInteger(row, static_cast<std::int64_t>(value));
        } else if constexpr (std::is_same_v<T, float>) {
            column.setNumber(row, sameText(value));
        } else if constexpr (std::is_same_v<T, double>) {
            column.setNumber(row, isAngle && !m_table.m_radians ? value * degreesPerRadian : value);
        } else if constexpr (std::is_same_v<T, kalo::date_t>) {
            if (isInCalendar(value)) {
                column.setDate(row, static_cast<std::int32_t>(dayOf(value)));
            }
        } else if constexpr (std::is_same_v<T, sentTime_t>) {
            column.setNumber(row, secondsOf(value));
        } else if constexpr (std::is_same_v<T, std::vector<unsigned>>) {
            column.setPresent(row);
            for (const unsigned number : value) {
                column.items().setInteger(column.addItem(), number);
            }
        } else if constexpr (std::is_same_v<T, fieldTexts_t>) {
            column.setPresent(row);
            for (unsigned i = value.first; i < value.sentence.fieldCount(); ++i) {
                column.items().setText(column.addItem(), value.sentence.field(i)->toString());
            }
        } else if constexpr (std::is_same_v<T, satelliteList_t>) {
            column.setPresent(row);
            for (const satellite_t& satellite : value) {
                setSatellite(column.items(), column.addItem(), satellite);
            }
        } else {
            column.setText(row, value);
        }
    }

    void setSatellite(array_t& object, std::size_t row, const satellite_t& satellite) {
        object.setPresent(row);
        forEachSatelliteColumn([&](auto column) {
            using member_t = decltype(column);
            if (member_t::row.isIn(satellite)) {
                set(object.member(member_t::position), row, member_t::row.valueOf(satellite),
                    member_t::row.unit.radianName != nullptr);
            }
        });
    }

    columnTable_t& m_table;
    const dictionarySentence_t* m_entry;
    const dictionaryRow_t* m_group = nullptr; // whose members are read
    array_t* m_items = nullptr;
    std::size_t m_item = 0;
};

columnTable_t::columnTable_t(const recordTable_t& records, const columnOptions_t& options)
    : m_radians(options.radians), m_raw(options.raw),
      m_types(std::make_shared<const columnTypes_t>(columnTypes(records, options))),
      m_keyPlaces(keyCount, noPlace) {
    for (const recordColumn_t& column : records.columns) {
        if (column.key == recordKey_t::value) {
            m_valuePlaces.push_back(noPlace);
        }
    }
    const std::vector<place_t> places = placesOf(records, options);
    for (std::size_t i = 0; i < places.size(); ++i) {
        (places[i].isValue ? m_valuePlaces[places[i].position] : m_keyPlaces[places[i].key]) = i;
    }
    m_keys.resize(m_keyPlaces.size());
    m_values.resize(m_valuePlaces.size());
    begin();
}

// Starts an empty batch.
void columnTable_t::begin() {
    m_columns.clear();
    m_columns.reserve(m_types->size());
    for (const columnType_t& type : *m_types) {
        m_columns.emplace_back(type);
    }
    const auto columnAt = [this](std::size_t place) {
        return place == noPlace ? nullptr : &m_columns[place];
    };
    std::transform(m_keyPlaces.begin(), m_keyPlaces.end(), m_keys.begin(), columnAt);
    std::transform(m_valuePlaces.begin(), m_valuePlaces.end(), m_values.begin(), columnAt);
    m_variable.clear();
    for (array_t& column : m_columns) {
        if (!column.isOfFixedSize()) {
            m_variable.push_back(&column);
        }
    }
    m_rows = 0;
    m_room = 0;
}

void columnTable_t::add(const record_t& record, std::string_view source, scratch_t& scratch) {
    if (m_rows == m_room) {
        m_room = std::max(2 * m_room, leastRoom);
        for (array_t& column : m_columns) {
            column.reserve(m_room);
        }
    }
    if (m_rows == 0) {
        m_place.source = source;
        m_place.firstOffset = record.offset;
    }
    m_place.lastOffset = record.offset;
    setText(recordKey_t::source, source);
    if (record.line > 0) {
        setNumber(recordKey_t::line, record.line);
    }
    setNumber(recordKey_t::offset, record.offset);
    setReceived(record);
    setText(recordKey_t::prefix, record.prefix);
    setText(recordKey_t::suffix, record.suffix);
    setText(recordKey_t::talker, record.talker);
    setTags(record.tags);
    if (record.instant) {
        setInstant(*record.instant);
    }
    const bool isLost = readRecord(record, scratch, sink_t(*this, record.entry));
    if (const auto* sentence = std::get_if<const kalo::nmeaFormat_t*>(&record.content)) {
        if (array_t* const column = keyColumn(recordKey_t::checksum);
            column != nullptr && !record.hasChecksum) {
            column->setFlag(m_rows, false);
        }
        if (!hasNamedValues(record)) {
            setFields(**sentence);
        }
    }
    if (record.fault != fault_t::none) {
        setFault(record);
    }
    array_t* const raw = keyColumn(recordKey_t::raw);
    const bool isShown = isLost || m_raw || record.fault != fault_t::none;
    if (raw != nullptr && isShown && !record.raw.empty()) {
        raw->setBytes(m_rows, record.raw);
    }
    endRow();
}

void columnTable_t::endRow() {
    for (array_t* const column : m_variable) {
        column->endRow(m_rows);
    }
    ++m_rows;
    if (m_rows % rowsBetweenChecks == 0 &&
        (m_rows == mostRows ||
         std::any_of(m_columns.begin(), m_columns.end(),
                     [](const array_t& column) { return column.isLarge(); }))) {
        close();
    }
}

std::size_t columnTable_t::openBytes() const {
    std::size_t size = 0;
    for (const array_t& column : m_columns) {
        size += column.bytes(m_rows);
    }
    return size;
}

std::size_t columnTable_t::bytes() const { return m_batchBytes + openBytes(); }

void columnTable_t::close() {
    m_batchBytes += openBytes();
    for (array_t& column : m_columns) {
        column.finish(m_rows);
    }
    m_batches.push_back(
        std::make_shared<const batch_t>(batch_t{m_types, std::move(m_columns), m_rows, m_place}));
    m_place.rowsInFront += m_rows;
    begin();
}

std::vector<std::shared_ptr<const batch_t>> columnTable_t::take() {
    if (m_rows > 0) {
        close();
    }
    m_batchBytes = 0;
    return std::exchange(m_batches, {});
}

void columnTable_t::setText(recordKey_t key, std::string_view text) {
    array_t* const column = keyColumn(key);
    if (column != nullptr && !text.empty()) {
        column->setText(m_rows, text);
    }
}

void columnTable_t::setNumber(recordKey_t key, std::uint64_t number) {
    if (array_t* const column = keyColumn(key)) {
        column->setInteger(m_rows, static_cast<std::int64_t>(number));
    }
}

// A stamp with a date is "2026-03-14T23:58:30.25", with Z behind it if it states its zone.
void columnTable_t::setReceived(const record_t& record) {
    array_t* const column = keyColumn(recordKey_t::received);
    array_t* const zone = m_keys[zoneKey];
    if (!record.clue.hasStamp || record.received.empty() ||
        (column == nullptr && zone == nullptr)) {
        return;
    }
    constexpr std::size_t monthAt = 5;
    constexpr std::size_t dayAt = 8;
    constexpr std::size_t hourAt = 11;
    constexpr std::size_t minuteAt = 14;
    constexpr std::size_t secondAt = 17;
    constexpr std::size_t fractionAt = 20;
    const std::string_view text = record.received;
    const bool statesZone = text.back() == 'Z';
    const std::size_t end = text.size() - (statesZone ? 1 : 0);
    const kalo::date_t date = {numberAt(text, 0, 4), numberAt(text, monthAt, 2),
                               numberAt(text, dayAt, 2)};
    if (column != nullptr) {
        column->setInstant(m_rows,
                           microseconds(date,
                                        numberAt(text, hourAt, 2) * secondsPerHour +
                                            numberAt(text, minuteAt, 2) * secondsPerMinute +
                                            numberAt(text, secondAt, 2),
                                        end > fractionAt ? text.substr(fractionAt, end - fractionAt)
                                                         : std::string_view()));
    }
    if (zone != nullptr) {
        zone->setFlag(m_rows, statesZone);
    }
}

void columnTable_t::setTags(std::string_view tags) {
    array_t* const column = keyColumn(recordKey_t::tag);
    if (column == nullptr || tags.empty()) {
        return;
    }
    column->setPresent(m_rows);
    for (std::size_t i = 0; i < std::size(tagMembers); ++i) {
        const tagMember_t& row = tagMembers[i];
        const bool isWhole = i + 1 == std::size(tagMembers);
        const std::string_view text = isWhole ? tags : tagValue(tags, row.name, false);
        std::int64_t number = 0;
        if (row.form == form_t::text) {
            if (!text.empty()) {
                column->member(i).setText(m_rows, text);
            }
        } else if (isInteger(text, number)) {
            column->member(i).setInteger(m_rows, number);
        }
    }
}

void columnTable_t::setInstant(const instant_t& instant) {
    if (array_t* const column = keyColumn(recordKey_t::time)) {
        const sentTime_t& sent = instant.time;
        column->setInstant(m_rows,
                           microseconds(instant.date,
                                        sent.time.hour * secondsPerHour +
                                            sent.time.minute * secondsPerMinute + sent.second,
                                        sent.fraction));
    }
    setText(recordKey_t::timeRule, dayRuleText(instant.rule));
}

void columnTable_t::setFault(const record_t& record) {
    setText(recordKey_t::error, faultText(record.fault));
    if (record.fault == fault_t::checksumMismatch) {
        buffer_t digits;
        writeHexByte(digits, record.stated);
        writeHexByte(digits, record.computed);
        setText(recordKey_t::stated, digits.text().substr(0, 2));
        setText(recordKey_t::computed, digits.text().substr(2));
    }
}

void columnTable_t::setFields(const kalo::nmeaFormat_t& sentence) {
    if (array_t* const address = keyColumn(recordKey_t::address)) {
        address->setText(m_rows, sentence.field(0)->toString());
    }
    if (array_t* const fields = keyColumn(recordKey_t::fields)) {
        fields->setPresent(m_rows);
        for (unsigned i = 1; i < sentence.fieldCount(); ++i) {
            fields->items().setText(fields->addItem(), sentence.field(i)->toString());
        }
    }
}
