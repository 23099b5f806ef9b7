#include "tools/readInput.h"

#include "tools/message.h"
#include "tools/stopSignal.h"

bool readBlocks(input_t& input, output_t& output,
                const std::function<void(std::string_view block)>& use) {
    std::string start; // the first bytes, as long as they do not tell what they are
    content_t content = content_t::undecided;
    while (!output.isClosed() && !input.failed()) {
        // A live reader gets what there is before the next bytes are waited for.
        if (!input.isReady()) {
            output.flush();
            input.wait();
        }
        std::string_view block = input.read();
        if (block.empty()) {
            break;
        }
        if (content == content_t::undecided) {
            const char* format = nullptr;
            block = start.append(block);
            content = contentOf(start, format);
            if (content == content_t::compressed) {
                complain(input.name(),
                         fmt::format("looks like {}, which is not read; unpack it first", format));
                return false;
            }
            if (content == content_t::undecided) {
                continue;
            }
        }
        use(block);
        output.flushIfDue();
    }
    if (content == content_t::undecided && stopSignal() == 0) {
        use(start);
    }
    if (input.failed()) {
        complain(input.name(), input.reason());
    }
    return !input.failed();
}

bool readLines(input_t& input, output_t& output,
               const std::function<void(const line_t& line)>& use) {
    lineSplitter_t lines(false);
    line_t line;
    const auto useLines = [&] {
        while (!output.isClosed() && lines.next(line)) {
            use(line);
            output.flushIfLarge();
        }
    };
    const bool isRead = readBlocks(input, output, [&](std::string_view block) {
        lines.append(block);
        useLines();
    });
    if (stopSignal() == 0) {
        lines.finish();
        useLines();
    }
    return isRead;
}
