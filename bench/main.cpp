// Measures the library and the columns on the lines of a recording, and a reference pass over the
// same lines.
// usage: kalo-bench RECORDING [Google Benchmark's options]
//        kalo-bench RECORDING --run PASS COUNT   only runs a pass, for tools that watch the program
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <map>
#include <new>

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include "bench/columns.h"
#include "bench/passes.h"

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

struct named_t {
    std::string name;
    unsigned long (*run)(const sentences_t& sentences);
    const sentences_t& sentences;
};

void registerPass(const named_t& pass) {
    benchmark::RegisterBenchmark(pass.name.c_str(), [pass](benchmark::State& state) {
        const unsigned long before = allocations;
        for (auto _ : state) {
            benchmark::DoNotOptimize(pass.run(pass.sentences));
        }
        state.counters["sentences"] = static_cast<double>(pass.sentences.size());
        state.counters["allocations"] =
            static_cast<double>(allocations - before) / static_cast<double>(state.iterations());
    })->Unit(benchmark::kMillisecond);
}

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
    if (argc < 2) {
        fmt::print(stderr, "usage: kalo-bench RECORDING [OPTION...]\n");
        return 2;
    }
    const std::string log = readFile(argv[1]);
    const sentences_t lines = split(log);
    const subset_t sentences(lines, isSentence);
    const sentences_t numbers = numberTexts(sentences.lines);

    std::vector<named_t> passes{{"log/reference", referencePass, lines},
                                {"log/columns", columnsPass, lines},
                                {"all/reference", referencePass, sentences.lines},
                                {"numbers/from text, per number", numbersFromText, numbers}};
    for (const pass_t& pass : mixedPasses()) {
        passes.push_back({fmt::format("all/{}", pass.name), pass.run, sentences.lines});
    }
    std::map<std::string, subset_t> subsets;
    for (const pass_t& pass : typePasses()) {
        const std::string type = pass.type;
        const auto [subset, isNew] = subsets.try_emplace(
            type, lines, [&](std::string_view line) { return isOfType(line, type); });
        const sentences_t& ofType = subset->second.lines;
        if (isNew && !ofType.empty()) {
            passes.push_back({type + "/reference", referencePass, ofType});
        }
        if (!ofType.empty()) {
            passes.push_back({fmt::format("{}/{}", type, pass.name), pass.run, ofType});
        }
    }

    if (argc == 5 && std::strcmp(argv[2], "--run") == 0) {
        const auto isWanted = [&](const named_t& pass) { return pass.name == argv[3]; };
        const auto pass = std::find_if(passes.begin(), passes.end(), isWanted);
        for (int i = std::atoi(argv[4]); pass != passes.end() && i > 0; --i) {
            benchmark::DoNotOptimize(pass->run(pass->sentences));
        }
        return pass != passes.end() ? 0 : 1;
    }
    std::for_each(passes.begin(), passes.end(), registerPass);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
