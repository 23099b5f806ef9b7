// A sentence is framed as docs/formats/nmea.md says, whatever was framed before with the same
// object; copies equal the original and outlive it.
#include <memory>
#include <optional>

#include "fuzz/target.h"
#include "kalo/nmea/nmeaMsg.h"
#include "kalo/util/stringUtil.h"

namespace {

using fuzz::require;
using kalo::nmeaFormat_t;

std::string bodyOf(const nmeaFormat_t& format) {
    std::string body;
    for (unsigned i = 0; i < format.fieldCount(); ++i) {
        body.append(i == 0 ? "" : ",").append(format.field(i)->toString());
    }
    return body;
}

bool isSame(const nmeaFormat_t& left, const nmeaFormat_t& right) {
    return left.isValid() == right.isValid() && left.type() == right.type() &&
           left.fieldCount() == right.fieldCount() && bodyOf(left) == bodyOf(right) &&
           (left.isValid() || left.formatError() == right.formatError());
}

// What stands in front of the checksum and the line end; nothing for a text that is no sentence,
// and why.
std::optional<std::string> frame(std::string_view text, int& error) {
    const std::size_t end = text.size() - std::min<std::size_t>(text.size(), 2);
    error = text.empty() || (text[0] != '$' && text[0] != '!') ? 0 : 1;
    if (error == 0 || text.substr(end) != "\r\n") {
        return std::nullopt;
    }
    std::string body(text.substr(0, end));
    if (end < 3 || body[end - 3] != '*') {
        return body;
    }
    unsigned stated = 0;
    if (!kalo::decode(body.substr(end - 2), stated, 16)) {
        return std::nullopt;
    }
    body.resize(end - 3);
    for (std::size_t i = 1; i < body.size(); ++i) {
        stated ^= static_cast<unsigned char>(body[i]);
    }
    error = 2;
    return stated == 0 ? std::optional(body) : std::nullopt;
}

} // namespace

void fuzz::framing(std::string_view input) {
    auto format = std::make_unique<nmeaFormat_t>(input.data(), input.size());
    int error = 0;
    const std::optional<std::string> body = frame(input, error);
    require(format->isValid() == body.has_value(), "framed as the page says");
    require(body ? bodyOf(*format) == *body : format->formatError() == error,
            "the fields make up the body, or the error is the right one");
    require(format->field(format->fieldCount()) == nullptr, "no field beyond the last");
    require(body || (format->fieldCount() == 0 && format->type() == kalo::msgTypeUnknown),
            "an invalid sentence has no fields and no type");

    constexpr std::string_view other =
        "$GPGGA,,1,a field that is longer than any short text,,,\r\n";
    nmeaFormat_t again(other.data(), other.size());
    require(again.init(input.data(), input.size()) == format->isValid() && isSame(again, *format),
            "framed again as anew");
    again.init(other.data(), other.size());
    again = *format;
    const nmeaFormat_t copy(again);
    const nmeaFormat_t& self = again;
    again = self;
    require(isSame(again, *format) && isSame(copy, *format), "copies are equal");
    format.reset();
    require(isSame(again, copy), "copies outlive the original");

    const std::unique_ptr<kalo::nmeaMsg_t> view(kalo::nmeaMsg_t::create(copy));
    const bool hasView = copy.type() != kalo::msgTypeUnknown && copy.type() != kalo::msgTypeAlm &&
                         copy.type() != kalo::msgTypeVdm;
    require((view != nullptr) == hasView && (!hasView || view->type() == copy.type()),
            "each type has its view");
}
