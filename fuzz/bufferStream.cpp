// Any output into memory of any size: its beginning is there, the rest is counted, and nothing
// around the memory changes.
#include <sstream>

#include "fuzz/target.h"
#include "kalo/util/bufferStream.h"

namespace {

// One insertion, the same in both streams.
void write(std::ostream& stream, unsigned kind, std::string_view text, double number) {
    switch (kind) {
    case 0: stream << text; break;
    case 1: stream.put(text.empty() ? '\0' : text[0]); break;
    case 2: stream << number << ' '; break;
    case 3: stream << std::hex << text.size(); break;
    case 4: stream.write(text.data(), static_cast<std::streamsize>(text.size())); break;
    default: stream << std::flush; break;
    }
}

} // namespace

void fuzz::bufferStream(std::string_view input) {
    constexpr std::size_t guard = 8;
    draw_t draw(input);
    const std::size_t size = draw.take<std::uint8_t>();
    std::string memory(guard + size + guard, '\xA5');
    kalo::bufferStream_t stream(&memory[guard], size);
    std::ostringstream expected;
    while (!draw.isEmpty()) {
        const unsigned kind = draw.below(6);
        const std::string_view text = draw.text();
        const double number = kind == 2 ? draw.real() : 0;
        write(stream, kind, text, number);
        write(expected, kind, text, number);
    }
    const std::string all = expected.str();
    const std::size_t fits = std::min(all.size(), size);
    require(stream.good(), "a full buffer is no error");
    require(stream.written() == fits && stream.dropped() == all.size() - fits,
            "what does not fit is counted");
    require(memory == std::string(guard, '\xA5') + all.substr(0, fits) +
                          std::string(size - fits + guard, '\xA5'),
            "the beginning is there, and nothing else");
}
