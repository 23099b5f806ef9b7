#include "tools/input/kinds.h"

#include <algorithm>

#include "kalo/sensors/tss1Msg.h"
#include "tools/input/text.h"

namespace {

constexpr std::string_view blank = " ";

// Cuts the next token off the front of `text`; empty at its end.
std::string_view takeToken(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(blank), text.size()));
    const std::string_view token = text.substr(0, text.find(blank));
    text.remove_prefix(token.size());
    return token;
}

// The length of the four tokens that a tracking record begins with.
std::size_t frontLength(std::string_view text) {
    std::string_view left = text;
    for (int i = 0; i < 4; ++i) {
        takeToken(left);
    }
    return text.size() - left.size();
}

bool readsAsMoment(std::string_view text) {
    const kalo::atsAsciiMsg_t tracking(text.data(), text.size());
    kalo::date_t date;
    kalo::timeOfDay_t time;
    return tracking.decodeDate(date) && tracking.decodeTimeOfDay(time);
}

// The length of a date and a time of day at the start of `text`, 0 without. Only the usual lengths
// are looked for, so that the search stays linear.
std::size_t momentLength(std::string_view text) {
    constexpr std::size_t longest = 64;
    std::string_view left = text.substr(0, longest);
    const std::string_view day = takeToken(left);
    const std::string_view month = takeToken(left);
    takeToken(left);
    const bool fits = !day.empty() && day.size() <= 2 && isDigit(day[0]) && month.size() == 3 &&
                      takeToken(left).find(':') != std::string_view::npos;
    const std::size_t length = std::min(longest, text.size()) - left.size();
    return fits && readsAsMoment(text.substr(0, length)) ? length : 0;
}

// "Name: value"
bool isHeaderLine(std::string_view text) {
    const std::size_t colon = text.find(": ");
    return colon != std::string_view::npos && colon > 0 &&
           std::all_of(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(colon),
                       [](char c) { return isLetter(c) || isDigit(c) || c == '-'; });
}

} // namespace

std::size_t nextMotion(std::string_view text) {
    std::size_t at = text.find(':', std::min(motionLength, text.size()));
    for (; at < text.size(); at = text.find(':', at + 1)) {
        kalo::tss1Msg_t motion;
        motion.init(text.data() + at, text.size() - at);
        if (motion.validMask == kalo::tss1Msg_t::validAll) {
            return at;
        }
    }
    return text.size();
}

bool holdsTag(const kalo::atsAsciiMsg_t& tracking) {
    constexpr unsigned firstTag = 4;
    constexpr unsigned slotCount = 20;
    std::string text;
    for (unsigned slot = firstTag; slot < slotCount; ++slot) {
        if (tracking.decodeField(slot, text)) {
            return true;
        }
    }
    return false;
}

bool isTracking(std::string_view text, bool needsTag) {
    const std::string_view content = text.substr(0, text.find('*'));
    const std::size_t front = frontLength(content);
    return content.find(':', front) != std::string_view::npos &&
           readsAsMoment(content.substr(0, front)) &&
           (!needsTag || holdsTag({text.data(), text.size()}));
}

std::size_t nextTracking(std::string_view text) {
    // A record begins behind a blank, or directly behind the checksum of the one before it.
    const std::size_t first = std::min(text.find_first_not_of(blank), text.size());
    for (std::size_t at = first + 1; at < text.size(); ++at) {
        const bool begins =
            isDigit(text[at]) && (text[at - 1] == ' ' || (at >= 3 && text[at - 3] == '*'));
        if (!begins) {
            continue;
        }
        const std::size_t length = momentLength(text.substr(at));
        if (length == 0) {
            continue; // most are not a date; a full check of each would not be linear
        }
        const std::size_t tag = text.find_first_of(":*", at + length);
        if (tag < text.size() && text[tag] == ':') {
            return at;
        }
    }
    return text.size();
}

tableLine_t tableLineOf(std::string_view text) {
    if (startsWith(text, "STR;") || startsWith(text, "CAS;") || startsWith(text, "NET;")) {
        return tableLine_t::record;
    }
    if (startsWith(text, "ENDSOURCETABLE")) {
        return tableLine_t::end;
    }
    if (startsWith(text, "SOURCETABLE ") || startsWith(text, "HTTP/")) {
        return tableLine_t::status;
    }
    return isHeaderLine(text) ? tableLine_t::header : tableLine_t::none;
}
