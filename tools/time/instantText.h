// Instants and durations as text for people.
#pragma once

#include <string>

/// "2026-03-14T23:58:30Z", with up to three digits of a fraction.
std::string instantText(double unixSeconds);

/// "45.2 s", "3 min 10 s", "5 h 12 min" or "3 d 4 h".
std::string durationText(double seconds);
