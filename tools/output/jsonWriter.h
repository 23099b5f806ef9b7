// Writes a record as one JSON object on a line.
#pragma once

#include <string>
#include <string_view>

#include "tools/output/buffer.h"
#include "tools/output/tagMembers.h"
#include "tools/output/valueText.h"
#include "tools/record/record.h"

class jsonWriter_t {
public:
    jsonWriter_t(buffer_t& out, const valueOptions_t& options);

    /// Sets the input of the records that follow.
    void setSource(std::string_view name);
    /// Appends the record, with its line end.
    void write(const record_t& record, scratch_t& scratch);

private:
    void writeBegin(const record_t& record);
    void writeFields(const kalo::nmeaFormat_t& sentence);
    void writeFault(const record_t& record);
    void writeTimeMember(const instant_t& instant);

    buffer_t& m_out;
    valueOptions_t m_options;
    std::string m_source; // the first member
    tagMembers_t m_tags;
};
