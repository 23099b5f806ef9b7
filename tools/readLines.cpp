#include "tools/readLines.h"

#include "tools/message.h"
#include "tools/stopSignal.h"

bool readLines(input_t& input, output_t& output, const std::function<void(const line_t&)>& use) {
    lineSplitter_t lines(false);
    bool atEnd = false;
    while (!atEnd && !output.isClosed()) {
        if (!input.failed() && !input.isReady()) {
            output.flush();
            input.wait();
        }
        const std::string_view data = input.read();
        atEnd = data.empty();
        lines.append(data);
        if (atEnd && stopSignal() == 0) {
            lines.finish();
        }
        line_t line;
        while (lines.next(line)) {
            use(line);
        }
        output.flushIfLarge();
        output.flushIfDue();
    }
    if (input.failed()) {
        complain(input.name(), input.reason());
    }
    return !input.failed();
}
