#include "tools/input/unpack.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <new>

#include <archive.h>
#include <archive_entry.h>
#include <bzlib.h>
#include <fmt/format.h>
#include <lz4frame.h>
#include <lzma.h>
#include <zlib.h>
#include <zstd.h>
#include <zstd_errors.h>

namespace {

constexpr std::size_t bufferSize = 131072;
constexpr const char* cutOffText =
    "the compressed data or archive is cut off; records may be missing";
constexpr const char* damagedText =
    "the compressed data or archive is damaged; records may be missing or wrong";

struct magic_t {
    packing_t content;
    std::string_view bytes; ///< "\x01" stands for any digit from 1 to 9
};

// What files of these formats begin with. bzip2: the level of compression, and the start of the
// first block or, of an empty file, of the end. gzip: the one method there is. zip: a member, or
// the end of an empty archive.
constexpr magic_t magics[] = {
    {packing_t::gzip, {"\x1F\x8B\x08", 3}},
    {packing_t::bzip2, {"BZh\x01\x31\x41\x59\x26\x53\x59", 10}},
    {packing_t::bzip2, {"BZh\x01\x17\x72\x45\x38\x50\x90", 10}},
    {packing_t::xz, {"\xFD\x37zXZ\0", 6}},
    {packing_t::zstd, {"\x28\xB5\x2F\xFD", 4}},
    {packing_t::lz4, {"\x04\x22\x4D\x18", 4}},
    {packing_t::zip, {"PK\x03\x04", 4}},
    {packing_t::zip, {"PK\x05\x06", 4}},
};

bool fits(char c, char mark) { return mark == '\x01' ? c >= '1' && c <= '9' : c == mark; }

struct tarField_t {
    std::size_t begin;
    std::size_t length;
};

// The numbers at the start of a tar archive: the member's mode, user, group, size and time, and the
// checksum of the header.
constexpr tarField_t tarNumbers[] = {{100, 8}, {108, 8}, {116, 8}, {124, 12}, {136, 12}, {148, 8}};

// Whether a field that begins with this text may be a number: octal digits with blanks and NUL, or
// a binary number behind a first byte of at least 0x80.
bool isTarNumber(std::string_view field) {
    constexpr std::string_view allowed("01234567 \0", 10);
    return field.empty() || static_cast<unsigned char>(field[0]) >= 0x80 ||
           field.find_first_not_of(allowed) == std::string_view::npos;
}

// A tar archive begins with a name of up to 100 bytes and NUL, and numbers; its mark comes later.
// Text must be recognised as text before that, because a live input may not have delivered so many
// bytes yet.
packing_t tarOrText(std::string_view start) {
    constexpr std::size_t nameLength = 100;
    constexpr std::size_t markAt = 257;
    constexpr std::string_view mark = "ustar";
    const auto isNumber = [&](const tarField_t& field) {
        return isTarNumber(start.substr(std::min(field.begin, start.size()), field.length));
    };
    if (start.substr(0, nameLength).find_first_of("\r\n") != std::string_view::npos ||
        !std::all_of(std::begin(tarNumbers), std::end(tarNumbers), isNumber)) {
        return packing_t::text;
    }
    if (start.size() < markAt + mark.size()) {
        return packing_t::undecided;
    }
    return start.substr(markAt, mark.size()) == mark ? packing_t::tar : packing_t::text;
}

enum class outcome_t { going, ended, damaged, tooLarge };

// zstd and lz4 also have frames for data of other programs, which must be skipped.
bool startsSkippedFrame(char c) { return c >= '\x50' && c <= '\x5F'; }

// How many bytes to give to the decoder of zstd or lz4, which asks for `wanted`: what completes a
// block, and the header of the next one. That header has to wait, because a call that finds a fault
// gives no bytes, not even those of the block before it.
std::size_t bytesOfBlock(std::string_view in, std::size_t wanted, std::size_t header) {
    return std::min(in.size(), wanted > header ? wanted - header : wanted);
}

// The codecs take bytes off the front of `in` and write at most `room` bytes to `out`.
// `startsMember` tells whether a further member may begin with this byte.

class gzipCodec_t {
public:
    static bool startsMember(char c) { return c == '\x1F'; }

