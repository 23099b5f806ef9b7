// What a TSS1 motion record holds.
#pragma once

#include "kalo/sensors/tss1Msg.h"
#include "tools/record/valueRow.h"

/// The status as the letter that stands for it.
inline bool motionStatus(const source_t<kalo::tss1Msg_t>& source, char& out) {
    constexpr std::size_t column = 13;
    kalo::tss1Msg_t::status_t status{};
    out = source.text.size() > column ? source.text[column] : ' ';
    return source.view.getStatus(status);
}

struct motionRecord_t {
    using view_t = kalo::tss1Msg_t;
    static constexpr const char* name = "TSS1";
    static constexpr const char* meaning = "motion";
    static constexpr std::tuple rows{
        row_t<&view_t::getRoll>{"roll", angle, 0, "", "col 14-18"},
        row_t<&view_t::getPitch>{"pitch", angle, 0, "", "col 20-24"},
        row_t<&view_t::getHeave>{"heave", metre, 0, "", "col 8-12"},
        row_t<&view_t::getHorizontalAcceleration>{"horizontalAcceleration", metrePerSecondSquared,
                                                  0, "", "col 1,2"},
        row_t<&view_t::getVerticalAcceleration>{"verticalAcceleration", metrePerSecondSquared, 0,
                                                "", "col 3-6"},
        row_t<motionStatus>{"status", noUnit, 0, "letter: U, G, H, F stable, u, g, h, f not",
                            "col 13"}};
};
