// Each view class over any sentence: values can be read again, and from a copy.
#include <memory>

#include "fuzz/sentenceValues.h"
#include "fuzz/target.h"

void fuzz::views(std::string_view input) {
    const auto format = std::make_unique<kalo::nmeaFormat_t>(input.data(), input.size());
    const auto copy = std::make_unique<kalo::nmeaFormat_t>(*format);
    const auto values = valuesAsEach(*format);
    require(values == valuesAsEach(*format) && values == valuesAsEach(*copy),
            "a sentence and its copy give the same values, each time");

    const kalo::nmeaMsg_t view(kalo::msgTypeUnknown, *format);
    const std::vector<std::string> texts = view.getFields(0);
    require(texts.size() == view.fieldCount() && texts == view.getFields(0, view.fieldCount()) &&
                view.getFields(view.fieldCount()).empty(),
            "all fields are given");
    for (unsigned i = 0; i < texts.size(); ++i) {
        const int found = view.findField(texts[i], 0);
        require(found >= 0 && found <= static_cast<int>(i) && *view.field(i) == texts[i] &&
                    view.findField(texts[i], i) == static_cast<int>(i),
                "each field is found");
    }
}
