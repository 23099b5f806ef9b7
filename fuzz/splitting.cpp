// Lines and their pieces add up to the input byte for byte, wherever it is cut and however lines
// are read.
#include "fuzz/target.h"
#include "tools/input/pieces.h"

namespace {

using fuzz::require;

// Lines as one text, to compare them.
std::string takeLines(const std::vector<std::string_view>& pieces, bool keepsEnds, bool takesPlain,
                      std::string_view input) {
    lineSplitter_t lines(keepsEnds);
    line_t line;
    std::string all;
    std::uint64_t end = 0;
    const auto take = [&] {
        while ((takesPlain && lines.nextPlain(line)) || lines.next(line)) {
            require(line.offset >= end && !line.text.empty() &&
                        line.text.size() <= lineSplitter_t::maxLength &&
                        input.substr(line.offset, line.text.size()) == line.text,
                    "a line is where it says");
            const std::string_view skipped = input.substr(end, line.offset - end);
            require(skipped.find_first_not_of(" \t\r\n") == std::string_view::npos,
                    "only blank lines and line ends are left out");
            end = line.offset + line.text.size();
            require(!keepsEnds || input.substr(end, line.end.size()) == line.end, "its line end");
            all += std::to_string(line.number) + (line.tooLong ? '~' : ' ');
            all += line.text;
            all += '\n';
        }
    };
    for (const std::string_view piece : pieces) {
        lines.append(piece);
        take();
    }
    lines.finish();
    take();
    require(input.substr(end).find_first_not_of(" \t\r\n") == std::string_view::npos,
            "nothing is left");
    require(lines.bytes() == input.size(), "all bytes are counted");
    return all;
}

void cutLines(std::string_view input, const splitOptions_t& options) {
    lineSplitter_t lines(options.strict);
    lines.append(input);
    lines.finish();
    splitState_t state;
    splitLine_t split;
    splitLine_t fresh;
    for (line_t line; lines.next(line);) {
        splitState_t before = state;
        splitLine(line, options, state, split);
        std::string all;
        for (const piece_t& piece : split.pieces) {
            require((piece.kind == kind_t::none) <= (piece.fault != fault_t::none),
                    "a piece without a kind has a fault");
            all += piece.raw;
        }
        require(all == line.text, "the pieces add up to the line");
        fresh = splitLine_t();
        splitLine(line, options, before, fresh);
        require(fresh.pieces.size() == split.pieces.size() && fresh.hasStamp == split.hasStamp &&
                    before.inTableHeader == state.inTableHeader,
                "what was cut before does not matter");
    }
}

} // namespace

void fuzz::splitting(std::string_view input) {
    const std::vector<std::string_view> pieces = piecesOf(input);
    const std::string lines = takeLines({input}, false, false, input);
    require(takeLines(pieces, false, false, input) == lines &&
                takeLines(pieces, false, true, input) == lines &&
                takeLines(pieces, true, false, input) == lines &&
                takeLines({input}, true, false, input) == lines,
            "cuts and ways of reading change nothing");
    cutLines(input, {});
    cutLines(input, {true, kind_t::none, false});
    cutLines(input, {false, kind_t::none, true});
    for (const kind_t only : {kind_t::sentence, kind_t::motion, kind_t::tracking, kind_t::table}) {
        cutLines(input, {false, only, false});
    }
}
