// Which satellite system a satellite in view belongs to.
#pragma once

#include <string>
#include <string_view>

/// The name of the system, by the talker of the sentence and the identifier of the satellite; null
/// if they do not tell. The talkers GP and GN send satellites of several systems: 1 to 32 are GPS,
/// 33 to 64 SBAS, 65 to 96 GLONASS (NMEA 0183); many receivers send SBAS also by its own numbers,
/// 120 to 158, and QZSS as 193 to 202.
const char* systemName(std::string_view talker, unsigned identifier);

/// The same; the talker where there is no name.
std::string systemOf(std::string_view talker, unsigned identifier);
