// Prints the list of sentences as the table in docs/formats/nmea.md.
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <type_traits>
#include <typeinfo>

#include <cxxabi.h>

#include "kalo/nmea/sentences.h"

namespace {

using namespace kalo;

std::string addressOf(addressRule_t rule, const std::string& name) {
    switch (rule) {
    case addressRule_t::end: return "`$--" + name + "`";
    case addressRule_t::encapsulatedEnd: return "`!--" + name + "`";
    case addressRule_t::whole: return "`$" + name + "`";
    }
    return {};
}

// A link to the header, which has the name of the class: kalo::ggaMsg_t is in ggaMsg.h.
template <typename View>
std::string headerOf() {
    if constexpr (std::is_same_v<View, noView_t>) {
        return "none";
    } else {
        int status = 0;
        const std::unique_ptr<char, decltype(&std::free)> name(
            abi::__cxa_demangle(typeid(View).name(), nullptr, nullptr, &status), &std::free);
        std::string header = name.get();
        header = header.substr(header.rfind(':') + 1);
        header = header.substr(0, header.rfind('_')) + ".h";
        return "[" + header + "](../../kalo/nmea/" + header + ")";
    }
}

template <typename View>
void print(const sentence_t<View>& sentence) {
    const std::string name(sentence.name);
    const std::string meaning(sentence.meaning);
    std::printf("| %s | %s | %s | %s |\n", name.c_str(), addressOf(sentence.rule, name).c_str(),
                meaning.c_str(), headerOf<View>().c_str());
}

} // namespace

int main() {
    std::puts("| Type | Address | Meaning | View |\n|---|---|---|---|");
    std::apply([](const auto&... sentence) { (print(sentence), ...); }, sentences);
}
