#include "tools/command/manualPage.h"

#include <algorithm>

#include <fmt/format.h>

#include "tools/command/helpText.h"

namespace {

// Text that the formatter prints as it stands.
std::string escaped(std::string_view text) {
    constexpr struct {
        char letter;
        const char* escape;
    } escapes[] = {{'\\', "\\e"},  {'-', "\\-"},   {'\'', "\\(aq"}, {'`', "\\(ga"},
                   {'^', "\\(ha"}, {'~', "\\(ti"}, {'"', "\\(dq"}};
    std::string result;
    for (const char c : text) {
        const auto found = std::find_if(std::begin(escapes), std::end(escapes),
                                        [&](const auto& row) { return row.letter == c; });
        result += found == std::end(escapes) ? std::string(1, c) : found->escape;
    }
    return result;
}

std::string bold(std::string_view text) { return "\\fB" + escaped(text) + "\\fP"; }

std::string italic(std::string_view text) { return "\\fI" + escaped(text) + "\\fP"; }

class page_t {
public:
    page_t(const std::string& name, const char* summary) {
        m_text = fmt::format(".TH {} 1 {} \"kalo {}\" \"kalo manual\"\n", escaped(inCapitals(name)),
                             KALO_DATE, KALO_VERSION);
        section("NAME");
        text(escaped(name) + " \\- " + escaped(summary));
    }

    void section(const char* heading) { line(fmt::format(".SH {}", heading)); }
    void line(const std::string& text) { m_text += text + '\n'; }

    // Text that the formatter breaks into lines of its own. None of those here may be a macro,
    // which begins with a point.
    void text(const std::string& text) {
        for (const char c : wrapped(text, 0) + '\n') {
            m_text += c == '.' && m_text.back() == '\n' ? "\\&." : std::string(1, c);
        }
    }

    // A paragraph that begins with what it explains.
    void entry(const std::string& head, const std::string& what) {
        line(".TP");
        line(head);
        this->text(what);
    }

    void entry(const option_t& option) {
        const std::string name = shortName(option);
        std::string head = name.empty() ? "" : bold(name) + ", ";
        head += bold(longName(option));
        head += option.operand == nullptr ? "" : ' ' + italic(option.operand);
        entry(head, escaped(helpOf(option)) + '.');
    }

    void entry(const example_t& example) {
        entry(bold(example.command), escaped(example.meaning) + '.');
    }

    std::string finish(const std::vector<std::string>& others) {
        section("EXIT STATUS");
        entry(bold("0"), "All input was read and all output written. Malformed records are no "
                         "error, except for " +
                             bold("kalo check") + ".");
        entry(bold("1"), "Something could not be read or written; " + bold("kalo encode") + " or " +
                             bold("kalo time") + " refused a value; or " + bold("kalo check") +
                             " found a fault.");
        entry(bold("2"), "Wrong usage.");
        entry(
            bold("128 + ") + italic("N"),
            "Signal " + italic("N") +
                " (SIGHUP, SIGINT or SIGTERM) ended the run. What was decoded before is written.");
        section("ENVIRONMENT");
        entry(bold("NO_COLOR"), "If it is set and not empty, text is not coloured, unless " +
                                    bold("--color always") + " is given.");
        entry(bold("TERM"), "If it is " + bold("dumb") + ", the same holds.");
        section("SEE ALSO");
        for (const std::string& other : others) {
            line(fmt::format(".BR {} (1){}", escaped(other), other == others.back() ? "" : ","));
        }
        return m_text;
    }

private:
    std::string m_text;
};

std::string pageName(const verb_t& verb) { return std::string("kalo-") + verb.name; }

} // namespace

std::string manualPage(const std::vector<command_t>& commands) {
    page_t page("kalo", "decode the text records of navigation and survey sensors");
    page.section("SYNOPSIS");
    page.line(bold("kalo") + ' ' + italic("COMMAND") + " [" + italic("OPTION") + "...] [" +
              italic("FILE") + "...]");
    page.section("DESCRIPTION");
    page.text("Reads NMEA 0183 sentences, TSS1 motion records, ATS acoustic tracking records and "
              "NTRIP sourcetables, from recordings and from live input. Each command has a manual "
              "page of its own.");
    page.section("COMMANDS");
    std::vector<std::string> others;
    for (const command_t& command : commands) {
        page.entry(bold(command.verb.name), escaped(command.verb.summary) + '.');
        others.push_back(pageName(command.verb));
    }
    page.section("OPTIONS");
    page.entry(bold("-V") + ", " + bold("--version"),
               "Print the version, and what kalo was built with.");
    page.entry(bold("-h") + ", " + bold("--help"), "Print the list of commands.");
    page.section("EXAMPLES");
    for (const command_t& command : commands) {
        page.entry(command.verb.examples[0]);
    }
    return page.finish(others);
}

std::string manualPage(const verb_t& verb) {
    page_t page(pageName(verb), verb.summary);
    page.section("SYNOPSIS");
    page.line(bold(fmt::format("kalo {}", verb.name)) +
              escaped(usageOf(verb).substr(5 + std::string(verb.name).size())));
    page.section("DESCRIPTION");
    std::string details = verb.details;
    std::replace(details.begin(), details.end(), '\n', ' ');
    page.text(escaped(details));
    page.section("OPTIONS");
    for (const option_t& option : verb.options) {
        page.entry(option);
    }
    page.section("EXAMPLES");
    for (const example_t& example : verb.examples) {
        page.entry(example);
    }
    return page.finish({"kalo"});
}
