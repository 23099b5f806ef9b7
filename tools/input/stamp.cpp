#include "tools/input/stamp.h"

#include <algorithm>
#include <string>

#include "kalo/time/dateTime.h"
#include "kalo/util/stringUtil.h"
#include "tools/time/calendarDate.h"

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// Walks over a text; every step says whether it went.
class cursor_t {
public:
    cursor_t(std::string_view text, std::size_t position) : m_text(text), m_position(position) {}

    std::size_t position() const { return m_position; }

    bool oneOf(std::string_view characters) {
        if (m_position >= m_text.size() || characters.find(m_text[m_position]) == m_text.npos) {
            return false;
        }
        ++m_position;
        return true;
    }

    // `count` digits whose value lies from `least` to `most`.
    bool number(int count, int least, int most) {
        int value = 0;
        for (int i = 0; i < count; ++i) {
            if (!digit()) {
                return false;
            }
            value = value * 10 + (m_text[m_position - 1] - '0');
        }
        return value >= least && value <= most;
    }

    // 1 to `most` digits, and no further one.
    bool digits(int most) {
        int count = 0;
        while (digit()) {
            ++count;
        }
        return count >= 1 && count <= most;
    }

private:
    bool digit() {
        if (m_position >= m_text.size() || !isDigit(m_text[m_position])) {
            return false;
        }
        ++m_position;
        return true;
    }

    std::string_view m_text;
    std::size_t m_position;
};

// 2014-08-01T00:00:00.316000Z; the separator is T, t or a blank, the fraction and the zone may be
// missing, the zone may be an offset.
std::size_t isoLength(std::string_view line) {
    constexpr std::size_t dateLength = 10;
    constexpr int longestFraction = 9;
    kalo::date_t date;
    cursor_t at(line, dateLength);
    if (!(parseDate(line.substr(0, dateLength), date) && at.oneOf("Tt ") && at.number(2, 0, 23) &&
          at.oneOf(":") && at.number(2, 0, 59) && at.oneOf(":") && at.number(2, 0, 60))) {
        return 0;
    }
    if (at.oneOf(".") && !at.digits(longestFraction)) {
        return 0;
    }
    if (at.oneOf("+-")) {
        if (!at.number(2, 0, 23)) {
            return 0;
        }
        cursor_t minutes = at;
        minutes.oneOf(":");
        if (minutes.number(2, 0, 59)) {
            at = minutes;
        }
    } else {
        at.oneOf("Zz");
    }
    return at.position();
}

// The layouts that are known, each giving the length of its stamp or 0.
constexpr std::size_t (*layouts[])(std::string_view) = {isoLength};

unsigned number(std::string_view text) {
    unsigned value = 0;
    kalo::decode(std::string(text), value, 10);
    return value;
}

} // namespace

std::optional<double> stampTime(std::string_view stamp) {
    constexpr std::size_t secondsAt = 17;
    if (stamp.empty() || isoLength(stamp) != stamp.size()) {
        return {};
    }
    const kalo::date_t date{number(stamp.substr(0, 4)), number(stamp.substr(5, 2)),
                            number(stamp.substr(8, 2))};
    kalo::timeOfDay_t time{number(stamp.substr(11, 2)), number(stamp.substr(14, 2)), 0};
    const std::size_t zone = std::min(stamp.find_first_of("+-Zz", secondsAt), stamp.size());
    kalo::decode(std::string(stamp.substr(secondsAt, zone - secondsAt)), time.second);
    double offset = 0;
    if (zone < stamp.size() && (stamp[zone] == '+' || stamp[zone] == '-')) {
        const std::string_view minutes = stamp.substr(zone + 3);
        offset = number(stamp.substr(zone + 1, 2)) * 3600.0 +
                 (minutes.empty() ? 0 : number(minutes.substr(minutes[0] == ':' ? 1 : 0)) * 60.0);
        offset = stamp[zone] == '-' ? -offset : offset;
    }
    return kalo::dateTime_t(date, time).toTimestamp() - offset;
}

std::size_t stampLength(std::string_view line) {
    for (const auto layout : layouts) {
        const std::size_t length = layout(line);
        if (length > 0 && length < line.size() &&
            std::string_view(" \t,").find(line[length]) != std::string_view::npos) {
            return length;
        }
    }
    return 0;
}
