#include "tools/command/readInput.h"

#include <optional>

#include <fmt/format.h>
#include <unistd.h>

#include "tools/input/followedFile.h"
#include "tools/input/input.h"
#include "tools/input/unpack.h"
#include "tools/terminal/message.h"
#include "tools/terminal/stopSignal.h"

namespace {

// An input that writes out all output before it waits.
class flushingBytes_t : public bytes_t {
public:
    flushingBytes_t(liveBytes_t& input, output_t& output, progress_t* progress)
        : m_input(input), m_output(output), m_progress(progress) {}

    std::string_view read() override {
        // Write out what there is for a live reader, then wait for the next bytes.
        while (!m_input.isReady() && !m_output.isClosed() && stopSignal() == 0) {
            m_output.flush();
            m_input.wait(m_output.descriptor());
            m_output.checkReader();
        }
        const std::string_view block = m_output.isClosed() ? std::string_view() : m_input.read();
        if (m_progress != nullptr) {
            m_progress->add(block.size());
        }
        return block;
    }

    std::string fault() const override { return m_input.fault(); }

private:
    liveBytes_t& m_input;
    output_t& m_output;
    progress_t* m_progress;
};

// A source of bytes whose first bytes have been examined.
class restartedBytes_t : public bytes_t {
public:
    explicit restartedBytes_t(bytes_t& bytes) : m_bytes(bytes) {}

    // Finds what the input holds; the bytes examined are read again.
    packing_t look(bool mayBeTar) {
        packing_t content = packing_t::undecided;
        for (std::string_view block; content == packing_t::undecided;) {
            block = m_bytes.read();
            if (block.empty()) {
                m_isAtEnd = true;
                return packing_t::text;
            }
            m_start.append(block);
            content = contentOf(m_start, mayBeTar);
        }
        return content;
    }

    std::string_view read() override {
        if (!m_isStartRead) {
            m_isStartRead = true;
            if (!m_start.empty()) {
                return m_start;
            }
        }
        return m_isAtEnd ? std::string_view() : m_bytes.read();
    }

    std::string fault() const override { return m_bytes.fault(); }

private:
    bytes_t& m_bytes;
    std::string m_start;
    bool m_isStartRead = false;
    bool m_isAtEnd = false; // found when the first bytes were examined
};

// Data that is compressed twice, or an archive in an archive, is not unpacked further.
constexpr unsigned mostLayers = 4;

class contentReader_t {
public:
    contentReader_t(output_t& output, const byteUser_t& user) : m_output(output), m_user(user) {}

    bool read(const std::string& name, bytes_t& bytes, bool mayBeArchive, unsigned layers = 0) {
        restartedBytes_t content(bytes);
        const packing_t format = content.look(mayBeArchive || layers > 0);
        if (format == packing_t::text) {
            return use(name, content);
        }
        const bool isArchive = format == packing_t::zip || format == packing_t::tar;
        if (layers == mostLayers || (isArchive && !mayBeArchive)) {
            complain(name, isArchive ? "an archive cannot be read here; unpack it into files first"
                                     : "packed too many times; unpack it first");
            return false;
        }
        if (isArchive) {
            return readMembers(name, *openArchive(format, content), layers);
        }
        return read(name, *unpack(format, content), true, layers + 1);
    }

    // Only plain text can be read on from where its file ended before.
    bool follow(const std::string& name, bytes_t& bytes) {
        bool isRead = true;
        while (isRead && isGoingOn()) {
            restartedBytes_t content(bytes);
            if (content.look(false) != packing_t::text) {
                complain(name, "compressed input cannot be followed; "
                               "try: tail -c +1 -f FILE | kalo decode");
                return false;
            }
            isRead = use(name, content);
        }
        return isRead;
    }

private:
    bool readMembers(const std::string& name, members_t& archive, unsigned layers) {
        bool areRead = true;
        for (std::string member; isGoingOn() && archive.next(member);) {
            const std::string path = fmt::format("{}:{}", name, member);
            areRead = read(path, archive, false, layers + 1) && areRead;
        }
        return isWhole(name, archive) && areRead;
    }

    bool use(const std::string& name, bytes_t& bytes) {
        m_user.begin(name);
        for (std::string_view block = bytes.read(); !block.empty(); block = bytes.read()) {
            m_user.use(block);
            m_output.flushIfDue();
        }
        m_user.end();
        return isWhole(name, bytes);
    }

    bool isWhole(const std::string& name, const bytes_t& bytes) {
        const std::string fault = isGoingOn() ? bytes.fault() : "";
        if (!fault.empty()) {
            complain(name, fault);
        }
        return fault.empty();
    }

    bool isGoingOn() const { return !m_output.isClosed() && stopSignal() == 0; }

    output_t& m_output;
    const byteUser_t& m_user;
};

} // namespace

std::string packedKind(std::string_view start) {
    switch (contentOf(start, true)) {
    case packing_t::undecided:
    case packing_t::text: return {};
    case packing_t::zip:
    case packing_t::tar: return "an archive";
    case packing_t::gzip:
    case packing_t::zstd:
    case packing_t::xz:
    case packing_t::bzip2:
    case packing_t::lz4: break;
    }
    return "compressed input";
}

bool readBlocks(const std::string& name, output_t& output, const byteUser_t& user,
                progress_t* progress) {
    output.flush(); // opening may take long
    input_t input(name);
    if (input.isSameFile(output.descriptor())) {
        complain(name, sameFileText);
        return false;
    }
    flushingBytes_t bytes(input, output, progress);
    return contentReader_t(output, user).read(name, bytes, input.isRegular());
}

bool followBlocks(const std::string& name, output_t& output, const byteUser_t& user) {
    struct stat written = {};
    if (fstat(output.descriptor(), &written) == 0 && isAmong(written, {name})) {
        complain(name, sameFileText);
        return false;
    }
    followedFile_t file(name);
    flushingBytes_t bytes(file, output, nullptr);
    return contentReader_t(output, user).follow(name, bytes);
}

bool readLines(const std::string& name, output_t& output, const lineUser_t& user) {
    std::optional<lineSplitter_t> lines;
    const auto useLines = [&] {
        for (line_t line; !output.isClosed() && lines->next(line);) {
            if (!line.continued) {
                user.use(line);
                output.flushIfLarge();
            }
        }
    };
    return readBlocks(name, output,
                      {[&](const std::string& source) {
                           lines.emplace(false);
                           user.begin(source);
                       },
                       [&](std::string_view block) {
                           lines->append(block);
                           useLines();
                       },
                       [&] {
                           if (stopSignal() == 0) {
                               lines->finish();
                               useLines();
                           }
                       }});
}

int finish(output_t& output, int status, bool areInputsRead) {
    output.flush();
    const int signal = stopSignal();
    output.close(areInputsRead && signal == 0);
    if (output.failed()) {
        complain(output.name(), output.reason());
    }
    if (!output.part().empty()) {
        complain(output.part(), "the incomplete output is kept in this file");
    }
    if (output.failed()) {
        const bool isInterrupted = signal != 0 && output.descriptor() < 0; // opening it
        return isInterrupted ? exitSignal + signal : exitFailure;
    }
    if (output.isClosed()) {
        return 0;
    }
    return signal != 0 ? exitSignal + signal : status;
}

int print(const std::string& text) {
    output_t output(STDOUT_FILENO);
    output.buffer().append(text);
    return finish(output, 0);
}
