// The status letters of a TSS1 record, in the order of `tss1Msg_t::status_t`; not installed.
#pragma once

namespace kalo {

constexpr char tss1StatusLetters[] = "UuGgHhFf";
constexpr unsigned tss1StatusCount = sizeof tss1StatusLetters - 1;

} // namespace kalo
