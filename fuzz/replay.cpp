// Runs one fuzz target over inputs that are kept: its corpus, its findings, and recordings. Needs
// no fuzzer, so that any compiler builds it.
//
// usage: kalo-fuzz-replay TARGET FILE-OR-FOLDER...
//
// A file that ends in ".pack" holds many inputs: for each its length in decimal digits, a line feed
// and its bytes. A file that ends in ".log" is a recording: the target gets it as a whole, and each
// of its lines. Any other file is one input.
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "fuzz/target.h"
#include "tests/text.h"

namespace {

namespace fs = std::filesystem;

struct target_t {
    std::string_view name;
    void (*run)(std::string_view input);
};

constexpr target_t targets[] = {{"answers", fuzz::answers},
                                {"ats", fuzz::ats},
                                {"bufferStream", fuzz::bufferStream},
                                {"calendar", fuzz::calendar},
                                {"dictionary", fuzz::dictionary},
                                {"encode", fuzz::encode},
                                {"fields", fuzz::fields},
                                {"framing", fuzz::framing},
                                {"gpsTime", fuzz::gpsTime},
                                {"gsvSet", fuzz::gsvSet},
                                {"numbers", fuzz::numbers},
                                {"packed", fuzz::packed},
                                {"pipeline", fuzz::pipeline},
#ifdef KALO_HAS_REPORT
                                {"report", fuzz::report},
#endif
                                {"sourcetable", fuzz::sourcetable},
                                {"splitting", fuzz::splitting},
                                {"timeContext", fuzz::timeContext},
                                {"tss1", fuzz::tss1},
                                {"views", fuzz::views}};

std::string place; // of the input

class replay_t {
public:
    explicit replay_t(const target_t& target) : m_target(target) {}

    int count() const { return m_count; }

    void runAll(const fs::path& path) {
        if (!fs::is_directory(path)) {
            runFile(path);
            return;
        }
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(path)) {
            if (entry.is_regular_file()) {
                runFile(entry.path());
            }
        }
    }

private:
    void runFile(const fs::path& path) {
        place = path.string() + '\n';
        std::ifstream file(path, std::ios::binary);
        fuzz::require(file.is_open(), "the file can be read");
        const std::string text{std::istreambuf_iterator<char>(file), {}};
        if (path.extension() == ".pack") {
            runPack(path, text);
            return;
        }
        run(path, text);
        if (path.extension() == ".log") {
            for (const std::string_view line : fuzz::linesOf(text)) {
                run(path, line);
            }
        }
    }

    void runPack(const fs::path& path, std::string_view pack) {
        while (!pack.empty()) {
            const std::size_t end = pack.find('\n');
            const std::size_t size = std::stoul(std::string(pack.substr(0, end)));
            run(path, pack.substr(end + 1, size));
            pack.remove_prefix(end + 1 + size);
        }
    }

    void run(const fs::path& path, std::string_view input) {
        ++m_count;
        place = path.string() + ", input " + std::to_string(m_count) + '\n';
        m_target.run(guarded(input));
    }

    const target_t& m_target;
    int m_count = 0;
};

constexpr int fatalSignals[] = {SIGABRT, SIGSEGV, SIGFPE, SIGILL};
struct sigaction actionsBefore[std::size(fatalSignals)]; // of a sanitizer, or none

// Says which input it was before the program dies: the signal comes again, and finds what was there
// before.
void printPlace(int /*signal*/) {
    for (std::size_t i = 0; i < std::size(fatalSignals); ++i) {
        static_cast<void>(sigaction(fatalSignals[i], &actionsBefore[i], nullptr));
    }
    if (write(STDERR_FILENO, place.data(), place.size()) < 0) {
        std::_Exit(EXIT_FAILURE);
    }
}

void catchFatalSignals() {
    struct sigaction action {};
    action.sa_handler = printPlace;
    for (std::size_t i = 0; i < std::size(fatalSignals); ++i) {
        static_cast<void>(sigaction(fatalSignals[i], &action, &actionsBefore[i]));
    }
}

} // namespace

int main(int argc, char** argv) {
    const std::string_view name = argc > 1 ? argv[1] : "";
    const auto* const target = std::find_if(std::begin(targets), std::end(targets),
                                            [&](const target_t& row) { return row.name == name; });
    fuzz::require(target != std::end(targets), "there is such a target");
    catchFatalSignals();
    replay_t replay(*target);
    for (int i = 2; i < argc; ++i) {
        replay.runAll(argv[i]);
    }
    std::printf("%d inputs\n", replay.count());
    fuzz::require(replay.count() > 0, "there are inputs");
}
