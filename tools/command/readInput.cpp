#include "tools/command/readInput.h"

#include "tools/input/input.h"
#include "tools/terminal/message.h"
#include "tools/terminal/stopSignal.h"

bool readBlocks(const std::string& name, output_t& output,
                const std::function<void(std::string_view block)>& use) {
    output.flush(); // opening may take its time
    input_t input(name);
    if (input.isSameFile(output.descriptor())) {
        complain(name, "the input is also the output; write to another file");
        return false;
    }
    std::string start; // the first bytes, as long as they do not tell what they are
    content_t content = content_t::undecided;
    while (!output.isClosed() && !input.failed()) {
        // A live reader gets what there is before the next bytes are waited for.
        if (!input.isReady()) {
            output.flush();
            input.wait(output.descriptor());
            output.checkReader();
            if (output.isClosed()) {
                return true;
            }
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
                complain(name, std::string(format) + "-compressed input; unpack it first");
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
        complain(name, input.reason());
    }
    return !input.failed();
}

bool readLines(const std::string& name, output_t& output,
               const std::function<void(const line_t& line)>& use) {
    lineSplitter_t lines(false);
    line_t line;
    const auto useLines = [&] {
        while (!output.isClosed() && lines.next(line)) {
            use(line);
            output.flushIfLarge();
        }
    };
    const bool isRead = readBlocks(name, output, [&](std::string_view block) {
        lines.append(block);
        useLines();
    });
    if (stopSignal() == 0) {
        lines.finish();
        useLines();
    }
    return isRead;
}

int finish(output_t& output, int status) {
    output.flush();
    if (output.failed()) {
        complain("standard output", output.reason());
        return exitFailure;
    }
    if (output.isClosed()) {
        return 0;
    }
    return stopSignal() != 0 ? exitSignal + stopSignal() : status;
}
