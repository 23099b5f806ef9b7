#include "tools/command/versionText.h"

#include <cstdlib>
#include <memory>
#include <string_view>

#include <archive.h>
#include <bzlib.h>
#include <dlfcn.h>
#include <fmt/format.h>
#include <lz4.h>
#include <lzma.h>
#include <nlohmann/json.hpp>
#include <toml++/toml.h>
#include <zlib.h>
#include <zstd.h>

#include "kalo/util/portability.h"

namespace {

// The file of the shared library in use, which may be newer than the program. It ends in the
// library's version. Empty if the library is part of the program.
std::string libraryFile() {
    Dl_info place = {};
    const void* const function =
        reinterpret_cast<const void*>(&kalo::portability::set_stdin_binary);
    if (dladdr(function, &place) == 0 || place.dli_fname == nullptr) {
        return {};
    }
    const std::unique_ptr<char, decltype(&std::free)> path(realpath(place.dli_fname, nullptr),
                                                           &std::free);
    const std::string name = path ? path.get() : place.dli_fname;
    constexpr std::string_view stem = "libkalo.";
    return name.compare(name.rfind('/') + 1, stem.size(), stem) == 0 ? name : "";
}

// 9.1.0 of 90100, whose parts are `step` apart.
std::string versionOf(int number, int step) {
    return fmt::format("{}.{}.{}", number / step / step, number / step % step, number % step);
}

} // namespace

std::string versionText() {
    std::string text = "kalo " KALO_VERSION "\n";
    const auto line = [&](const char* head, const std::string& what) {
        text += fmt::format("{:10} {}\n", head, what);
    };
    line("built", "with " KALO_COMPILER ", build type " KALO_BUILD_TYPE);
    const std::string library = libraryFile();
    line("library", library.empty() ? "part of the program" : library);
    const std::string bzip2 = BZ2_bzlibVersion();
    constexpr int hundred = 100;
    constexpr int thousand = 1000;
    line("uses",
         fmt::format("fmt {}, libarchive {}, zlib {}, bzip2 {}, liblzma {}, zstd {}, lz4 {}, "
                     "nlohmann_json {}.{}.{}, toml++ {}.{}.{}",
                     versionOf(FMT_VERSION, hundred), versionOf(archive_version_number(), thousand),
                     zlibVersion(), bzip2.substr(0, bzip2.find(',')), lzma_version_string(),
                     ZSTD_versionString(), LZ4_versionString(), NLOHMANN_JSON_VERSION_MAJOR,
                     NLOHMANN_JSON_VERSION_MINOR, NLOHMANN_JSON_VERSION_PATCH, TOML_LIB_MAJOR,
                     TOML_LIB_MINOR, TOML_LIB_PATCH));
#ifdef KALO_REPORT_USES
    line("report", "draws with " KALO_REPORT_USES);
#else
    line("report",
         "left out; it needs the packages libjs-dygraphs and libjs-leaflet when kalo is built");
#endif
    line("unpacks", "gzip, zstd, xz, bzip2, lz4; archives: tar, zip");
    return text;
}
