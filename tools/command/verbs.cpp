#include "tools/command/verbs.h"

#include <algorithm>
#include <ctime>

#include "kalo/util/stringUtil.h"
#include "tools/command/checkCommand.h"
#include "tools/command/completion.h"
#include "tools/command/decodeCommand.h"
#include "tools/command/encodeCommand.h"
#include "tools/command/fieldsCommand.h"
#include "tools/command/helpText.h"
#include "tools/command/manualPage.h"
#include "tools/command/nearest.h"
#include "tools/command/readInput.h"
#include "tools/command/reportCommand.h"
#include "tools/command/schemaCommand.h"
#include "tools/command/streamArguments.h"
#include "tools/command/summaryCommand.h"
#include "tools/command/timeCommand.h"
#include "tools/command/trackCommand.h"
#include "tools/command/typeNames.h"
#include "tools/command/valueArguments.h"
#include "tools/input/input.h"
#include "tools/terminal/colour.h"
#include "tools/terminal/message.h"

namespace {

using texts_t = std::vector<std::string>;

option_t maxSpeedOption(double& out) {
    return positive("--max-speed", "M/S", out,
                    "Count a step between two positions as a jump if it needs more than this speed "
                    "(default 100)");
}

constexpr choice_t<kind_t> kinds[] = {{"nmea", kind_t::sentence},
                                      {"tss1", kind_t::motion},
                                      {"ats", kind_t::tracking},
                                      {"ntrip", kind_t::table}};
constexpr choice_t<dateOrder_t> dateOrders[] = {{"dmy", dateOrder_t::dayFirst},
                                                {"mdy", dateOrder_t::monthFirst}};
constexpr choice_t<trackFormat_t> trackFormats[] = {
    {"geojson", trackFormat_t::geojson}, {"gpx", trackFormat_t::gpx}, {"kml", trackFormat_t::kml}};
constexpr choice_t<bool> programs[] = {{"duckdb", true}};
constexpr choice_t<shell_t> shells[] = {
    {"bash", shell_t::bash}, {"zsh", shell_t::zsh}, {"fish", shell_t::fish}};

// How inputs are read, the same for every verb that reads records.
std::vector<option_t> readingOptions(inputOptions_t& read) {
    splitOptions_t& split = read.split;
    return {
        flag("--require-checksum", split.requireChecksum,
             "Report a sentence without a checksum as malformed"),
        flag("--strict", split.strict,
             "Accept a sentence only if it ends in CR LF and nothing stands in front of it"),
        choiceOption("--kind", "KIND", kinds, "Read every line as this kind of record",
                     [&split](kind_t kind) { split.only = kind; }),
        sentencesOption(*read.dictionary),
        {"--date", "YYYY-MM-DD|today",
         "The day on which each input or range begins, for records with a time but no date; "
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
        choiceOption("--date-order", "ORDER", dateOrders,
                     "Order of day and month in stamps such as 03/04/2026",
                     [&read](dateOrder_t order) { read.dateOrder = order; }),
        flag("--no-progress", read.hidesProgress,
             "Do not show on the terminal how much of the input was read")};
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
        {"decode",
         "[FILE...]",
         "Print the records of recordings or live input as JSON lines or tables",
         "Prints each record as one JSON object on a line, or as a line of a table. Reads the\n"
         "FILEs one after another, or standard input if no FILE is given or for -. A summary\n"
         "line with counts goes to standard error at the end.",
         {{{"kalo decode --type GGA voyage.log",
            "Print the GGA sentences of a recording as JSON lines"},
           {"kalo decode --format csv --type DPT voyage.log >depth.csv",
            "Write the depths of a recording as a table"}}},
         joined(
             {{"-t,--type", "A,B", "Print only records of these types; kalo fields lists them",
               [&](const std::string& text) { choice.types.push_back(text); }, times_t::list,
               [options] { return allTypeNames(*options->read.dictionary); }},
              {"--talker", "A,B", "Print only sentences of these talkers, such as GP",
               [&](const std::string& text) { choice.talkers.push_back(inCapitals(text)); },
               times_t::list},
              {"--prefix", "TEXT", "Print only records with this prefix; may be repeated",
               [&](const std::string& text) { choice.prefixes.push_back(text); }, times_t::again},
              formatOption(options->format),
              columnsOption(options->table.columns),
              flag("--units", options->table.hasUnits,
                   "Print the units of the columns as a second line"),
              {"--output-dir",
               "DIR",
               "Write tables to a file a type in this folder, which is made if it is missing",
               [options](const std::string& text) {
                   if (text.empty()) {
                       throw usageError_t("missing name of the folder");
                   }
                   options->outputFolder = text;
               },
               times_t::once,
               {},
               path_t::folder},
              outputOption(options->output),
              followOption(options->read.follows),
              {"--range", "BEGIN-END",
               "Decode only the lines that begin in these bytes of the FILE, as they are in the "
               "whole; BEGIN- goes to its end",
               [options](const std::string& text) { options->read.range = rangeOfArgument(text); }},
              {"--jobs", "N|auto",
               "Decode files with N threads, or one for each processor; the output is the same "
               "(default 1). Not with --follow",
               [options](const std::string& text) { options->pieces.jobs = jobsOfArgument(text); }},
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
              flag("-q,--quiet", options->quiet,
                   "Print neither the summary line nor the progress line")},
             readingOptions(options->read)),
         {},
         path_t::file},
        [options](const texts_t& operands) {
            if (options->choice.onlyValid && options->choice.onlyMalformed) {
                throw usageError_t("--only-valid and --only-malformed cannot be combined");
            }
            for (std::string& type : options->choice.types) { // now: --sentences may follow --type
                type = typeNameOfArgument(type, *options->read.dictionary, "--type: ");
            }
            completeTable(*options);
            if (!options->outputFolder.empty() && options->output.path != "-") {
                throw usageError_t("--output and --output-dir cannot be combined");
            }
            for (const std::string& file : operands) {
                if (options->read.stampsReads && isRegularFile(file)) {
                    throw usageError_t("--receive-time: " + printable(file) +
                                       " is a file, not live input");
                }
            }
            if (options->read.range) {
                if (options->read.follows) {
                    throw usageError_t("--follow and --range cannot be combined");
                }
                checkRanged(operands);
            }
            if (options->read.follows) {
                if (options->pieces.jobs > 1) {
                    throw usageError_t("--follow and --jobs cannot be combined");
                }
                checkFollowed(operands.back());
                options->output.isDirect = true;
            }
            options->read.hidesProgress = options->read.hidesProgress || options->quiet;
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
         {{{"kalo fields GGA", "List the values of GGA"},
           {"kalo fields --toml XDR >own.toml",
            "Start a description of your own from that of XDR"}}},
         {sentencesOption(options->dictionary),
          flag("--toml", options->asToml,
               "Print the TOML descriptions of the TYPEs, as a start for a --sentences file")},
         [options] { return allTypeNames(options->dictionary); }},
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
         "columns for DuckDB. --epoch, --radians, --explain and --sentences change the records of\n"
         "decode; give them here too.",
         {{{"kalo schema --type GGA", "Print the JSON Schema of GGA records"},
           {"kalo schema --for duckdb --type GGA --format csv",
            "Print the types of the columns of a GGA table, for DuckDB"}}},
         {{"-t,--type", "A,B",
           "Describe only these types; also untyped-records and malformed-records, for the "
           "records without a type",
           [options](const std::string& text) { options->types.push_back(text); }, times_t::list,
           [options] { return allTables(options->dictionary); }},
          choiceOption("--for", "PROGRAM", programs,
                       "Print the types of the columns of one type for this program",
                       [options](bool isDuckdb) { options->isForDuckdb = isDuckdb; }),
          formatOption(options->format),
          columnsOption(options->table.columns),
          flag("--explain", values.explain, "With the key timeRule"),
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
             {{{"kalo time 2017-01-01T00:00:00Z", "Convert an instant of UTC"},
               {"kalo time 1930:18.5", "Convert 18.5 seconds of GPS week 1930"}}},
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
         {{{"kalo decode --type TSS1 voyage.log | kalo encode tss1",
            "Write the motion records of a recording without what stands around them"},
           {"kalo decode --radians --type TSS1 voyage.log | kalo encode --radians tss1",
            "The same, with angles in radians in between"}}},
         {flag("--radians", options->radians, "Roll and pitch are in radians, not degrees"),
          outputOption(options->output)},
         [] { return texts_t{"tss1"}; },
         path_t::file},
        [options](const texts_t& operands) {
            options->files = operands;
            return encodeCommand(*options);
        },
        true};
}

command_t summaryVerb() {
    const auto options = std::make_shared<summaryCommandOptions_t>();
    return {
        {"summary",
         "[FILE...]",
         "Print what is in recordings: times, counts, rates, ranges of values",
         "Prints what the FILEs contain: the period, the track, who sent which records how often,\n"
         "and the ranges of the values. Reads standard input if no FILE is given or for -.",
         {{{"kalo summary voyage.log", "Print what is in a recording"},
           {"kalo summary --json voyage.log", "Print the same as JSON"}}},
         joined({flag("--json", options->asJson, "Print one JSON object, for programs"),
                 {"--near", "LAT,LON",
                  "List the ten streams of the sourcetables nearest to this place (degrees)",
                  [options](const std::string& text) {
                      options->summary.near = placeOfArgument(text);
                  }},
                 maxSpeedOption(options->summary.maxSpeed),
                 outputOption(options->output)},
                readingOptions(options->read)),
         {},
         path_t::file},
        [options](const texts_t& operands) {
            options->files = operands;
            return summaryCommand(*options);
        },
        true};
}

texts_t findingNames() {
    texts_t names;
    for (const findingKind_t& kind : findingKinds) {
        names.emplace_back(kind.name);
    }
    return names;
}

void setFormat(checkFormat_t& format, checkFormat_t wanted) {
    if (format != checkFormat_t::text && format != wanted) {
        throw usageError_t("--json and --junit cannot be combined");
    }
    format = wanted;
}

command_t checkVerb() {
    const auto options = std::make_shared<checkCommandOptions_t>();
    checkOptions_t& check = options->check;
    return {
        {"check",
         "[FILE...]",
         "Report what is wrong with recordings, and what else is odd",
         "Reports faults in the FILEs, and notes what else looks odd. Findings of the same kind\n"
         "are grouped. Reads standard input if no FILE is given or for -. The exit status is 1 if\n"
         "there is a fault.",
         {{{"kalo check voyage.log", "Report the faults and notes of a recording in groups"},
           {"kalo check --ignore silence,duplicate --junit voyage.log",
            "Report as JUnit XML, without two kinds of findings"}}},
         joined(
             {flag("--each", options->printsEach, "Print each finding on its own, not in groups"),
              {"--ignore", "A,B", "Do not report these kinds of findings",
               [options](const std::string& text) {
                   options->ignored.push_back(
                       static_cast<findingId_t>(placeOf(text, findingNames(), "kind of finding")));
               },
               times_t::list, findingNames},
              flag("--notes-are-faults", options->areNotesFaults,
                   "Exit with status 1 for notes as well as for faults"),
              maxSpeedOption(check.maxSpeed),
              positive("--max-gap", "SECONDS", check.maxGap,
                       "Report a longer time between two records of a sender as a jump (default "
                       "60)"),
              {"--json", nullptr, "Print a JSON object for each finding or group",
               [options](const std::string& /*none*/) {
                   setFormat(options->format, checkFormat_t::json);
               }},
              {"--junit", nullptr, "Print JUnit XML, for the test reports of build servers",
               [options](const std::string& /*none*/) {
                   setFormat(options->format, checkFormat_t::junit);
               }},
              outputOption(options->output)},
             readingOptions(options->read)),
         {},
         path_t::file},
        [options](const texts_t& operands) {
            if (options->printsEach && options->format == checkFormat_t::junit) {
                throw usageError_t("--each and --junit cannot be combined");
            }
            options->files = operands;
            return checkCommand(*options);
        },
        true};
}

command_t trackVerb() {
    const auto options = std::make_shared<trackCommandOptions_t>();
    thinningOptions_t& thinning = options->thinning;
    return {
        {"track",
         "[FILE...]",
         "Write the track of the vessel as GeoJSON, GPX or KML",
         "Writes one point for each instant, from the best position that came with it, and what\n"
         "else was measured then. Reads standard input if no FILE is given or for -.",
         {{{"kalo track --format gpx voyage.log >voyage.gpx", "Write the track as GPX"},
           {"kalo track --every 10s voyage.log >voyage.geojson",
            "Write a point every 10 seconds as GeoJSON"}}},
         joined(
             {choiceOption("--format", "FORMAT", trackFormats,
                           "Write GeoJSON (the default), GPX or KML",
                           [options](trackFormat_t format) { options->format = format; }),
              positive("--max-gap", "SECONDS", thinning.maxGap,
                       "Begin a new line after so long without a point (default 60)"),
              {"--every", "STEP", "At least this from point to point: 10s, 50m, or both",
               [&thinning](const std::string& text) { takeEvery(text, thinning); }, times_t::again},
              positive("--tolerance", "METRES", thinning.tolerance,
                       "Leave out points that move the line by no more than this"),
              outputOption(options->output)},
             readingOptions(options->read)),
         {},
         path_t::file},
        [options](const texts_t& operands) {
            options->files = operands;
            return trackCommand(*options);
        },
        true};
}

#ifdef KALO_HAS_REPORT
std::size_t pointsOfArgument(const std::string& text) {
    constexpr double least = 100;
    constexpr double most = 1e6;
    double number = 0;
    if (!kalo::decode(text, number) || !(number >= least && number <= most)) {
        throw usageError_t("not a number from 100 to 1000000: " + printable(text));
    }
    return static_cast<std::size_t>(number);
}

command_t reportVerb() {
    const auto options = std::make_shared<reportCommandOptions_t>();
    return {
        {"report",
         "[FILE...]",
         "Write one page (HTML) that shows what is in recordings",
         "Writes one HTML page with the track, the measurements over time, the satellites, the\n"
         "findings of kalo check and the tables of kalo summary. It opens from disk and loads\n"
         "nothing. Reads standard input if no FILE is given or for -.",
         {{{"kalo report voyage.log --output report.html", "Write the page of a recording"},
           {"kalo report --since 2026-03-15 voyage.log --output report.html",
            "Show only the records from this day onward"}}},
         joined(
             {{"--since", "TIME",
               "Show only records from this instant (2014-08-01T12:00:00Z) or this day onward",
               [options](const std::string& text) {
                   options->since = boundOfArgument(text, false);
               }},
              {"--until", "TIME", "Show only records up to this instant or to the end of this day",
               [options](const std::string& text) {
                   options->until = boundOfArgument(text, true);
               }},
              {"--max-points", "COUNT",
               "Draw at most so many points of each series and of the track (default 2000)",
               [options](const std::string& text) { options->maxPoints = pointsOfArgument(text); }},
              maxSpeedOption(options->summary.maxSpeed),
              positive("--max-gap", "SECONDS", options->check.maxGap,
                       "Report a longer time between two records of a sender as a jump (default "
                       "60)"),
              outputOption(options->output)},
             readingOptions(options->read)),
         {},
         path_t::file},
        [options](const texts_t& operands) {
            options->files = operands;
            options->check.maxSpeed = options->summary.maxSpeed;
            return reportCommand(*options);
        },
        true,
        [options](const texts_t& arguments) { options->arguments = arguments; }};
}
#endif

void refuseSecond(const texts_t& operands) {
    if (operands.size() > 1) {
        throw usageError_t("unexpected argument: " + printable(operands[1]));
    }
}

int printHelp(const texts_t& operands) {
    refuseSecond(operands);
    const std::vector<command_t> commands = allCommands();
    return print(operands.empty() ? helpOf(commands)
                                  : helpOf(commandNamed(operands[0], commands).verb));
}

int printManual(const texts_t& operands) {
    refuseSecond(operands);
    const std::vector<command_t> commands = allCommands();
    return print(operands.empty() ? manualPage(commands)
                                  : manualPage(commandNamed(operands[0], commands).verb));
}

texts_t commandNames() { return namesOf(allCommands()); }

command_t helpVerb() {
    return {{"help",
             "[COMMAND]",
             "Print the help of a command",
             "Prints the help of the COMMAND, or the list of all commands.",
             {{{"kalo help", "List the commands"},
               {"kalo help decode", "Print the help of kalo decode"}}},
             {},
             commandNames},
            printHelp};
}

command_t manualVerb() {
    return {
        {"manual",
         "[COMMAND]",
         "Print the source of a manual page",
         "Prints the source of the manual page of the COMMAND, or of kalo itself, for programs\n"
         "such as man and groff.",
         {{{"kalo manual decode | man -l -", "Read the manual page of kalo decode"},
           {"kalo manual >kalo.1", "Write the manual page of kalo to a file"}}},
         {},
         commandNames},
        printManual};
}

command_t completionVerb() {
    return {{"completion",
             "bash|zsh|fish",
             "Print the completions for a shell",
             "Prints a script after which the shell completes commands, options, their values and\n"
             "names of files. An installed kalo has them where the shells look for them.",
             {{{". <(kalo completion bash)", "In bash or zsh: switch completions on in this shell"},
               {"kalo completion fish >kalo.fish",
                "Write them to a file, for ~/.config/fish/completions"}}},
             {},
             [] { return namesOf(shells); }},
            [](const texts_t& operands) {
                refuseSecond(operands);
                if (operands.empty()) {
                    throw usageError_t("missing shell (expected " + listed(namesOf(shells)) + ")");
                }
                const std::size_t place = placeOf(operands[0], namesOf(shells), "shell");
                return print(completionScript(shells[place].value, allCommands()));
            }};
}

} // namespace

