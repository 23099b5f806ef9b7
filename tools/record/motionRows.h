// What a TSS1 motion record holds.
#pragma once

#include "kalo/sensors/tss1Msg.h"
#include "tools/record/valueRow.h"

/// The status as its letter.
inline bool motionStatus(const recordView_t<kalo::tss1Msg_t>& record, char& out) {
    constexpr std::size_t column = 13;
    kalo::tss1Msg_t::status_t status{};
    out = record.text.size() > column ? record.text[column] : ' ';
    return record.view.getStatus(status);
}

/// The fields of the rows are columns, counted from 0.
struct motionRecord_t {
    using view_t = kalo::tss1Msg_t;
    static constexpr std::string_view name = "TSS1";
    static constexpr std::string_view meaning = "motion";
    static constexpr std::tuple rows{
        row_t<&view_t::getRoll>{"roll", angle, range(14, 18), "sign as sent", "col 14-18"},
        row_t<&view_t::getPitch>{"pitch", angle, range(20, 24), "sign as sent", "col 20-24"},
        row_t<&view_t::getHeave>{"heave", metre, range(8, 12), "sign as sent", "col 8-12"},
        row_t<&view_t::getHorizontalAcceleration>{"horizontalAcceleration", metrePerSecondSquared,
                                                  fields(1, 2), "", "col 1,2"},
        row_t<&view_t::getVerticalAcceleration>{"verticalAcceleration", metrePerSecondSquared,
                                                range(3, 6), "sign as sent", "col 3-6"},
        row_t<motionStatus>{"status", noUnit, fields(13),
                            "letter: U, G, H, F settled; u, g, h, f not settled", "col 13"}};
};
