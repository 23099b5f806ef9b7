#include "tools/record/measurements.h"

#include "tools/record/dictionaryRows.h"

namespace {

// What a type passes on as it was sent has no known unit, and may be a beacon's: its depth is not
// that of the water.
template <typename Row>
constexpr quantity_t quantityOfRow(std::string_view type, const Row& row) {
    return std::string_view(row.unit.name) == asSent.name ? quantity_t::none
                                                          : quantityOf(type, row.name);
}

template <typename Record, std::size_t index, typename Source>
void readMeasurement(const Source& source, measurements_t& out) {
    using row_t = std::tuple_element_t<index, rowsOf_t<Record>>;
    constexpr const auto& row = std::get<index>(Record::rows);
    constexpr quantity_t quantity = quantityOfRow(Record::name, row);
    using value_t = typename row_t::value_t;
    if constexpr (quantity != quantity_t::none) {
        value_t value{};
        const reading_t reading = row.read(source, value);
        if (reading != reading_t::present && reading != reading_t::partly) {
            return;
        }
        if constexpr (std::is_arithmetic_v<value_t>) {
            out.set(quantity, static_cast<double>(value));
        } else if (value.size() == 1) { // a letter that is sent as text
            out.set(quantity, value[0]);
        }
    }
}

template <typename Record, typename Source, std::size_t... index>
void readAll(const Source& source, measurements_t& out, std::index_sequence<index...> /*all*/) {
    (readMeasurement<Record, index>(source, out), ...);
}

class dictionarySink_t {
public:
    explicit dictionarySink_t(measurements_t& out) : m_out(out) {}

    template <typename T>
    void value(dictionaryColumn_t column, const T& value) {
        if constexpr (std::is_arithmetic_v<T>) {
            m_out.set(column.row.quantity, static_cast<double>(value));
        }
    }
    bool value(dictionaryColumn_t /*column*/, const memberGroup_t& /*group*/) { return false; }
    void none(dictionaryColumn_t /*column*/) {}

private:
    measurements_t& m_out;
};

} // namespace

bool measurements_t::isVoid() const {
    const auto isLetter = [&](quantity_t quantity, char letter) {
        return has(quantity) && (*this)[quantity] == letter;
    };
    return isLetter(quantity_t::validity, 'V') || isLetter(quantity_t::fixMode, 'N') ||
           isLetter(quantity_t::status, 'V') || isLetter(quantity_t::quality, 0);
}

void readMeasurements(const record_t& record, scratch_t& scratch, measurements_t& out) {
    out.clear();
    visitRecord(record, scratch, [&](auto kind, const auto& source) {
        using type_t = decltype(kind);
        constexpr std::size_t rank = positionRankOf(type_t::name);
        out.setPositionRank(rank);
        readAll<type_t>(source, out, std::make_index_sequence<rowCountOf<type_t>>{});
    });
    if (record.entry != nullptr) {
        out.setPositionRank(record.entry->positionRank);
        const auto& sentence = *std::get<const kalo::nmeaFormat_t*>(record.content);
        dictionarySink_t sink(out);
        for (const dictionaryRow_t& row : record.entry->rows) {
            if (row.quantity != quantity_t::none) {
                readDictionaryRow(sentence, row, 0, sink);
            }
        }
    }
}