    gzipCodec_t() { static_cast<void>(inflateInit2(&m_stream, gzipWindow)); }
    gzipCodec_t(const gzipCodec_t&) = delete;
    gzipCodec_t& operator=(const gzipCodec_t&) = delete;
    ~gzipCodec_t() { inflateEnd(&m_stream); }

    outcome_t step(std::string_view& in, char* out, std::size_t room, std::size_t& written) {
        m_stream.next_in = reinterpret_cast<z_const Bytef*>(const_cast<char*>(in.data())); // NOLINT
        m_stream.avail_in = static_cast<uInt>(in.size());
        m_stream.next_out = reinterpret_cast<Bytef*>(out); // NOLINT
        m_stream.avail_out = static_cast<uInt>(room);
        const int result = inflate(&m_stream, Z_SYNC_FLUSH);
        in.remove_prefix(in.size() - m_stream.avail_in);
        written = room - m_stream.avail_out;
        if (result == Z_STREAM_END) {
            inflateReset(&m_stream);
            return outcome_t::ended;
        }
        return result == Z_OK || result == Z_BUF_ERROR ? outcome_t::going : outcome_t::damaged;
    }

private:
    static constexpr int gzipWindow = 15 + 16; // the largest, with the header of gzip

    z_stream m_stream = {};
};

class zstdCodec_t {
public:
    static bool startsMember(char c) { return c == '\x28' || startsSkippedFrame(c); }

    zstdCodec_t() : m_stream(ZSTD_createDStream(), ZSTD_freeDStream) {}

    outcome_t step(std::string_view& in, char* out, std::size_t room, std::size_t& written) {
        ZSTD_inBuffer from = {in.data(), bytesOfBlock(in, m_wanted, blockHeader), 0};
        ZSTD_outBuffer to = {out, room, 0};
        const std::size_t left = ZSTD_decompressStream(m_stream.get(), &to, &from);
        in.remove_prefix(from.pos);
        written = to.pos;
        m_wanted = left != 0 ? left : firstWanted;
        switch (ZSTD_getErrorCode(left)) {
        case ZSTD_error_no_error: return left == 0 ? outcome_t::ended : outcome_t::going;
        case ZSTD_error_frameParameter_windowTooLarge: return outcome_t::tooLarge;
        default: return outcome_t::damaged;
        }
    }

private:
    static constexpr std::size_t blockHeader = 3;
    static constexpr std::size_t firstWanted = 5; // the start of a frame that tells its length

    std::size_t m_wanted = firstWanted;
    std::unique_ptr<ZSTD_DStream, std::size_t (*)(ZSTD_DStream*)> m_stream;
};

class xzCodec_t {
public:
    static bool startsMember(char c) { return c == '\xFD'; }

    xzCodec_t() { start(); }
    xzCodec_t(const xzCodec_t&) = delete;
    xzCodec_t& operator=(const xzCodec_t&) = delete;
    ~xzCodec_t() { lzma_end(&m_stream); }

    outcome_t step(std::string_view& in, char* out, std::size_t room, std::size_t& written) {
        m_stream.next_in = reinterpret_cast<const std::uint8_t*>(in.data()); // NOLINT
        m_stream.avail_in = in.size();
        m_stream.next_out = reinterpret_cast<std::uint8_t*>(out); // NOLINT
        m_stream.avail_out = room;
        const lzma_ret result = lzma_code(&m_stream, LZMA_RUN);
        in.remove_prefix(in.size() - m_stream.avail_in);
        written = room - m_stream.avail_out;
        if (result == LZMA_STREAM_END) {
            start();
            return outcome_t::ended;
        }
        switch (result) {
        case LZMA_OK:
        case LZMA_BUF_ERROR: return outcome_t::going;
        case LZMA_MEMLIMIT_ERROR:
        case LZMA_MEM_ERROR: return outcome_t::tooLarge;
        default: return outcome_t::damaged;
        }
    }

private:
    void start() {
        constexpr std::uint64_t mostMemory = 1073741824;
        if (lzma_stream_decoder(&m_stream, mostMemory, 0) != LZMA_OK) {
            throw std::bad_alloc();
        }
    }

