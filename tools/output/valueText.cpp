#include "tools/output/valueText.h"

const char* dayRuleText(dayRule_t rule) {
    switch (rule) {
    case dayRule_t::own: return "own";
    case dayRule_t::near: return "near";
    case dayRule_t::stamp: return "stamp";
    case dayRule_t::option: return "option";
    case dayRule_t::isVoid: return "void";
    case dayRule_t::rollover: return "rollover";
    }
    return "";
}
