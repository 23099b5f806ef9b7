// A library that is loaded while a program runs, and that brings kalo with it.
#include "kalo/nmea/ggaMsg.h"

extern "C" __attribute__((visibility("default"))) double decodeOne() {
    const std::string text =
        "$GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47\r\n";
    const kalo::nmeaFormat_t format(text.data(), text.size());
    double latitude = 0;
    return kalo::ggaMsg_t(format).decodeLatitude(latitude) ? latitude : 0;
}
