// Measures the library and the tool against a reference pass over the same bytes.
// usage: kalo-bench RECORDING TOOL OUTPUT.json [Google Benchmark's options]
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <new>

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include "bench/passes.h"
#include "kalo/nmea/nmeaFormat.h"

namespace {

unsigned long allocations = 0;

} // namespace

void* operator new(std::size_t size) {
    ++allocations;
    if (void* memory = std::malloc(size > 0 ? size : 1)) {
        return memory;
    }
    throw std::bad_alloc();
}
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wmismatched-new-delete" // it does not see the pair above and below
#endif
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }

namespace {

const std::string referenceName = "reference";

std::vector<std::string> passNames; // in the order of the table

std::size_t byteCount(const sentences_t& sentences) {
    std::size_t count = 0;
    for (const std::string_view text : sentences) {
        count += text.size();
    }
    return count;
}

void report(benchmark::State& state, const sentences_t& sentences, unsigned long allocated) {
    const auto passes = static_cast<double>(state.iterations());
    state.counters["sentences"] = static_cast<double>(sentences.size());
    state.counters["bytes"] = static_cast<double>(byteCount(sentences));
    state.counters["allocations"] = static_cast<double>(allocated) / passes;
}

void addPass(const std::string& group, const std::string& name,
             unsigned long (*run)(const sentences_t&), const sentences_t& sentences) {
    passNames.push_back(group + "/" + name);
    benchmark::RegisterBenchmark(passNames.back().c_str(),
                                 [=, &sentences](benchmark::State& state) {
                                     const unsigned long before = allocations;
                                     for (auto _ : state) {
                                         benchmark::DoNotOptimize(run(sentences));
                                     }
                                     report(state, sentences, allocations - before);
                                 })
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime();
}

void addTool(const std::string& group, const std::string& command, const sentences_t& sentences) {
    passNames.push_back(group + "/the tool, to JSON lines");
    benchmark::RegisterBenchmark(passNames.back().c_str(),
                                 [=, &sentences](benchmark::State& state) {
                                     for (auto _ : state) {
                                         if (std::system(command.c_str()) != 0) {
                                             state.SkipWithError("the tool failed");
                                         }
                                     }
                                     report(state, sentences, 0);
                                 })
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime();
}

// Collects the repetitions; the table comes at the end, with medians and ratios.
class reporter_t : public benchmark::BenchmarkReporter {
public:
    struct result_t {
        std::string group;
        std::string name;
        double sentences;
        double bytes;
        double allocations;
        std::vector<double> seconds;

        double median() const {
            std::vector<double> sorted = seconds;
            std::sort(sorted.begin(), sorted.end());
            return sorted.empty() ? 0 : sorted[sorted.size() / 2];
        }
    };

    bool ReportContext(const Context& /*context*/) override { return true; }

    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type != Run::RT_Iteration || run.error_occurred) {
                continue;
            }
            const std::string full = run.run_name.function_name;
            result_t& result = m_results[full];
            if (result.seconds.empty()) {
                const std::size_t slash = full.find('/');
                result.group = full.substr(0, slash);
                result.name = full.substr(slash + 1);
                result.sentences = run.counters.at("sentences");
                result.bytes = run.counters.at("bytes");
                result.allocations = run.counters.at("allocations");
            }
            result.seconds.push_back(run.real_accumulated_time /
                                     static_cast<double>(run.iterations));
        }
    }

    void print(std::FILE* json) const {
        fmt::print("{:>7} {:>9} {:>8} {:>11}  {}\n", "ratio", "ns/sent.", "MB/s", "alloc/sent.",
                   "pass");
        fmt::print(json, "[");
        const char* separator = "\n";
        for (const std::string& full : passNames) {
            const auto found = m_results.find(full);
            if (found == m_results.end()) {
                continue;
            }
            const result_t& result = found->second;
            const double seconds = result.median();
            const double ratio =
                seconds / m_results.at(result.group + "/" + referenceName).median();
            const double nanoseconds = seconds * 1e9 / result.sentences;
            const double speed = result.bytes / seconds / 1e6;
            const double allocated = result.allocations / result.sentences;
            fmt::print("{:7.2f} {:9.1f} {:8.0f} {:11.3f}  {}: {}\n", ratio, nanoseconds, speed,
                       allocated, result.group, result.name);
            fmt::print(
                json,
                "{}{{\"group\":\"{}\",\"pass\":\"{}\",\"ratio\":{:.3f},\"nsPerSentence\":{:.1f},"
                "\"megabytesPerSecond\":{:.1f},\"allocationsPerSentence\":{:.4f},"
                "\"sentences\":{}}}",
                separator, result.group, result.name, ratio, nanoseconds, speed, allocated,
                result.sentences);
            separator = ",\n";
        }
        fmt::print(json, "\n]\n");
    }

