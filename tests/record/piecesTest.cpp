// Several threads give the same output, counts and status as one.
#include <atomic>

#include "tests/record/logs.h"
#include "tools/command/decodeCommand.h"

namespace {

// A folder for the files of a test.
class folder_t {
public:
    explicit folder_t(const std::string& name)
        : m_path(std::filesystem::temp_directory_path() /
                 ("kalo-" + std::to_string(getpid()) + '-' + name)) {
        std::filesystem::create_directories(m_path);
    }
    folder_t(const folder_t&) = delete;
    folder_t& operator=(const folder_t&) = delete;
    ~folder_t() { std::filesystem::remove_all(m_path); }

    std::string file(const std::string& name) const { return (m_path / name).string(); }

private:
    std::filesystem::path m_path;
};

// What a run prints and returns; the files of a folder one after another.
std::string resultOf(decodeOptions_t options, const pieceOptions_t& pieces, bool isToFolder) {
    const folder_t folder("output");
    options.pieces = pieces;
    options.read.hidesProgress = true;
    if (isToFolder) {
        options.outputFolder = folder.file("tables");
    } else {
        options.output.path = folder.file("output");
    }
    testing::internal::CaptureStderr();
    const int status = decodeCommand(options);
    std::string result =
        testing::internal::GetCapturedStderr() + "status " + std::to_string(status) + '\n';
    if (!isToFolder) {
        return result + textOf(options.output.path);
    }
    for (const log_t& table : logsIn(options.outputFolder)) {
        result += std::filesystem::path(table.name).filename().string() + '\n' + table.text;
    }
    return result;
}

constexpr std::size_t kibi = 1024;
const std::vector<pieceOptions_t> allPieces = {{2, kibi, 0},
                                               {2, 3 * kibi, kibi},
                                               {3, 10 * kibi, 4 * kibi},
                                               {4, 70 * kibi, 10 * kibi},
                                               {2, 1024 * kibi, 32 * kibi}};
const std::vector<pieceOptions_t> fewPieces = {{2, 3 * kibi, kibi}, {3, 70 * kibi, 10 * kibi}};

// Compares without printing all of a long output.
void checkPieces(const decodeOptions_t& options, const std::vector<pieceOptions_t>& cuts,
                 bool isToFolder = false) {
    const std::string whole = resultOf(options, {}, isToFolder);
    for (const pieceOptions_t& pieces : cuts) {
        const std::string result = resultOf(options, pieces, isToFolder);
        std::size_t at = 0;
        while (at < std::min(result.size(), whole.size()) && result[at] == whole[at]) {
            ++at;
        }
        const std::size_t begin = at > 200 ? at - 200 : 0;
        ASSERT_TRUE(at == result.size() && at == whole.size())
            << "with pieces of " << pieces.size << " bytes\n"
            << result.substr(begin, 400) << "\ninstead of\n"
            << whole.substr(begin, 400);
    }
}

// The logs as files.
class madeFiles_t {
public:
    madeFiles_t() {
        for (const log_t& log : madeLogs()) {
            m_names.push_back(m_folder.file(std::to_string(m_names.size())));
            std::ofstream(m_names.back(), std::ios::binary) << log.text;
        }
        for (const log_t& log : shippedLogs()) {
            m_names.push_back(log.name);
        }
    }

