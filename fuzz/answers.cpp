// What summary, check and track print of a log is valid in each format.
#include "fuzz/command.h"
#include "fuzz/logText.h"
#include "tools/command/checkCommand.h"
#include "tools/command/summaryCommand.h"
#include "tools/command/trackCommand.h"

namespace {

using fuzz::printed;
using fuzz::require;

// XML as far as tags, quotes and characters go: each element ends inside the one that holds it.
void requireXml(std::string_view text) {
    std::vector<std::string> open;
    bool hasRoot = false;
    while (true) {
        const std::size_t begin = text.find('<');
        const std::string_view content = text.substr(0, begin);
        require(
            std::all_of(content.begin(), content.end(),
                        [](char c) { return static_cast<unsigned char>(c) >= ' ' || c == '\n'; }),
            "no control characters");
        for (std::size_t at = text.find('&'); at < std::min(begin, text.size());
             at = text.find('&', at + 1)) {
            require(text.find(';', at) - at < 8, "an ampersand begins a reference");
        }
        require(!open.empty() || content.find_first_not_of('\n') == std::string_view::npos,
                "no text outside the root");
        if (begin == std::string_view::npos) {
            break;
        }
        const std::size_t end = text.find('>', begin);
        require(end != std::string_view::npos, "a tag ends");
        const std::string_view tag = text.substr(begin + 1, end - begin - 1);
        text.remove_prefix(end + 1);
        require(tag.find('<') == std::string_view::npos &&
                    std::count(tag.begin(), tag.end(), '"') % 2 == 0,
                "attributes are escaped");
        const std::string name(tag.substr(0, tag.find_first_of(" \n")));
        if (tag[0] == '/') {
            require(!open.empty() && '/' + open.back() == name, "elements nest");
            open.pop_back();
        } else if (tag[0] != '?' && tag.back() != '/') {
            require(!open.empty() || !hasRoot, "one root");
            hasRoot = true;
            open.push_back(name);
        }
    }
    require(hasRoot && open.empty(), "all elements end");
}

// Lines of printable characters.
void requireText(const std::string& text) {
    require(std::all_of(text.begin(), text.end(),
                        [](unsigned char c) { return c == '\n' || (c >= ' ' && c != 0x7F); }),
            "no control characters");
    static_cast<void>(nlohmann::json(text).dump()); // which throws unless it is UTF-8
}

template <typename Options>
Options optionsOf(const fuzz::memoryFile_t& file) {
    static const auto dictionary = std::make_shared<dictionaryHolder_t>();
    Options options;
    options.files = {file.path()};
    options.read.dictionary = dictionary;
    return options;
}

} // namespace

void fuzz::answers(std::string_view input) {
    const memoryFile_t file(input);
    std::minstd_rand random = randomOf(input);
    auto summary = optionsOf<summaryCommandOptions_t>(file);
    summary.asJson = random() % 4 != 0;
    const std::string text = printed(summaryCommand, summary);
    if (summary.asJson) {
        requireJson(text);
    }
    require(summary.asJson || text.substr(0, 5) == "input", "a page");
    requireText(text);

    auto check = optionsOf<checkCommandOptions_t>(file);
    check.printsEach = random() % 2 == 0;
    constexpr checkFormat_t checkFormats[] = {checkFormat_t::json, checkFormat_t::junit,
                                              checkFormat_t::text};
    check.format = checkFormats[random() % 3];
    const std::string findings = printed(checkCommand, check);
    requireText(findings);
    if (check.format == checkFormat_t::json) {
        requireJsonLines(findings);
    } else if (check.format == checkFormat_t::junit) {
        requireXml(findings);
    }

    constexpr trackFormat_t formats[] = {trackFormat_t::geojson, trackFormat_t::gpx,
                                         trackFormat_t::kml};
    auto track = optionsOf<trackCommandOptions_t>(file);
    track.format = formats[random() % 3];
    const std::string way = printed(trackCommand, track);
    if (track.format == trackFormat_t::geojson) {
        requireJson(way);
    } else {
        requireXml(way);
    }
}
