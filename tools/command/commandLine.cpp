#include "tools/command/commandLine.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <ctime>

#include <fmt/format.h>
#include <unistd.h>

#include "kalo/util/stringUtil.h"
#include "tools/command/arguments.h"
#include "tools/command/checkCommand.h"
#include "tools/command/decodeCommand.h"
#include "tools/command/encodeCommand.h"
#include "tools/command/fieldsCommand.h"
#include "tools/command/nearest.h"
#include "tools/command/readInput.h"
#include "tools/command/schemaCommand.h"
#include "tools/command/summaryCommand.h"
#include "tools/command/timeCommand.h"
#include "tools/command/trackCommand.h"
#include "tools/command/typeNames.h"
#include "tools/input/input.h"
#include "tools/input/stamp.h"
#include "tools/record/degrees.h"
#include "tools/terminal/message.h"
#include "tools/terminal/stopSignal.h"
#include "tools/time/calendarDate.h"

namespace {

using texts_t = std::vector<std::string>;

kalo::date_t dateOfArgument(const std::string& text) {
    kalo::date_t date;
    if (!parseDate(text, date)) {
        throw usageError_t("no such date: " + printable(text) + " (expected YYYY-MM-DD)");
    }
    return date;
}

// The first instant of a period, or its last one. A day is a period of its own.
double boundOfArgument(const std::string& text, bool isLast) {
    kalo::date_t date;
    if (parseDate(text, date)) {
        constexpr double secondsPerDay = 86400;
        const double begin = kalo::dateTime_t(date, {}).toTimestamp();
        return isLast ? std::nextafter(begin + secondsPerDay, begin) : begin;
    }
    const std::optional<double> instant = isoTime(text);
    if (!instant) {
        throw usageError_t("no such time: " + printable(text) +
                           " (expected YYYY-MM-DD or YYYY-MM-DDThh:mm:ssZ)");
    }
    return *instant;
}

kalo::gps2utc_t leapOfArgument(const std::string& text) {
    kalo::gps2utc_t leap;
    if (!parseLeap(text, leap)) {
        throw usageError_t("not leap-second parameters: " + printable(text) +
                           " (expected deltaTls,deltaTlsf,wnLsf,dn; the first two up to 127, "
                           "wnLsf up to 255, dn 1 to 7)");
    }
    return leap;
}

double positiveOfArgument(const std::string& text) {
    double number = 0;
    if (!kalo::decode(text, number) || !(number > 0) || !std::isfinite(number)) {
        throw usageError_t("not a number above 0: " + printable(text));
    }
    return number;
}

// An option whose value is a number above 0.
option_t positive(const char* names, const char* operand, double& out, const char* help) {
    return {names, operand, help,
            [&out](const std::string& text) { out = positiveOfArgument(text); }};
}

option_t maxSpeedOption(double& out) {
    return positive("--max-speed", "M/S", out,
                    "Count a step between two positions as a jump if it needs more than this speed "
                    "(default 100)");
}

place_t placeOfArgument(const std::string& text) {
    constexpr double mostLatitude = 90;
    constexpr double mostLongitude = 180;
    const std::size_t comma = std::min(text.find(','), text.size());
    double latitude = 0;
    double longitude = 0;
    if (comma == text.size() || !kalo::decode(text.substr(0, comma), latitude) ||
        !kalo::decode(text.substr(comma + 1), longitude) ||
        !(std::fabs(latitude) <= mostLatitude) || !(std::fabs(longitude) <= mostLongitude)) {
        throw usageError_t("no such place: " + printable(text) +
                           " (expected degrees: LATITUDE,LONGITUDE)");
    }
    return {latitude * radiansPerDegree, longitude * radiansPerDegree};
}

kind_t kindOfArgument(const std::string& text) {
    constexpr struct {
        std::string_view name;
        kind_t kind;
    } kinds[] = {{"nmea", kind_t::sentence},
                 {"tss1", kind_t::motion},
                 {"ats", kind_t::tracking},
                 {"ntrip", kind_t::table}};
    for (const auto& row : kinds) {
        if (row.name == text) {
            return row.kind;
        }
    }
    throw usageError_t("no such kind: " + printable(text) + " (expected nmea, tss1, ats or ntrip)");
}

dateOrder_t orderOfArgument(const std::string& text) {
    if (text != "dmy" && text != "mdy") {
        throw usageError_t("no such order: " + printable(text) + " (expected dmy or mdy)");
    }
    return text == "dmy" ? dateOrder_t::dayFirst : dateOrder_t::monthFirst;
}

std::string inCapitals(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return text;
}

// A verb, and the function that runs it with its operands.
struct command_t {
    verb_t verb;
    std::function<int(const texts_t& operands)> run;
    bool readsInput = false; ///< from standard input if there are no operands
};

// How inputs are read, the same for every verb that reads records.
std::vector<option_t> readingOptions(readOptions_t& read) {
    splitOptions_t& split = read.split;
    return {
        flag("--require-checksum", split.requireChecksum,
             "Report a sentence without a checksum as malformed"),
        flag("--strict", split.strict,
             "Accept a sentence only if it ends in CR LF and nothing stands in front of it"),
        {"--kind", "KIND", "Read every line as this kind of record: nmea, tss1, ats or ntrip",
         [&split](const std::string& text) { split.only = kindOfArgument(text); }},
        sentencesOption(*read.dictionary),
        {"--date", "YYYY-MM-DD|today",
         "The day on which each input begins, for records with a time but no date; "
         "today for live input",
         [&read](const std::string& text) {
             if (text == "today") {
                 read.dating.begin = static_cast<double>(std::time(nullptr));
             } else {
                 read.dating.date = dateOfArgument(text);
             }
         }},
        {"--not-before", "YYYY-MM-DD",
         "Correct receivers past their GPS week rollover: move dates before this day forward by "
         "a multiple of 1024 weeks",
         [&read](const std::string& text) { read.dating.notBefore = dateOfArgument(text); }},
        {"--date-order", "dmy|mdy", "Order of day and month in stamps such as 03/04/2026",
         [&read](const std::string& text) { read.dateOrder = orderOfArgument(text); }}};
}

std::vector<option_t> joined(std::vector<option_t> first, const std::vector<option_t>& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

tableFormat_t tableFormatOf(format_t format) {
    return format == format_t::tsv ? tableFormat_t::tsv : tableFormat_t::csv;
}

// What tables need, and what needs tables.
void completeTable(decodeOptions_t& options) {
    std::vector<std::string>& types = options.choice.types;
    std::sort(types.begin(), types.end());
    types.erase(std::unique(types.begin(), types.end()), types.end());
    tableOptions_t& table = options.table;
    table.values = options.values;
    if (options.format == format_t::json) {
        const char* const option = !table.columns.empty()          ? "--columns"
                                   : table.hasUnits                ? "--units"
                                   : !options.outputFolder.empty() ? "--output-dir"
                                                                   : nullptr;
        if (option != nullptr) {
            throw usageError_t(std::string(option) + " needs --format csv or --format tsv");
        }
        return;
    }
    table.format = tableFormatOf(options.format);
    if (options.outputFolder.empty() && types.size() != 1) {
        throw usageError_t("a table holds records of one type: give --type TYPE, or --output-dir "
                           "DIR for a file a type");
    }
    checkColumns(table, types, *options.read.dictionary);
}

command_t decodeVerb() {
    const auto options = std::make_shared<decodeOptions_t>();
    recordChoice_t& choice = options->choice;
    return {
        {"decode", "[FILE...]",
         "Print the records of recordings or live input as JSON lines or tables",
         "Prints each record as one JSON object on a line, or as a line of a table. Reads the\n"
         "FILEs one after another, or standard input if no FILE is given or for -. A summary\n"
         "line with counts goes to standard error at the end.",
         joined(
             {{"-t,--type", "A,B", "Print only records of these types; kalo fields lists them",
               [&](const std::string& text) { choice.types.push_back(text); }, times_t::list},
              {"--talker", "A,B", "Print only sentences of these talkers, such as GP",
               [&](const std::string& text) { choice.talkers.push_back(inCapitals(text)); },
               times_t::list},
              {"--prefix", "TEXT", "Print only records with this prefix; may be repeated",
               [&](const std::string& text) { choice.prefixes.push_back(text); }, times_t::again},
              formatOption(options->format),
              columnsOption(options->table.columns),
              flag("--units", options->table.hasUnits,
                   "Print the units of the columns as a second line"),
              {"--output-dir", "DIR",
               "Write tables to a file a type in this folder, which is made if it is missing",
               [options](const std::string& text) {
                   if (text.empty()) {
                       throw usageError_t("missing name of the folder");
                   }
                   options->outputFolder = text;
               }},
              flag("--only-valid", choice.onlyValid, "Leave out malformed records"),
              flag("--only-malformed", choice.onlyMalformed, "Print only malformed records"),
              {"--since", "TIME",
               "Print only records from this instant (2014-08-01T12:00:00Z) or this day onward",
               [&](const std::string& text) { choice.since = boundOfArgument(text, false); }},
              {"--until", "TIME", "Print only records up to this instant or to the end of this day",
               [&](const std::string& text) { choice.until = boundOfArgument(text, true); }},
              flag("--receive-time", options->read.stampsReads,
                   "Set received to this computer's time of arrival, for lines from a pipe or "
                   "device"),
              flag("--explain", options->values.explain,
                   "Add the key timeRule, which says where the date in time comes from"),
              flag("--epoch", options->values.epoch, "Print times as Unix seconds"),
              flag("--radians", options->values.radians, "Print angles in radians, not degrees"),
              flag("--raw", options->values.raw,
                   "Add the original text of each record as the key raw"),
              flag("-q,--quiet", options->quiet, "Do not print the summary line")},
             readingOptions(options->read))},
        [options](const texts_t& operands) {
            if (options->choice.onlyValid && options->choice.onlyMalformed) {
                throw usageError_t("--only-valid and --only-malformed cannot be combined");
            }
            for (std::string& type : options->choice.types) { // now: --sentences may follow --type
                type = typeNameOfArgument(type, *options->read.dictionary, "--type: ");
            }
            completeTable(*options);
            for (const std::string& file : operands) {
                if (options->read.stampsReads && isRegularFile(file)) {
                    throw usageError_t("--receive-time: " + printable(file) +
                                       " is a file, not live input");
                }
            }
            options->files = operands;
            return decodeCommand(*options);
        },
        true};
}

void completeSchema(schemaOptions_t& options) {
    for (std::string& type : options.types) {
        if (type != untypedTable && type != malformedTable) {
            type = typeNameOfArgument(type, options.dictionary, "--type: ");
        }
    }
    const bool isTable = options.format != format_t::json;
    if (options.isForDuckdb && options.types.size() != 1) {
        throw usageError_t("--for duckdb needs one --type");
    }
    if (isTable && !options.isForDuckdb) {
        throw usageError_t("JSON Schema does not describe tables; try --for duckdb");
    }
    if (!options.table.columns.empty() && !isTable) {
        throw usageError_t("--columns needs --format csv or --format tsv");
    }
    options.table.format = tableFormatOf(options.format);
    checkColumns(options.table, options.types, options.dictionary);
}

command_t fieldsVerb() {
    const auto options = std::make_shared<fieldsOptions_t>();
    return {
        {"fields",
         "[TYPE...]",
         "List the values of each record type, with units and meanings",
         "Lists the values of all record types, or of the TYPEs: name, unit, the fields of the\n"
         "record that are read for the value, and meaning.",
         {sentencesOption(options->dictionary),
          flag("--toml", options->asToml,
               "Print the TOML descriptions of the TYPEs, as a start for a --sentences file")}},
        [options](const texts_t& operands) {
            for (const std::string& name : operands) {
                options->types.push_back(typeNameOfArgument(name, options->dictionary));
            }
            if (options->asToml && options->types.empty()) {
                throw usageError_t("--toml: missing type");
            }
            return fieldsCommand(*options);
        }};
}

command_t schemaVerb() {
    const auto options = std::make_shared<schemaOptions_t>();
    valueOptions_t& values = options->table.values;
    return {
        {"schema",
         "",
         "Describe the records of decode for programs: JSON Schema, or DuckDB's column types",
         "Prints the JSON Schema of the records that kalo decode prints, or the types of the\n"
         "columns for DuckDB. Give the options that decode is given: they change the records.",
         {{"-t,--type", "A,B",
           "Describe only these types; also untyped-records and malformed-records, for the "
           "records without a type",
           [options](const std::string& text) { options->types.push_back(text); }, times_t::list},
          {"--for", "PROGRAM", "duckdb: the types of the columns of one type, for DuckDB",
           [options](const std::string& text) {
               if (text != "duckdb") {
                   throw usageError_t("no such program: " + printable(text) + " (expected duckdb)");
               }
               options->isForDuckdb = true;
           }},
          formatOption(options->format),
          columnsOption(options->table.columns),
          flag("--explain", values.explain, "With timeRule"),
          flag("--epoch", values.epoch, "Times are Unix seconds"),
          flag("--radians", values.radians, "Angles are in radians, not degrees"),
          sentencesOption(options->dictionary)}},
        [options](const texts_t& operands) {
            if (!operands.empty()) {
                throw usageError_t("unexpected argument: " + printable(operands[0]) +
                                   "; types are given with --type");
            }
            completeSchema(*options);
            return schemaCommand(*options);
        }};
}

command_t timeVerb() {
    const auto options = std::make_shared<timeOptions_t>();
    return {{"time",
             "[INSTANT...]",
             "Convert between UTC, GPS week and seconds, and Unix seconds",
             "Prints each INSTANT as UTC, as GPS week and seconds, and as Unix seconds. Write an\n"
             "INSTANT as 2017-01-01T00:00:00Z, as WEEK:SECONDS of GPS time, or as @SECONDS of\n"
             "Unix time. Reads one INSTANT a line from standard input if none is given.",
             {{"--leap", "A,B,C,D",
               "Leap seconds as a receiver broadcasts them: deltaTls,deltaTlsf,wnLsf,dn",
               [options](const std::string& text) { options->leap = leapOfArgument(text); }}}},
            [options](const texts_t& operands) {
                options->texts = operands;
                return timeCommand(*options);
            },
            true};
}

command_t encodeVerb() {
    const auto options = std::make_shared<encodeOptions_t>();
    return {
        {"encode",
         "tss1 [FILE...]",
         "Write TSS1 motion records from JSON lines or CSV",
         "Writes TSS1 motion records from the JSON lines of kalo decode, or from CSV. The first\n"
         "line of CSV must name the columns: roll, pitch, heave, horizontalAcceleration,\n"
         "verticalAcceleration and status. Reads standard input if no FILE is given or for -.",
         {flag("--radians", options->radians, "Roll and pitch are in radians, not degrees")}},
        [options](const texts_t& operands) {
            options->files = operands;
            return encodeCommand(*options);
        },
        true};
}

command_t summaryVerb() {
    const auto options = std::make_shared<summaryCommandOptions_t>();
    return {
        {"summary", "[FILE...]",
         "Print what is in recordings: times, counts, rates, ranges of values",
         "Prints what the FILEs contain: the period, the track, who sent which records how often,\n"
         "and the ranges of the values. Reads standard input if no FILE is given or for -.",
         joined({flag("--json", options->asJson, "Print one JSON object, for programs"),
                 {"--near", "LAT,LON",
                  "List the ten streams of the sourcetables nearest to this place (degrees)",
                  [options](const std::string& text) {
                      options->summary.near = placeOfArgument(text);
                  }},
                 maxSpeedOption(options->summary.maxSpeed)},
                readingOptions(options->read))},
        [options](const texts_t& operands) {
            options->files = operands;
            return summaryCommand(*options);
        },
        true};
}

findingId_t findingOfArgument(const std::string& name) {
    std::vector<std::string_view> names;
    for (std::size_t i = 0; i < findingKindCount; ++i) {
        if (findingKinds[i].name == name) {
            return static_cast<findingId_t>(i);
        }
        names.emplace_back(findingKinds[i].name);
    }
    throw usageError_t("no such kind of finding: " + printable(name) + suggestion(name, names));
}

command_t checkVerb() {
    const auto options = std::make_shared<checkCommandOptions_t>();
    checkOptions_t& check = options->check;
    return {
        {"check", "[FILE...]", "Report what is wrong with recordings, and what else is odd",
         "Reports faults in the FILEs, and notes what else looks odd. Findings of the same kind\n"
         "are grouped. Reads standard input if no FILE is given or for -. The exit status is 1 if\n"
         "there is a fault.",
         joined(
             {flag("--each", options->printsEach, "Print each finding on its own, not in groups"),
              {"--ignore", "A,B", "Do not report these kinds of findings, such as silence",
               [options](const std::string& text) {
                   options->ignored.push_back(findingOfArgument(text));
               },
               times_t::list},
              flag("--notes-are-faults", options->areNotesFaults,
                   "Exit with status 1 for notes as well as for faults"),
              maxSpeedOption(check.maxSpeed),
              positive("--max-gap", "SECONDS", check.maxGap,
                       "Report a longer time between two records of a sender as a jump (default "
                       "60)"),
              {"--json", nullptr, "Print a JSON object for each finding or group",
               [options](const std::string& /*none*/) { options->format = checkFormat_t::json; }},
              {"--junit", nullptr, "Print JUnit XML, for the test reports of build servers",
               [options](const std::string& /*none*/) { options->format = checkFormat_t::junit; }}},
             readingOptions(options->read))},
        [options](const texts_t& operands) {
            options->files = operands;
            return checkCommand(*options);
        },
        true};
}

trackFormat_t trackFormatOfArgument(const std::string& name) {
    if (name == "geojson") {
        return trackFormat_t::geojson;
    }
    if (name != "gpx" && name != "kml") {
        throw usageError_t("no such format: " + printable(name) +
                           " (expected geojson, gpx or kml)");
    }
    return name == "gpx" ? trackFormat_t::gpx : trackFormat_t::kml;
}

// "10s" or "50m".
void takeEvery(const std::string& text, thinningOptions_t& out) {
    const char unit = text.empty() ? '\0' : text.back();
    if (unit != 's' && unit != 'm') {
        throw usageError_t("no such step: " + printable(text) + " (expected 10s or 50m)");
    }
    (unit == 's' ? out.everySeconds : out.everyMetres) =
        positiveOfArgument(text.substr(0, text.size() - 1));
}

command_t trackVerb() {
    const auto options = std::make_shared<trackCommandOptions_t>();
    thinningOptions_t& thinning = options->thinning;
    return {
        {"track", "[FILE...]", "Write the track of the vessel as GeoJSON, GPX or KML",
         "Writes one point for each instant, from the best position that came with it, and what\n"
         "else was measured then.",
         joined(
             {{"--format", "FORMAT", "geojson (the default), gpx or kml",
               [options](const std::string& text) {
                   options->format = trackFormatOfArgument(text);
               }},
              positive("--max-gap", "SECONDS", thinning.maxGap,
                       "Break the line where more is between two points (60)"),
              {"--every", "STEP", "At least this from point to point: 10s, 50m, or both",
               [&thinning](const std::string& text) { takeEvery(text, thinning); }, times_t::again},
              positive("--tolerance", "METRES", thinning.tolerance,
                       "Leave out points that are no farther from the line without them")},
             readingOptions(options->read))},
        [options](const texts_t& operands) {
            options->files = operands;
            return trackCommand(*options);
        },
        true};
}

std::vector<command_t> allCommands() {
    return {decodeVerb(), summaryVerb(), checkVerb(), trackVerb(),
            fieldsVerb(), schemaVerb(),  timeVerb(),  encodeVerb()};
}

std::string helpOf(const std::vector<command_t>& commands) {
    std::string text = "usage: kalo COMMAND [OPTION...] [FILE...]\n\n"
                       "Decodes the text records of navigation and survey sensors.\n\n";
    for (const command_t& command : commands) {
        text += fmt::format("  {:8} {}\n", command.verb.name, command.verb.summary);
    }
    return text +
           "  help     Print the help of a command\n\n"
           "  -V, --version   Print the version\n"
           "  -h, --help      Print this help; kalo COMMAND --help prints that of a command\n";
}

int print(const std::string& text) {
    output_t output(STDOUT_FILENO);
    output.buffer().append(text);
    return finish(output, 0);
}

const command_t& commandOf(const std::string& word, const std::vector<command_t>& commands) {
    std::vector<std::string_view> names = {"help"};
    for (const command_t& command : commands) {
        if (word == command.verb.name) {
            return command;
        }
        names.emplace_back(command.verb.name);
    }
    const bool isOption = !word.empty() && word[0] == '-';
    throw usageError_t((isOption ? "no such option: " : "no such command: ") + printable(word) +
                       (isOption ? "" : suggestion(word, names)));
}

bool isHelp(const std::string& word) { return word == "-h" || word == "--help"; }

// The format of `encode` stands in front of its files.
void takeFormat(texts_t& operands) {
    if (operands.empty()) {
        throw usageError_t("missing format (expected tss1)");
    }
    if (operands[0] != "tss1") {
        throw usageError_t("no such format: " + printable(operands[0]) + " (expected tss1)");
    }
    operands.erase(operands.begin());
}

int runCommand(const command_t& command, const texts_t& arguments) {
    const auto end = std::find(arguments.begin(), arguments.end(), "--");
    if (std::any_of(arguments.begin(), end, isHelp)) {
        return print(helpOf(command.verb));
    }
    texts_t operands = parseArguments(command.verb, arguments);
    if (command.verb.name == std::string_view("encode")) {
        takeFormat(operands);
    }
    if (command.readsInput && operands.empty()) {
        if (isatty(STDIN_FILENO) != 0) {
            say(fmt::format("usage: kalo {} [OPTION...] {}\nkalo: standard input is a terminal; "
                            "name a file, or see kalo {} --help",
                            command.verb.name, command.verb.operands, command.verb.name));
            return exitUsage;
        }
        if (command.verb.name != std::string_view("time")) {
            operands.emplace_back("-");
        }
    }
    catchStopSignals();
    return command.run(operands);
}

int run(const texts_t& arguments, std::string& place) {
    const std::vector<command_t> commands = allCommands();
    if (arguments.empty()) {
        say(helpOf(commands).erase(helpOf(commands).size() - 1));
        return exitUsage;
    }
    const std::string& word = arguments[0];
    if (word == "-V" || word == "--version") {
        return print("kalo " KALO_VERSION "\n");
    }
    if (isHelp(word) || word == "help") {
        const bool isOfCommand = word == "help" && arguments.size() > 1 && arguments[1] != "help";
        return print(isOfCommand ? helpOf(commandOf(arguments[1], commands).verb)
                                 : helpOf(commands));
    }
    const command_t& command = commandOf(word, commands);
    place = word + ' ';
    return runCommand(command, {arguments.begin() + 1, arguments.end()});
}

} // namespace

int runCommandLine(const std::vector<std::string>& arguments) {
    std::string place; // the command, once it is known
    try {
        return run(arguments, place);
    } catch (const usageError_t& error) {
        say(fmt::format("kalo: {}{}\nkalo: see kalo {}--help",
                        place.empty() ? "" : place.substr(0, place.size() - 1) + ": ", error.what(),
                        place));
        return exitUsage;
    }
}
