// Tracking records: copies equal their originals, and neither more blanks nor line ends matter.
#include <memory>
#include <optional>

#include "fuzz/target.h"
#include "kalo/sensors/atsAsciiMsg.h"
#include "kalo/util/stringUtil.h"

namespace {

using fuzz::require;
using kalo::atsAsciiMsg_t;

constexpr unsigned slotCount = 20;

std::vector<std::optional<std::string>> slotsOf(const atsAsciiMsg_t& record) {
    std::vector<std::optional<std::string>> slots;
    for (unsigned slot = 0; slot <= slotCount; ++slot) {
        std::string text = "untouched";
        const bool isThere = record.decodeField(slot, text);
        require(isThere || text == "untouched", "no text, nothing touched");
        slots.push_back(isThere ? std::optional(text) : std::nullopt);
    }
    require(!slots.back(), "no slot beyond the last");
    return slots;
}

bool hasWrongChecksum(std::string_view line) {
    const std::size_t star = line.find('*');
    if (star == std::string_view::npos) {
        return false;
    }
    const std::string digits(line.substr(
        star + 1, line.find_first_not_of("0123456789ABCDEFabcdef", star + 1) - star - 1));
    unsigned sum = 0;
    if (digits.size() != 2 || !kalo::decode(digits, sum, 16)) {
        return true;
    }
    for (const char c : line.substr(0, star)) {
        sum ^= static_cast<unsigned char>(c);
    }
    return sum != 0;
}

} // namespace

void fuzz::ats(std::string_view input) {
    auto record = std::make_unique<atsAsciiMsg_t>(input.data(), input.size());
    const auto slots = slotsOf(*record);
    require(record->checksumError() == hasWrongChecksum(input), "the checksum as the page says");
    for (unsigned slot = 0; slot <= slotCount; ++slot) {
        unsigned count = 0;
        double number = 0;
        double radians = 77;
        const bool isNumber = record->decodeField(slot, number);
        require(!record->decodeField(slot, count) || isNumber, "an integer is a number");
        require(record->decodeAsRadians(slot, radians) == isNumber && (isNumber || radians == 77),
                "an angle is a number");
    }
    kalo::date_t date{77, 77, 77};
    kalo::timeOfDay_t time{77, 77, 77};
    require(record->decodeDate(date) ? date.month >= 1 && date.month <= 12 && date.day <= 31
                                     : date.year == 77 && date.month == 77 && date.day == 77,
            "a date, or nothing touched");
    require(record->decodeTimeOfDay(time) ? time.hour < 24 && time.minute < 60 && time.second < 60
                                          : time.hour == 77 && time.minute == 77,
            "a time of day, or nothing touched");

    const atsAsciiMsg_t copy(*record);
    atsAsciiMsg_t assigned;
    assigned = copy;
    assigned = *&assigned;
    record.reset();
    require(slotsOf(copy) == slots && slotsOf(assigned) == slots, "copies outlive the original");
    std::string wide;
    for (const char c : input) {
        wide.append(c == ' ' ? 2 : 1, c);
    }
    wide += "\r\n";
    require(slotsOf({wide.data(), wide.size()}) == slots, "blanks and the line end do not matter");
}
