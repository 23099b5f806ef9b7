#include "tools/output/tableFiles.h"

#include <cerrno>
#include <cstring>
#include <filesystem>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tools/input/input.h"
#include "tools/terminal/message.h"

namespace {

constexpr std::size_t largeText = 65536;

// A descriptor that is closed with its block.
class opened_t {
public:
    opened_t(const std::string& path, int flags)
        : m_descriptor(open(path.c_str(), flags | O_WRONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK,
                            S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH)) {}
    opened_t(const opened_t&) = delete;
    opened_t& operator=(const opened_t&) = delete;
    ~opened_t() {
        if (m_descriptor >= 0) {
            close(m_descriptor);
        }
    }

    int descriptor() const { return m_descriptor; }

private:
    int m_descriptor;
};

std::string reasonOf(int error) { return std::strerror(error); }

// What went wrong; empty if nothing did.
std::string writeTo(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const ssize_t count = write(descriptor, text.data(), text.size());
        if (count < 0 && errno != EINTR) {
            return reasonOf(errno);
        }
        text.remove_prefix(count < 0 ? 0 : static_cast<std::size_t>(count));
    }
    return {};
}

} // namespace

class tableFiles_t::file_t {
public:
    explicit file_t(std::string path) : m_path(std::move(path)) {}

    // False, with a message, when it has just failed.
    bool append(const linesOfTable_t& table, const std::vector<std::string>& inputs) {
        if (!m_fault.empty()) {
            return true;
        }
        buffer_t head;
        if (!m_isBegun) {
            table.writer.writeHead(head);
        }
        m_fault = write(inputs, head.text(), table.lines.text());
        if (!m_fault.empty()) {
            complain(m_path, m_fault);
        }
        return m_fault.empty();
    }

private:
    // What went wrong; empty when nothing did.
    std::string write(const std::vector<std::string>& inputs, std::string_view head,
                      std::string_view lines) {
        const opened_t file(m_path, m_isBegun ? O_APPEND : O_CREAT);
        if (file.descriptor() < 0) {
            return reasonOf(errno);
        }
        struct stat status = {};
        if (fstat(file.descriptor(), &status) != 0) {
            return reasonOf(errno);
        }
        if (!S_ISREG(status.st_mode)) {
            return "not a regular file; it is left as it is";
        }
        if (!m_isBegun) {
            if (isAmong(status, inputs)) {
                return "the input is also the output; write to another folder";
            }
            if (ftruncate(file.descriptor(), 0) != 0) {
                return reasonOf(errno);
            }
            m_status = status;
            m_isBegun = true;
        } else if (!isSameFile(status, m_status)) {
            return "another file has taken its place";
        }
        std::string fault = writeTo(file.descriptor(), head);
        return fault.empty() ? writeTo(file.descriptor(), lines) : fault;
    }

    std::string m_path;
    bool m_isBegun = false;
    struct stat m_status = {}; // of the file that was begun
    std::string m_fault;
};

tableFiles_t::tableFiles_t(const tableFolder_t& folder, const tableOptions_t& options,
                           dictionaryHolder_t& dictionary)
    : m_folder(folder), m_format(options.format), m_lines(options, dictionary) {}

tableFiles_t::~tableFiles_t() = default;

bool tableFiles_t::makeFolder() const {
    std::error_code error;
    std::filesystem::create_directories(m_folder.path, error);
    if (!std::filesystem::is_directory(m_folder.path)) {
        complain(m_folder.path, error ? error.message() : "not a folder");
        return false;
    }
    return true;
}

void tableFiles_t::write(const record_t& record, scratch_t& scratch) {
    flushIfLarge(m_lines.write(record, scratch));
}

void tableFiles_t::take(tableLines_t& lines) {
    for (const auto& [name, table] : lines.tables()) {
        linesOfTable_t& own = m_lines.named(name);
        own.lines.append(table->lines.text());
        table->lines.clear();
        flushIfLarge(own);
    }
}

void tableFiles_t::flush() {
    for (const auto& [name, table] : m_lines.tables()) {
        flush(*table);
    }
}

void tableFiles_t::flushIfLarge(linesOfTable_t& table) {
    if (table.lines.size() >= largeText) {
        flush(table);
    }
}

void tableFiles_t::flush(linesOfTable_t& table) {
    if (table.lines.size() == 0) {
        return;
    }
    const char* const ending = m_format == tableFormat_t::csv ? ".csv" : ".tsv";
    std::unique_ptr<file_t>& file = m_files[table.name];
    if (!file) {
        const std::filesystem::path path =
            std::filesystem::path(m_folder.path) / (table.name + ending);
        file = std::make_unique<file_t>(path.string());
    }
    m_hasFailed = !file->append(table, m_folder.inputs) || m_hasFailed;
    table.lines.clear();
}
