// What the fuzz targets share. A target is a function of one input, in a source of the same name.
// It calls one entry of kalo with the input, and `require` states what must hold for any bytes.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace fuzz {

void answers(std::string_view input);
void ats(std::string_view input);
void bufferStream(std::string_view input);
void calendar(std::string_view input);
void dictionary(std::string_view input);
void encode(std::string_view input);
void fields(std::string_view input);
void framing(std::string_view input);
void gpsTime(std::string_view input);
void gsvSet(std::string_view input);
void numbers(std::string_view input);
void packed(std::string_view input);
void pipeline(std::string_view input);
void report(std::string_view input);
void sourcetable(std::string_view input);
void splitting(std::string_view input);
void timeContext(std::string_view input);
void tss1(std::string_view input);
void views(std::string_view input);

/// Ends the program with a message if `holds` is false.
inline void require(bool holds, const char* what) {
    if (!holds) {
        static_cast<void>(std::fprintf(stderr, "does not hold: %s\n", what));
        std::abort();
    }
}

/// Takes the values of a sequence of calls off the front of an input. When it is used up, values
/// are 0 and texts are empty.
class draw_t {
public:
    explicit draw_t(std::string_view input) : m_rest(input) {}

    bool isEmpty() const { return m_rest.empty(); }

    template <typename T>
    T take() {
        static_assert(std::is_arithmetic_v<T>);
        T value{};
        const std::size_t size = std::min(sizeof value, m_rest.size());
        std::memcpy(&value, m_rest.data(), size);
        m_rest.remove_prefix(size);
        return value;
    }

    unsigned below(unsigned count) { return take<std::uint8_t>() % count; }

    /// Any double, or one of a usual size: random bits are rarely one.
    double real() {
        constexpr double thousand = 1000;
        switch (below(4)) {
        case 0: return take<double>();
        case 1: return take<std::int32_t>();
        case 2: return static_cast<double>(take<std::int64_t>()) / thousand;
        default: return take<std::int32_t>() / thousand;
        }
    }

    std::string_view text() {
        const std::size_t wanted = take<std::uint8_t>();
        const std::size_t size = std::min(wanted, m_rest.size());
        const std::string_view text = m_rest.substr(0, size);
        m_rest.remove_prefix(size);
        return text;
    }

private:
    std::string_view m_rest;
};

/// Random numbers that the input decides, so that inputs are plain logs.
inline std::minstd_rand randomOf(std::string_view input) {
    std::uint32_t hash = 2166136261; // FNV-1a
    for (const char c : input) {
        hash = (hash ^ static_cast<unsigned char>(c)) * 16777619;
    }
    return std::minstd_rand(hash);
}

/// The input cut into pieces, as reads may return it: mostly short ones, none empty.
inline std::vector<std::string_view> piecesOf(std::string_view input) {
    std::minstd_rand random = randomOf(input);
    std::vector<std::string_view> pieces;
    while (!input.empty()) {
        const std::size_t most = random() % 4 == 0 ? 5000 : 40;
        pieces.push_back(input.substr(0, 1 + random() % most));
        input.remove_prefix(pieces.back().size());
    }
    return pieces;
}

/// The lines of an input, each with its line feed.
inline std::vector<std::string_view> linesOf(std::string_view input) {
    std::vector<std::string_view> lines;
    while (!input.empty()) {
        lines.push_back(input.substr(0, std::min(input.find('\n'), input.size() - 1) + 1));
        input.remove_prefix(lines.back().size());
    }
    return lines;
}

/// Whether two values have the same bits, so that NaN equals itself and -0 is not 0.
template <typename T>
bool hasSameBits(const T& left, const T& right) {
    static_assert(std::is_arithmetic_v<T> || std::is_enum_v<T>);
    return std::memcmp(&left, &right, sizeof left) == 0;
}

} // namespace fuzz