private:
    std::map<std::string, result_t> m_results;
};

std::string readFile(const char* path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

sentences_t split(std::string_view log) {
    sentences_t sentences;
    while (!log.empty()) {
        const std::size_t length = std::min(log.find('\n'), log.size() - 1) + 1;
        sentences.push_back(log.substr(0, length));
        log.remove_prefix(length);
    }
    return sentences;
}

bool isSentence(std::string_view line) { return line[0] == '$' || line[0] == '!'; }

bool isOfType(std::string_view line, std::string_view type) {
    if (!isSentence(line)) {
        return type == "TSS1"  ? line[0] == ':'
               : type == "ATS" ? line[0] >= '0' && line[0] <= '9'
                               : line.substr(0, line.find(';')) == type;
    }
    const std::string_view name = line.substr(1, line.find(',') - 1);
    return name == type || (name[0] != 'P' && name.size() > type.size() && type.size() == 3 &&
                            name.substr(name.size() - type.size()) == type);
}

// Some of the lines of a log, moved together.
struct subset_t {
    std::string text;
    sentences_t lines;

    template <typename Choice>
    subset_t(const sentences_t& all, const Choice& isWanted) {
        for (const std::string_view line : all) {
            text += isWanted(line) ? line : "";
        }
        lines = split(text);
    }
};

} // namespace

int main(int argc, char** argv) {
    if (argc < 4) {
        fmt::print(stderr, "usage: kalo-bench RECORDING TOOL OUTPUT.json [OPTION...]\n");
        return 2;
    }
    const std::string recording = argv[1];
    const std::string tool = argv[2];
    const std::string output = argv[3];
    argc -= 3;
    std::copy(argv + 4, argv + 4 + argc - 1, argv + 1);
    const std::string log = readFile(recording.c_str());
    const sentences_t lines = split(log);
    const subset_t sentences(lines, isSentence);

    addPass("all", referenceName, referencePass, sentences.lines);
    for (const pass_t& pass : mixedPasses()) {
        addPass(pass.type, pass.name, pass.run, sentences.lines);
    }
    addPass("log", referenceName, referencePass, lines);
    addTool("log", tool + " decode --quiet " + recording + " > /dev/null", lines);
    std::map<std::string, subset_t> subsets;
    for (const pass_t& pass : typePasses()) {
        const std::string type = pass.type;
        const auto [subset, isNew] = subsets.try_emplace(
            type, lines, [&](std::string_view line) { return isOfType(line, type); });
        if (isNew) {
            addPass(type, referenceName, referencePass, subset->second.lines);
        }
        addPass(type, pass.name, pass.run, subset->second.lines);
    }

    benchmark::Initialize(&argc, argv);
    reporter_t reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    std::FILE* json = std::fopen(output.c_str(), "w");
    if (json == nullptr) {
        fmt::print(stderr, "kalo-bench: {}: cannot be written\n", output);
        return 1;
    }
    reporter.print(json);
    return std::fclose(json) == 0 ? 0 : 1;
}