    lzma_stream m_stream = LZMA_STREAM_INIT;
};

class bzip2Codec_t {
public:
    static bool startsMember(char c) { return c == 'B'; }

    bzip2Codec_t() { start(); }
    bzip2Codec_t(const bzip2Codec_t&) = delete;
    bzip2Codec_t& operator=(const bzip2Codec_t&) = delete;
    ~bzip2Codec_t() { BZ2_bzDecompressEnd(&m_stream); }

    outcome_t step(std::string_view& in, char* out, std::size_t room, std::size_t& written) {
        m_stream.next_in = const_cast<char*>(in.data()); // NOLINT
        m_stream.avail_in = static_cast<unsigned>(in.size());
        m_stream.next_out = out;
        m_stream.avail_out = static_cast<unsigned>(room);
        const int result = BZ2_bzDecompress(&m_stream);
        in.remove_prefix(in.size() - m_stream.avail_in);
        written = room - m_stream.avail_out;
        switch (result) {
        case BZ_OK: return outcome_t::going;
        case BZ_STREAM_END:
            BZ2_bzDecompressEnd(&m_stream);
            start();
            return outcome_t::ended;
        case BZ_MEM_ERROR: return outcome_t::tooLarge;
        default: return outcome_t::damaged;
        }
    }

private:
    void start() {
        m_stream = {};
        if (BZ2_bzDecompressInit(&m_stream, 0, 0) != BZ_OK) {
            throw std::bad_alloc();
        }
    }

    bz_stream m_stream = {};
};

class lz4Codec_t {
public:
    static bool startsMember(char c) { return c == '\x04' || startsSkippedFrame(c); }

    lz4Codec_t() {
        if (LZ4F_isError(LZ4F_createDecompressionContext(&m_context, LZ4F_VERSION)) != 0) {
            throw std::bad_alloc();
        }
    }
    lz4Codec_t(const lz4Codec_t&) = delete;
    lz4Codec_t& operator=(const lz4Codec_t&) = delete;
    ~lz4Codec_t() { LZ4F_freeDecompressionContext(m_context); }

    outcome_t step(std::string_view& in, char* out, std::size_t room, std::size_t& written) {
        std::size_t taken = bytesOfBlock(in, m_wanted, blockHeader);
        written = room;
        m_wanted = LZ4F_decompress(m_context, out, &written, in.data(), &taken, nullptr);
        if (LZ4F_isError(m_wanted) != 0) {
            written = 0;
            return outcome_t::damaged;
        }
        in.remove_prefix(taken);
        if (m_wanted > 0) {
            return outcome_t::going;
        }
        m_wanted = firstWanted;
        return outcome_t::ended;
    }

private:
    static constexpr std::size_t blockHeader = 4;
    static constexpr std::size_t firstWanted = 7; // the shortest header

    LZ4F_dctx* m_context = nullptr;
    std::size_t m_wanted = firstWanted;
};

// A compressed stream, which may have several members, each complete in itself. What can be
// unpacked is handed on at once.
template <typename Codec>
class packedBytes_t : public bytes_t {
public:
    explicit packedBytes_t(bytes_t& packed) : m_packed(packed), m_buffer(bufferSize, '\0') {}

    std::string_view read() override {
        while (m_fault.empty() && (m_isFull || hasInput())) {
            std::size_t written = 0;
            const outcome_t step = m_codec.step(m_in, m_buffer.data(), m_buffer.size(), written);
            m_isInside = step == outcome_t::going;
            m_isFull = m_isInside && written == m_buffer.size(); // there may be more of it
            m_hasMember = m_hasMember || step == outcome_t::ended;
            m_fault = step == outcome_t::damaged    ? damagedText
                      : step == outcome_t::tooLarge ? "unpacking it takes too much memory"
                                                    : "";
            if (written > 0) {
                return {m_buffer.data(), written};
            }
        }
        return {};
    }

