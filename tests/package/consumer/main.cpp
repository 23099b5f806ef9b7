// Decodes one sentence, checks what comes out, and tells which kind of library it was built for.
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>

#include "kalo/kalo.h"

// Initialised before main, like the library's constants that it reads.
const std::string letters = kalo::psimSsbMsg_t::coordTypeUtm + kalo::psimLbpMsg_t::statusUnknown;

int main() {
    if (letters != "U???") {
        std::puts("a constant was read before it was initialised");
        return 1;
    }
    const char sentence[] = "$GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47\r\n";
    const kalo::nmeaFormat_t format(sentence, std::strlen(sentence));
    const std::unique_ptr<kalo::nmeaMsg_t> msg(kalo::nmeaMsg_t::create(format));
    const auto* gga = dynamic_cast<const kalo::ggaMsg_t*>(msg.get());
    double latitude = 0;
    double longitude = 0;
    unsigned satellites = 0;
    if (gga == nullptr || !gga->decodeLatitude(latitude) || !gga->decodeLongitude(longitude) ||
        !gga->decodeSatCount(satellites)) {
        std::puts("no value");
        return 1;
    }
    const double degree = std::acos(-1.0) / 180;
#ifdef KALO_STATIC
    const char* kind = "static";
#else
    const char* kind = "shared";
#endif
    std::printf("%s %.6f %.6f %u\n", kind, latitude / degree, longitude / degree, satellites);
    const bool right = std::abs(latitude - (48 + 7.038 / 60) * degree) < 1e-12 &&
                       std::abs(longitude - (11 + 31.0 / 60) * degree) < 1e-12 && satellites == 8;
    return right ? 0 : 1;
}
