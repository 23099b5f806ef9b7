// The values of a record that describe the voyage. Its other values are not decoded.
#pragma once

#include <array>
#include <cstdint>

#include "tools/record/quantity.h"
#include "tools/record/registry.h"

/// The quantities of one record.
class measurements_t {
public:
    bool has(quantity_t quantity) const { return (m_present >> index(quantity) & 1) != 0; }
    /// In the units of the library; a letter as its character code. 0 if `has` is false.
    double operator[](quantity_t quantity) const {
        return has(quantity) ? m_values[index(quantity)] : 0;
    }
    /// `positionRankOf` the record's type.
    std::size_t positionRank() const { return m_positionRank; }
    /// Whether the record says itself that its values are not valid.
    bool isVoid() const;
    /// Whether it gives the position of the vessel.
    bool hasPosition() const {
        return has(quantity_t::latitude) && has(quantity_t::longitude) && !isVoid();
    }

    void clear() {
        m_present = 0;
        m_count = 0;
        m_positionRank = std::size(positionTypes);
    }
    void setPositionRank(std::size_t rank) { m_positionRank = rank; }
    /// Calls `use(quantity, value)` for each quantity that is present.
    template <typename Use>
    void forEach(Use use) const {
        for (std::size_t i = 0; i < m_count; ++i) {
            use(m_order[i], m_values[index(m_order[i])]);
        }
    }
    void set(quantity_t quantity, double value) {
        if (!has(quantity)) {
            m_order[m_count++] = quantity;
        }
        m_present |= std::uint32_t{1} << index(quantity);
        m_values[index(quantity)] = value;
    }

private:
    static constexpr std::size_t index(quantity_t quantity) {
        return static_cast<std::size_t>(quantity);
    }

    std::uint32_t m_present = 0;
    std::size_t m_positionRank = std::size(positionTypes);
    std::size_t m_count = 0;
    std::array<quantity_t, quantityCount> m_order; // in which they came
    std::array<double, quantityCount> m_values;
};

/// Reads the quantities of a record; the others are absent in `out`.
void readMeasurements(const record_t& record, scratch_t& scratch, measurements_t& out);