std::vector<command_t> allCommands() {
    static constexpr choice_t<colouring_t> colourings[] = {{"auto", colouring_t::automatic},
                                                           {"always", colouring_t::always},
                                                           {"never", colouring_t::never}};
    std::vector<command_t> commands = {decodeVerb(), summaryVerb(), checkVerb(),     trackVerb(),
                                       fieldsVerb(), schemaVerb(),  timeVerb(),      encodeVerb(),
                                       helpVerb(),   manualVerb(),  completionVerb()};
#ifdef KALO_HAS_REPORT
    const auto behindTrack = commands.begin() + 4;
    commands.insert(behindTrack, reportVerb());
#endif
    for (command_t& command : commands) {
        command.verb.options.push_back(choiceOption(
            "--color", "MODE", colourings,
            "When to colour text for people (default auto: on a terminal)", setColouring));
        command.verb.options.push_back(
            {"-h,--help", nullptr, "Print this help", [](const std::string& /*none*/) {}});
    }
    return commands;
}

std::vector<std::string> namesOf(const std::vector<command_t>& commands) {
    texts_t names;
    for (const command_t& command : commands) {
        names.emplace_back(command.verb.name);
    }
    return names;
}

const command_t& commandNamed(const std::string& name, const std::vector<command_t>& commands) {
    return commands[placeOf(name, namesOf(commands), "command")];
}