    std::string fault() const override { return m_fault; }

private:
    bool hasInput() {
        for (;;) {
            while (!m_isInside && !m_in.empty() && m_in[0] == '\0') { // padding
                m_in.remove_prefix(1);
            }
            if (!m_in.empty()) {
                if (!m_isInside && m_hasMember && !Codec::startsMember(m_in[0])) {
                    m_fault = "other bytes follow the compressed data";
                }
                return m_fault.empty();
            }
            m_in = m_packed.read();
            if (m_in.empty()) {
                m_fault = m_packed.fault();
                if (m_fault.empty() && m_isInside) {
                    m_fault = cutOffText;
                }
                return false;
            }
        }
    }

    bytes_t& m_packed;
    std::string_view m_in;
    std::string m_buffer;
    Codec m_codec;
    bool m_isInside = true;
    bool m_isFull = false;
    bool m_hasMember = false;
    std::string m_fault;
};

// The bytes of an archive on their way to the archive library.
struct archiveBytes_t {
    std::string_view read() {
        const std::string_view block = packed.read();
        isAtEnd = block.empty();
        tail.append(block.substr(block.size() - std::min(block.size(), tailLength)));
        tail.erase(0, tail.size() - std::min(tail.size(), tailLength));
        return block;
    }

    bytes_t& packed;
    std::size_t tailLength;
    std::string tail; ///< the last `tailLength` bytes so far
    bool isAtEnd = false;
};

// A zip archive ends with a record of 22 bytes: a mark, the number of members, at last the length
// of the comment behind the record.
constexpr std::size_t zipEndLength = 22;
constexpr std::size_t zipEndMost = zipEndLength + 65535;

// What is wrong with a zip archive that ends with `tail`, if this many members were found in it.
std::string zipEndFault(std::string_view tail, std::size_t found) {
    constexpr std::size_t countAt = 10;
    constexpr std::size_t commentLengthAt = 20;
    constexpr std::size_t countElsewhere = 65535; // in a record for large archives
    const std::size_t start = tail.rfind("PK\x05\x06");
    if (start == std::string_view::npos || tail.size() - start < zipEndLength) {
        return cutOffText;
    }
    const auto number = [&](std::size_t place) {
        const auto low = static_cast<unsigned char>(tail[start + place]);
        const auto high = static_cast<unsigned char>(tail[start + place + 1]);
        return static_cast<std::size_t>(low) + 256 * static_cast<std::size_t>(high);
    };
    const std::size_t end = start + zipEndLength + number(commentLengthAt);
    if (end > tail.size()) {
        return cutOffText;
    }
    const bool areSomeLost = number(countAt) != countElsewhere && number(countAt) > found;
    const bool isPaddingLeft = tail.find_first_not_of('\0', end) == std::string_view::npos;
    return areSomeLost || !isPaddingLeft ? damagedText : "";
}

// An archive, which the archive library reads.
class archiveMembers_t : public members_t {
public:
    archiveMembers_t(packing_t format, bytes_t& packed)
        : m_isTar(format == packing_t::tar), m_bytes{packed, m_isTar ? 0 : zipEndMost, {}},
          m_archive(archive_read_new(), archive_read_free) {
        archive* const reader = m_archive.get();
        if (m_isTar) {
            archive_read_support_format_tar(reader);
        } else {
            archive_read_support_format_zip_streamable(reader);
        }
        // A failure here is reported at the first member.
        static_cast<void>(archive_read_open(reader, &m_bytes, nullptr, give, nullptr));
    }

    bool next(std::string& name) override {
        archive_entry* entry = nullptr;
        m_fault.clear();
        while (!m_isOver) {
            const int result = archive_read_next_header(m_archive.get(), &entry);
            if (result == ARCHIVE_EOF) {
                finish();
            } else if (result != ARCHIVE_WARN && !keep(result)) {
                m_isOver = true;
            } else if (archive_entry_filetype(entry) == AE_IFREG) {
                const char* const path = archive_entry_pathname(entry);
                name = path != nullptr ? path : "";
                m_hasMember = true;
                return true;
            }
        }
        return false;
    }

