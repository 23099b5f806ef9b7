// A file that an output goes to. It gets its name only when it is complete, so that no other
// program takes half a file for a whole one.
#pragma once

#include <string>
#include <vector>

/// Closes the file at its end, if `close` has not.
class outputFile_t {
public:
    outputFile_t() = default;
    outputFile_t(const outputFile_t&) = delete;
    outputFile_t& operator=(const outputFile_t&) = delete;
    ~outputFile_t();

    /// Opens `path` for writing, as `path`.part. With `isDirect`, or if `path` is there and is not
    /// a regular file, it is opened itself; if it is what standard output goes to, standard output
    /// is used. A symbolic link is followed. A file that is among `inputs` ("-" is standard input)
    /// is left alone. Returns what is wrong, for people; empty if the file is open.
    std::string open(const std::string& path, const std::vector<std::string>& inputs,
                     bool isDirect);

    /// -1 if it is not open.
    int descriptor() const { return m_descriptor; }
    /// Where what was written is under another name; empty if there is no such file.
    const std::string& part() const { return m_part; }

    /// Closes the file, and gives it its name if it is complete. Returns what went wrong, for
    /// people; empty if nothing did.
    std::string close(bool isComplete);

private:
    std::string begin(const std::vector<std::string>& inputs);

    std::string m_path;
    std::string m_part;
    int m_descriptor = -1;
};
