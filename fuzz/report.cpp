// The page of a report is the same for any log, but for the data that it draws. They are JSON that
// cannot end the element that holds them.
#include "fuzz/command.h"
#include "fuzz/logText.h"
#include "tools/command/reportCommand.h"

namespace {

constexpr std::string_view dataBegin = R"(<script type="application/json" id="data">)";
constexpr std::string_view dataEnd = "</script>";

struct page_t {
    std::string before;
    std::string data;
    std::string after;
};

page_t pageOf(std::string_view input) {
    static const auto dictionary = std::make_shared<dictionaryHolder_t>();
    const fuzz::memoryFile_t file(input);
    std::minstd_rand random = fuzz::randomOf(input);
    reportCommandOptions_t options;
    options.files = {file.path()};
    options.read.dictionary = dictionary;
    options.maxPoints = random() % 2 == 0 ? 2000 : 20;
    if (random() % 4 == 0) {
        options.since = 1700000000;
    }
    options.arguments = {"</script><b>\"'\x01\xFF"};
    const std::string text = fuzz::printed(reportCommand, options);
    const std::size_t begin = text.find(dataBegin) + dataBegin.size();
    const std::size_t end = text.find(dataEnd, begin);
    fuzz::require(begin > dataBegin.size() && end < text.size(), "a page with data");
    return {text.substr(0, begin), text.substr(begin, end - begin), text.substr(end)};
}

} // namespace

void fuzz::report(std::string_view input) {
    static const page_t empty = pageOf("");
    const page_t page = pageOf(input);
    require(page.before == empty.before && page.after == empty.after, "the page stays the same");
    require(page.data.find('<') == std::string::npos, "no markup in the data");
    requireJson(page.data);
}
