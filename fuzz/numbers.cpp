// Both ways of reading a number agree: that of the library and the stream that defines it.
#include "fuzz/target.h"
#include "kalo/nmea/nmeaField.h"
#include "tests/numberReference.h"

namespace {

template <typename T, typename... Base>
void checkField(const std::string& text, Base... base) {
    T ofText = 77;
    T ofField = 77;
    const bool isRead = kalo::decode(text, ofText, base...);
    fuzz::require(kalo::nmeaField_t(text).decode(ofField, base...) == isRead &&
                      fuzz::hasSameBits(ofText, ofField),
                  "a field reads as its text");
}

} // namespace

void fuzz::numbers(std::string_view input) {
    const std::string text(input);
    require(agrees(text), "the stream reads the same");
    checkField<float>(text);
    checkField<double>(text);
    checkField<short>(text, 10);
    checkField<unsigned short>(text, 16);
    checkField<int>(text, 8);
    checkField<unsigned>(text, 16);
    checkField<long long>(text, 10);
    checkField<unsigned long long>(text, 8);
}