    const std::vector<std::string>& names() const { return m_names; }

private:
    folder_t m_folder{"input"};
    std::vector<std::string> m_names;
};

decodeOptions_t optionsFor(const std::vector<std::string>& files) {
    decodeOptions_t options;
    options.files = files;
    options.values.explain = true;
    return options;
}

TEST(pieces, oneFileAtATime) {
    const madeFiles_t files;
    for (const std::string& name : files.names()) {
        checkPieces(optionsFor({name}), allPieces);
    }
}

TEST(pieces, severalFiles) {
    const madeFiles_t files;
    checkPieces(optionsFor(files.names()), allPieces);
}

// Everything that decode can be asked for.
TEST(pieces, options) {
    const madeFiles_t files;
    const decodeOptions_t usual = optionsFor(files.names());
    const auto check = [&](const char* what, auto change, bool isToFolder = false) {
        SCOPED_TRACE(what);
        decodeOptions_t options = usual;
        change(options);
        checkPieces(options, fewPieces, isToFolder);
    };
    check("--date", [](decodeOptions_t& options) {
        options.read.dating.date = kalo::date_t{2026, 3, 14};
    });
    check("--not-before", [](decodeOptions_t& options) {
        options.read.dating.notBefore = kalo::date_t{2030, 1, 1};
    });
    check("--date-order",
          [](decodeOptions_t& options) { options.read.dateOrder = dateOrder_t::dayFirst; });
    check("--since and --until", [](decodeOptions_t& options) {
        options.choice.since = 1773529200; // 2026-03-14T23:00:00Z
        options.choice.until = 1773533400;
    });
    check("--strict", [](decodeOptions_t& options) { options.read.split.strict = true; });
    check("--kind nmea",
          [](decodeOptions_t& options) { options.read.split.only = kind_t::sentence; });
    check("--require-checksum",
          [](decodeOptions_t& options) { options.read.split.requireChecksum = true; });
    check("--only-malformed",
          [](decodeOptions_t& options) { options.choice.onlyMalformed = true; });
    check("--talker, --type, --epoch, --radians, --raw", [](decodeOptions_t& options) {
        options.choice.talkers = {"GP"};
        options.choice.types = {"GLL", "GGA", "SATELLITES"};
        options.values = {true, true, true, true};
    });
    check("--format csv --type GLL --units", [](decodeOptions_t& options) {
        options.format = format_t::csv;
        options.choice.types = {"GLL"};
        options.table.values = options.values;
        options.table.hasUnits = true;
    });
    check(
        "--format tsv --output-dir",
        [](decodeOptions_t& options) {
            options.format = format_t::tsv;
            options.table.format = tableFormat_t::tsv;
            options.table.values = options.values;
        },
        true);
    check("a file that is missing, and one twice", [](decodeOptions_t& options) {
        options.files.insert(options.files.begin() + 2, "missing");
        options.files.push_back(options.files.back());
    });
    check("--quiet", [](decodeOptions_t& options) { options.quiet = true; });
}

// A range is cut into pieces as a file is.
TEST(pieces, ranges) {
    const madeFiles_t files;
    for (const std::string& name : files.names()) {
        decodeOptions_t options = optionsFor({name});
        const std::uint64_t size = std::filesystem::file_size(name);
        options.read.range = byteRange_t{size / 3, size * 5 / 6};
        checkPieces(options, fewPieces);
    }
}

// Counts what is decoded, also what is decoded again.
class counter_t : public pieceConsumer_t {
public:
    explicit counter_t(std::atomic<std::uint64_t>& records) : m_records(records) {}

    void beginInput(const std::string& /*name*/, const recordReader_t& /*reader*/) override {}
    void take(const record_t& /*record*/) override { ++m_records; }
    void endInput(const recordReader_t& /*reader*/) override {}
    void clear() override {}
    void deliver() override {}

private:
    std::atomic<std::uint64_t>& m_records;
};

std::uint64_t decodedRecords(const std::string& file, unsigned jobs) {
    std::atomic<std::uint64_t> records = 0;
    counter_t direct(records);
    output_t none;
    inputOptions_t options;
    options.hidesProgress = true;
    EXPECT_TRUE(readRecordPieces({file}, options, {jobs, 20000, 5000}, none, direct,
                                 [&] { return std::make_unique<counter_t>(records); }));
    return records;
}

// Where the lines in front of a piece tell its state, nothing is decoded twice. This also holds for
// logs that never tell a date.
TEST(pieces, decodedOnce) {
    const folder_t folder("input");
    const auto nothing = [](unsigned /*i*/) { return std::string(); };
    const auto date = [](unsigned i) {
        return i % 30 > 0 ? "" : sentence("$GPZDA," + clockText(i) + ",14,03,2026,00,00");
    };
    for (const std::string& text : {positions(0, 6000, nothing), positions(0, 6000, date)}) {
        std::ofstream(folder.file("log"), std::ios::binary) << text;
        const auto lines = static_cast<std::uint64_t>(std::count(text.begin(), text.end(), '\n'));
        EXPECT_EQ(decodedRecords(folder.file("log"), 3), lines);
    }
}

TEST(pieces, recordings) {
    std::vector<std::string> names;
    for (const log_t& log : recordings()) {
        names.push_back(log.name);
    }
    if (names.empty()) {
        GTEST_SKIP() << "KALO_RECORDINGS names no folder";
    }
    checkPieces(optionsFor(names), allPieces);
    for (const std::string& name : names) {
        checkPieces(optionsFor({name}), allPieces);
    }
    decodeOptions_t tables = optionsFor(names);
    tables.format = format_t::csv;
    tables.table.values = tables.values;
    checkPieces(tables, allPieces, true);
}

} // namespace
