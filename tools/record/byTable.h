// Finds what belongs to the table of a record.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "tools/record/recordTable.h"
#include "tools/record/registry.h"

/// One object for each table that records come for.
template <typename Object>
class byTable_t {
public:
    using objects_t = std::map<std::string, std::unique_ptr<Object>, std::less<>>;

    /// The object for a record. If there is none yet, it is what `make(name of the table)` returns.
    template <typename Make>
    Object& of(const record_t& record, Make make) {
        if (record.entry == nullptr && record.type == noType) {
            return named(record.fault == fault_t::none ? untypedTable : malformedTable, make);
        }
        if (record.entry != nullptr && record.entry->index >= m_ofEntries.size()) {
            m_ofEntries.resize(record.entry->index + 1);
        }
        Object*& place =
            record.entry != nullptr ? m_ofEntries[record.entry->index] : m_ofTypes[record.type];
        if (place == nullptr) {
            place = &named(typeNameOf(record), make);
        }
        return *place;
    }

    template <typename Make>
    Object& named(std::string_view name, Make make) {
        const auto found = m_objects.find(name);
        return found != m_objects.end() ? *found->second
                                        : *m_objects.emplace(name, make(name)).first->second;
    }

    /// In the order of their names.
    const objects_t& objects() const { return m_objects; }

private:
    objects_t m_objects;
    std::vector<Object*> m_ofTypes = std::vector<Object*>(recordTypeCount);
    std::vector<Object*> m_ofEntries; // by the index in the dictionary
};
