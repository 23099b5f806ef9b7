#include "tools/terminal/textTable.h"

#include <algorithm>
#include <numeric>

#include "tools/terminal/colour.h"
#include "tools/terminal/message.h"

namespace {

constexpr std::size_t gap = 2;
constexpr std::size_t shortest = 6; // of a text that is cut

std::string fitted(const std::string& text, std::size_t width, bool isNumber) {
    if (text.size() > width) {
        return text.substr(0, width - 1) + "~";
    }
    const std::string blanks(width - text.size(), ' ');
    return isNumber ? blanks + text : text + blanks;
}

} // namespace

std::vector<std::size_t> textTable_t::widths(std::size_t width) const {
    std::vector<std::size_t> widths(m_columns.size());
    for (std::size_t i = 0; i < m_columns.size(); ++i) {
        for (const auto& row : m_rows) {
            widths[i] = std::max(widths[i], row[i].size());
        }
        widths[i] = widths[i] == 0 ? 0 : std::max(widths[i], m_columns[i].head.size());
    }
    const auto total = [&] {
        return std::accumulate(
            widths.begin(), widths.end(), std::size_t{0},
            [](std::size_t sum, std::size_t part) { return sum + (part == 0 ? 0 : part + gap); });
    };
    while (width != 0 && total() > width + gap) {
        std::size_t longest = m_columns.size();
        std::size_t least = m_columns.size(); // the last one that may be left out
        for (std::size_t i = 0; i < m_columns.size(); ++i) {
            if (m_columns[i].width == width_t::cut && widths[i] > shortest &&
                (longest == m_columns.size() || widths[i] > widths[longest])) {
                longest = i;
            }
            least = m_columns[i].width == width_t::leftOut && widths[i] > 0 ? i : least;
        }
        if (longest != m_columns.size()) {
            --widths[longest];
        } else if (least != m_columns.size()) {
            widths[least] = 0;
        } else {
            break;
        }
    }
    return widths;
}

std::string textTable_t::text(int descriptor) const {
    const std::vector<std::size_t> wide = widths(terminalWidth(descriptor));
    std::string text;
    const auto lineOf = [&](const auto& cellOf) {
        std::string line;
        for (std::size_t i = 0; i < m_columns.size(); ++i) {
            if (wide[i] != 0) {
                line += fitted(cellOf(i), wide[i], m_columns[i].isNumber) + std::string(gap, ' ');
            }
        }
        return line.substr(0, line.find_last_not_of(' ') + 1);
    };
    const std::string heads = lineOf([&](std::size_t i) { return m_columns[i].head; });
    text += styled(style_t::heading, heads, descriptor) + '\n';
    for (const auto& row : m_rows) {
        text += lineOf([&](std::size_t i) { return row[i]; }) + '\n';
    }
    return text;
}