    std::string_view read() override {
        while (m_hasMember) {
            const void* data = nullptr;
            std::size_t size = 0;
            la_int64_t offset = 0;
            const int result = archive_read_data_block(m_archive.get(), &data, &size, &offset);
            m_hasMember = result == ARCHIVE_OK || result == ARCHIVE_WARN; // wrong sum or length
            if (result != ARCHIVE_EOF) {
                keep(result);
            }
            if (m_hasMember && size > 0) {
                return {static_cast<const char*>(data), size};
            }
        }
        return {};
    }

    std::string fault() const override { return m_fault; }

private:
    // Whether the call succeeded; keeps the fault if not.
    bool keep(int result) {
        if (result == ARCHIVE_OK) {
            return true;
        }
        m_isOver = result == ARCHIVE_FATAL;
        m_fault = m_bytes.packed.fault();
        if (m_fault.empty() && result == ARCHIVE_FAILED) { // encrypted, an unknown method
            const char* const text = archive_error_string(m_archive.get());
            m_fault = fmt::format("cannot be unpacked here ({}); unpack it into a file first",
                                  text != nullptr ? text : "unknown method");
        } else if (m_fault.empty()) {
            m_fault = m_isOver && m_bytes.isAtEnd ? cutOffText : damagedText;
        }
        return false;
    }

    // At the end mark, the rest is read, because some faults only show there. The library also
    // takes the end of a tar archive for an end mark, and does not read on behind a zip archive's
    // members.
    void finish() {
        m_isOver = true;
        const bool isTarCutOff = m_isTar && m_bytes.isAtEnd;
        while (!m_bytes.isAtEnd) {
            m_bytes.read();
        }
        m_fault = m_bytes.packed.fault();
        if (m_fault.empty() && !m_isTar) {
            const int found = archive_file_count(m_archive.get());
            m_fault = zipEndFault(m_bytes.tail, static_cast<std::size_t>(found));
        } else if (m_fault.empty() && isTarCutOff) {
            m_fault = cutOffText;
        }
    }

    static la_ssize_t give(archive* /*reader*/, void* bytes, const void** block) {
        const std::string_view read = static_cast<archiveBytes_t*>(bytes)->read();
        *block = read.data();
        return static_cast<la_ssize_t>(read.size());
    }

    bool m_isTar;
    archiveBytes_t m_bytes;
    std::unique_ptr<archive, int (*)(archive*)> m_archive;
    bool m_hasMember = false;
    bool m_isOver = false;
    std::string m_fault; ///< of the member, or of the archive when there are no more members
};

} // namespace

packing_t contentOf(std::string_view start, bool mayBeTar) {
    for (const magic_t& magic : magics) {
        const std::size_t known = std::min(start.size(), magic.bytes.size());
        if (std::equal(start.begin(), start.begin() + static_cast<std::ptrdiff_t>(known),
                       magic.bytes.begin(), fits)) {
            return known == magic.bytes.size() ? magic.content : packing_t::undecided;
        }
    }
    return mayBeTar ? tarOrText(start) : packing_t::text;
}

std::unique_ptr<bytes_t> unpack(packing_t format, bytes_t& packed) {
    switch (format) {
    case packing_t::gzip: return std::make_unique<packedBytes_t<gzipCodec_t>>(packed);
    case packing_t::zstd: return std::make_unique<packedBytes_t<zstdCodec_t>>(packed);
    case packing_t::xz: return std::make_unique<packedBytes_t<xzCodec_t>>(packed);
    case packing_t::bzip2: return std::make_unique<packedBytes_t<bzip2Codec_t>>(packed);
    default: return std::make_unique<packedBytes_t<lz4Codec_t>>(packed);
    }
}

std::unique_ptr<members_t> openArchive(packing_t format, bytes_t& archive) {
    return std::make_unique<archiveMembers_t>(format, archive);
}
