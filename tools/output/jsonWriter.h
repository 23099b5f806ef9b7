// Writes a record as one JSON object on a line.
#pragma once

#include <string>
#include <string_view>

#include "tools/output/buffer.h"
#include "tools/output/tagMembers.h"
#include "tools/record/record.h"

struct jsonOptions_t {
    bool radians = false; ///< angles in radians, as the library gives them
    bool raw = false;     ///< add the bytes of every record
    bool epoch = false;   ///< instants as Unix seconds
    bool explain = false; ///< add how each instant got its day
};

class jsonWriter_t {
public:
    jsonWriter_t(buffer_t& out, const jsonOptions_t& options);

    /// Sets the input of the records that follow.
    void setSource(std::string_view name);
    /// Appends the record, with its line end.
    void write(const record_t& record, scratch_t& scratch);

private:
    void writeBegin(const record_t& record);
    void writeFields(const kalo::nmeaFormat_t& sentence);
    void writeFault(const record_t& record);
    void writeInstant(const instant_t& instant);

    buffer_t& m_out;
    jsonOptions_t m_options;
    std::string m_source; // the first member
    tagMembers_t m_tags;
};
