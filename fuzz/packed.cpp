// Any bytes are unpacked as each format, and the result is the same wherever reads are cut. What an
// input holds is decided by its first bytes, and more bytes do not change it.
#include "fuzz/target.h"
#include "tools/input/unpack.h"

namespace {

using fuzz::require;

/// An input that arrives in these pieces.
class givenBytes_t : public bytes_t {
public:
    explicit givenBytes_t(std::vector<std::string_view> pieces) : m_pieces(std::move(pieces)) {}

    std::string_view read() override {
        return m_next < m_pieces.size() ? m_pieces[m_next++] : std::string_view();
    }
    std::string fault() const override { return {}; }

private:
    std::vector<std::string_view> m_pieces;
    std::size_t m_next = 0;
};

// A small input may unpack to gigabytes.
constexpr std::size_t mostUnpacked = 1000000;
constexpr std::size_t mostMembers = 20;

bool isArchive(packing_t format) { return format == packing_t::zip || format == packing_t::tar; }

struct member_t {
    std::string name;
    std::string text;
    std::string fault;
};

member_t readAll(const std::string& name, bytes_t& bytes) {
    member_t member{name, {}, {}};
    while (member.text.size() < mostUnpacked) {
        const std::string_view block = bytes.read();
        if (block.empty()) {
            require(bytes.read().empty(), "the end stays the end");
            member.fault = bytes.fault();
            return member;
        }
        member.text += block;
    }
    member.text.resize(mostUnpacked);
    return member;
}

std::vector<member_t> unpacked(packing_t format, std::vector<std::string_view> pieces) {
    givenBytes_t given(std::move(pieces));
    if (!isArchive(format)) {
        return {readAll("", *unpack(format, given))};
    }
    const auto members = openArchive(format, given);
    std::vector<member_t> all;
    for (std::string name; all.size() < mostMembers && members->next(name);) {
        all.push_back(readAll(name, *members));
    }
    all.push_back({"", "", members->fault()});
    return all;
}

// With a fault, the libraries for archives, xz and zstd keep back some of what they have unpacked
// before it, or give some of what is damaged, as reads are cut.
bool isSame(packing_t format, const member_t& left, const member_t& right) {
    const bool mayBeShort =
        (isArchive(format) || format == packing_t::xz || format == packing_t::zstd) &&
        !left.fault.empty();
    const std::size_t length =
        mayBeShort ? std::min(left.text.size(), right.text.size()) : std::string::npos;
    return left.name == right.name && left.fault == right.fault &&
           left.text.substr(0, length) == right.text.substr(0, length);
}

void checkContent(std::string_view input, bool mayBeTar) {
    const packing_t content = contentOf(input, mayBeTar);
    constexpr std::size_t mostNeeded = 300;
    require(input.size() < mostNeeded || content != packing_t::undecided, "decided early");
    for (std::size_t length = 0; length < std::min(input.size(), mostNeeded); ++length) {
        const packing_t early = contentOf(input.substr(0, length), mayBeTar);
        require(early == packing_t::undecided || early == content, "more bytes do not change it");
    }
}

} // namespace

void fuzz::packed(std::string_view input) {
    checkContent(input, false);
    checkContent(input, true);
    constexpr packing_t formats[] = {packing_t::gzip,  packing_t::zstd, packing_t::xz,
                                     packing_t::bzip2, packing_t::lz4,  packing_t::zip,
                                     packing_t::tar};
    for (const packing_t format : formats) {
        const auto whole = unpacked(format, {input});
        const auto cut = unpacked(format, piecesOf(input));
        require(std::equal(whole.begin(), whole.end(), cut.begin(), cut.end(),
                           [&](const member_t& left, const member_t& right) {
                               return isSame(format, left, right);
                           }),
                "cuts change nothing");
    }
}
