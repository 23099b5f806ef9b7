// The entry of libFuzzer for the targets that read sentences, with a mutator: seven of eight inputs
// get the checksums and line ends of their sentences repaired, since nearly every other change
// would only end at the checksum. The environment variable KALO_FUZZ_RAW switches it off. At the
// end, the program prints how many inputs began with a well-formed sentence, and how many held one
// in any line, as those do that are logs.
#include <cinttypes>

#include "fuzz/target.h"
#include "kalo/nmea/nmeaFormat.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

namespace {

std::uint64_t inputs = 0;
std::uint64_t beginWithOne = 0;
std::uint64_t holdOne = 0;

void printShares() {
    static_cast<void>(std::fprintf(stdout, // not to where the messages of commands go
                                   "inputs that begin with a well-formed sentence: %" PRIu64
                                   ", that hold one: %" PRIu64 ", of %" PRIu64 "\n",
                                   beginWithOne, holdOne, inputs));
}

// Whether there is a well-formed sentence from the first "$" or "!" of the line to its end.
bool holdsSentence(std::string_view line) {
    line.remove_prefix(std::min(line.find_first_of("$!"), line.size()));
    return kalo::nmeaFormat_t(line.data(), line.size()).isValid();
}

// A line with the checksum of its first sentence. What stands after the digits stays or goes.
void appendRepaired(std::string& out, std::string_view line, bool keepsTail) {
    const std::size_t start = line.find_first_of("$!");
    if (start == std::string_view::npos) {
        out += line;
        return;
    }
    line.remove_suffix(line.back() == '\n' ? 1 : 0);
    const std::size_t star = std::min(line.find('*', start), line.find_last_not_of('\r') + 1);
    unsigned sum = 0;
    for (const char c : line.substr(start + 1, star - start - 1)) {
        sum ^= static_cast<unsigned char>(c);
    }
    constexpr const char* digits = "0123456789ABCDEF";
    out.append(line.substr(0, star)).append({'*', digits[sum / 16], digits[sum % 16]});
    constexpr std::size_t sumLength = 3;
    if (keepsTail && line.size() > star + sumLength) {
        out.append(line.substr(star + sumLength));
    }
    out.append("\r\n");
}

} // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t maxSize, unsigned seed) {
    static const bool isOff = std::getenv("KALO_FUZZ_RAW") != nullptr;
    size = LLVMFuzzerMutate(data, size, maxSize);
    if (isOff || seed % 8 == 0) {
        return size;
    }
    std::string repaired;
    for (const std::string_view line : fuzz::linesOf({reinterpret_cast<const char*>(data), size})) {
        appendRepaired(repaired, line, seed / 8 % 4 == 0);
    }
    size = std::min(repaired.size(), maxSize);
    std::memcpy(data, repaired.data(), size);
    return size;
}

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    return std::atexit(printShares);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::string_view line = input.substr(0, input.find('\n') + 1);
    ++inputs;
    beginWithOne += kalo::nmeaFormat_t(line.data(), line.size()).isValid() ? 1 : 0;
    const std::vector<std::string_view> lines = fuzz::linesOf(input);
    holdOne += std::any_of(lines.begin(), lines.end(), holdsSentence) ? 1 : 0;
    fuzz::KALO_FUZZ_TARGET(input);
    return 0;
}
