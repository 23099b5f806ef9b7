// A folder with a file for each type of record.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "tools/output/tableLines.h"

struct tableFolder_t {
    std::string path;                ///< is made when it is missing
    std::vector<std::string> inputs; ///< files that must not be written to
};

/// Makes the file of a type when its first record comes. Only one file is open at a time.
class tableFiles_t {
public:
    /// The references must outlive the object.
    tableFiles_t(const tableFolder_t& folder, const tableOptions_t& options,
                 dictionaryHolder_t& dictionary);
    ~tableFiles_t();

    /// Makes the folder. False, with a message, when that is impossible.
    bool makeFolder() const;

    /// The input of the records that follow.
    void setSource(std::string_view name) { m_lines.setSource(name); }
    void write(const record_t& record, scratch_t& scratch);
    /// Moves lines here that were written elsewhere, with the same options.
    void take(tableLines_t& lines);

    /// Writes to the files what was not written yet.
    void flush();
    /// Whether a file could not be written; a message has said so.
    bool failed() const { return m_hasFailed; }

private:
    class file_t;

    void flush(linesOfTable_t& table);
    void flushIfLarge(linesOfTable_t& table);

    const tableFolder_t& m_folder;
    tableFormat_t m_format;
    tableLines_t m_lines; // that were not written yet
    std::map<std::string, std::unique_ptr<file_t>> m_files;
    bool m_hasFailed = false;
};
