// The command line of kalo.
#include <csignal>
#include <cstdio>
#include <exception>
#include <map>

#include <unistd.h>

#include <CLI/CLI.hpp>

#include "kalo/util/portability.h"
#include "tools/calendarDate.h"
#include "tools/decodeCommand.h"
#include "tools/encodeCommand.h"
#include "tools/fieldsCommand.h"
#include "tools/message.h"
#include "tools/stopSignal.h"
#include "tools/timeCommand.h"

namespace {

constexpr const char* shortHelp = "usage: kalo decode [OPTION...] [FILE...]\n"
                                  "       kalo fields\n"
                                  "       kalo encode tss1 [--radians] [FILE...]\n"
                                  "       kalo time [--leap A,B,C,D] [INSTANT...]\n"
                                  "Records of navigation sensors to JSON lines; no FILE, or -, is "
                                  "standard input.\n"
                                  "kalo decode --help says more.\n";

const recordType_t* typeOfName(const std::string& name) {
    for (std::size_t i = 0; i < recordTypeCount; ++i) {
        if (name == recordTypes[i].name) {
            return &recordTypes[i];
        }
    }
    throw CLI::ValidationError("--type", "no record type is called " + name);
}

kalo::date_t dateOfText(const std::string& text) {
    kalo::date_t date;
    if (!parseDate(text, date)) {
        throw CLI::ValidationError("--date", text + " is no date of the calendar, YYYY-MM-DD");
    }
    return date;
}

kalo::gps2utc_t leapOfText(const std::string& text) {
    kalo::gps2utc_t leap;
    if (!parseLeap(text, leap)) {
        throw CLI::ValidationError("--leap", text + " is not deltaTls,deltaTlsf,wnLsf,dn");
    }
    return leap;
}

recordKind_t kindOfText(const std::string& text) {
    static const std::map<std::string, recordKind_t> kinds = {{"nmea", recordKind_t::sentence},
                                                              {"tss1", recordKind_t::motion},
                                                              {"ats", recordKind_t::tracking},
                                                              {"ntrip", recordKind_t::table}};
    const auto found = kinds.find(text);
    if (found == kinds.end()) {
        throw CLI::ValidationError("--kind", text + " is none of nmea, tss1, ats, ntrip");
    }
    return found->second;
}

int run(int argc, char** argv) {
    CLI::App app{"Decodes the text records of navigation and survey sensors."};
    app.set_version_flag("--version", "kalo " KALO_VERSION);
    app.require_subcommand(0, 1);

    decodeOptions_t decode;
    std::vector<std::string> types;
    std::string date;
    CLI::App* decodeApp = app.add_subcommand("decode", "Prints each record as a line of JSON");
    decodeApp->add_option("FILE", decode.files, "Inputs; - is standard input, as is none");
    decodeApp->add_option("--type", types, "Only records of these types")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->type_name("A,B");
    decodeApp->add_flag("--only-valid", decode.onlyValid, "No malformed records");
    decodeApp->add_flag("--require-checksum", decode.record.requireChecksum,
                        "A sentence without a checksum is malformed");
    decodeApp->add_flag("--strict", decode.record.strict,
                        "Each line as it is: CR LF must end it, nothing stands in front of it");
    std::string kind;
    const CLI::Option* kindOption =
        decodeApp->add_option("--kind", kind, "Take every line for this kind of record")
            ->type_name("nmea|tss1|ats|ntrip");
    const CLI::Option* dateOption =
        decodeApp->add_option("--date", date, "The day on which the inputs begin")
            ->type_name("YYYY-MM-DD");
    decodeApp->add_flag("--epoch", decode.json.epoch, "Instants as Unix seconds");
    decodeApp->add_flag("--radians", decode.json.radians, "Angles in radians, not degrees");
    decodeApp->add_flag("--raw", decode.json.raw, "Every record with its bytes");
    decodeApp->add_flag("--quiet", decode.quiet, "No closing line with counts");
    CLI::App* fieldsApp = app.add_subcommand("fields", "Lists the values of each record type");

    encodeOptions_t encode;
    CLI::App* encodeApp = app.add_subcommand("encode", "Writes records from what decode prints");
    encodeApp->require_subcommand(1);
    CLI::App* tss1App = encodeApp->add_subcommand("tss1", "TSS1 motion records");
    tss1App->add_option("FILE", encode.files,
                        "JSON lines, or CSV with a head; - is standard input, as is none");
    tss1App->add_flag("--radians", encode.radians, "Roll and pitch are radians, not degrees");

    timeOptions_t time;
    std::string leap;
    CLI::App* timeApp =
        app.add_subcommand("time", "Converts instants, GPS weeks and seconds, and Unix seconds");
    timeApp->add_option("INSTANT", time.texts,
                        "2017-01-01T00:00:00Z, WEEK:SECONDS or @SECONDS; none: lines of standard "
                        "input");
    const CLI::Option* leapOption =
        timeApp->add_option("--leap", leap, "Leap seconds as a receiver broadcasts them")
            ->type_name("deltaTls,deltaTlsf,wnLsf,dn");

    try {
        app.parse(argc, argv);
        for (const std::string& name : types) {
            decode.types.push_back(typeOfName(name));
        }
        if (kindOption->count() > 0) {
            decode.record.only = kindOfText(kind);
        }
        if (dateOption->count() > 0) {
            decode.date = dateOfText(date);
        }
        if (leapOption->count() > 0) {
            time.leap = leapOfText(leap);
        }
    } catch (const CLI::Success& wanted) { // help or version
        return app.exit(wanted);
    } catch (const CLI::ParseError& error) {
        fmt::print(stderr, "kalo: {}\nkalo: try kalo --help\n", error.what());
        return exitUsage;
    }

    if (*fieldsApp) {
        return fieldsCommand();
    }
    std::vector<std::string>& inputs = *timeApp     ? time.texts
                                       : *encodeApp ? encode.files
                                                    : decode.files;
    const bool isCommand = *decodeApp || *encodeApp || *timeApp;
    if (!isCommand || (inputs.empty() && isatty(STDIN_FILENO) != 0)) {
        fmt::print(stderr, "{}", shortHelp);
        return exitUsage;
    }
    catchStopSignals();
    if (*timeApp) {
        return timeCommand(time);
    }
    if (inputs.empty()) {
        inputs.emplace_back("-");
    }
    if (*encodeApp) {
        return encodeCommand(encode);
    }
    return decodeCommand(decode);
}

} // namespace

int main(int argc, char** argv) {
    static_cast<void>(kalo::portability::set_stdin_binary());
    static_cast<void>(std::signal(SIGPIPE, SIG_IGN)); // a closed pipe shows when it is written to
    try {
        return run(argc, argv);
    } catch (const std::exception& error) {
        static_cast<void>(std::fprintf(stderr, "kalo: %s\n", error.what()));
        return exitFailure;
    }
}
