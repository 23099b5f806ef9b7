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

constexpr std::size_t largeSize = 65536;

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

} // namespace

class tableFiles_t::file_t {
public:
    file_t(std::string path, recordTable_t table, const tableOptions_t& options)
        : m_path(std::move(path)), m_writer(std::move(table), options) {
        m_writer.writeHead(m_buffer);
    }

    void write(const record_t& record, std::string_view source, scratch_t& scratch) {
        if (m_writer.hasColumns() && m_fault.empty()) {
            m_writer.write(record, source, scratch, m_buffer);
        }
    }

    bool isLarge() const { return m_buffer.size() >= largeSize; }

    // False, with a message, when it has just failed.
    bool flush(const std::vector<std::string>& inputs) {
        if (m_buffer.size() == 0 || !m_fault.empty() || !m_writer.hasColumns()) {
            return true;
        }
        m_fault = append(inputs);
        m_buffer.clear();
        if (!m_fault.empty()) {
            complain(m_path, m_fault);
        }
        return m_fault.empty();
    }

private:
    // What went wrong; empty when nothing did.
    std::string append(const std::vector<std::string>& inputs) {
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
        for (std::string_view left = m_buffer.text(); !left.empty();) {
            const ssize_t count = ::write(file.descriptor(), left.data(), left.size());
            if (count < 0 && errno != EINTR) {
                return reasonOf(errno);
            }
            left.remove_prefix(count < 0 ? 0 : static_cast<std::size_t>(count));
        }
        return {};
    }

    std::string m_path;
    tableWriter_t m_writer;
    buffer_t m_buffer;
    bool m_isBegun = false;
    struct stat m_status = {}; // of the file that was begun
    std::string m_fault;
};

tableFiles_t::tableFiles_t(const tableFolder_t& folder, const tableOptions_t& options,
                           dictionaryHolder_t& dictionary)
    : m_folder(folder), m_options(options), m_dictionary(dictionary) {}

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
    file_t& file = m_files.of(record, [this](std::string_view name) { return fileNamed(name); });
    file.write(record, m_source, scratch);
    if (file.isLarge()) {
        m_hasFailed = !file.flush(m_folder.inputs) || m_hasFailed;
    }
}

void tableFiles_t::flush() {
    for (const auto& [name, file] : m_files.objects()) {
        m_hasFailed = !file->flush(m_folder.inputs) || m_hasFailed;
    }
}

std::unique_ptr<tableFiles_t::file_t> tableFiles_t::fileNamed(std::string_view name) const {
    const char* const ending = m_options.format == tableFormat_t::csv ? ".csv" : ".tsv";
    std::string path =
        (std::filesystem::path(m_folder.path) / (std::string(name) + ending)).string();
    return std::make_unique<file_t>(std::move(path), tableNamed(name, m_dictionary), m_options);
}
