#include "formats/tki/tki_types.h"

#include <algorithm>
#include <iterator>

namespace norva {

namespace {

constexpr TkiType kTypes[] = {
    {"by", TkiElement::UnsignedByte, 1, false}, {"by*", TkiElement::UnsignedByte, 1, true},
    {"si", TkiElement::SignedByte, 1, false},   {"si*", TkiElement::SignedByte, 1, true},
    {"in", TkiElement::Short, 2, false},        {"in*", TkiElement::Short, 2, true},
    {"wd", TkiElement::Word, 2, false},         {"wd*", TkiElement::Word, 2, true},
    {"li", TkiElement::Long, 4, false},         {"li*", TkiElement::Long, 4, true},
    {"fl", TkiElement::Float, 4, false},        {"fl*", TkiElement::Float, 4, true},
    {"db", TkiElement::Double, 8, false},       {"db*", TkiElement::Double, 8, true},
    {"as", TkiElement::Character, 1, false},    {"as*", TkiElement::Character, 1, true},
};

}  // namespace

TkiType const* FindTkiType(std::string_view code) {
    auto const* const found = std::ranges::find(kTypes, code, &TkiType::code);
    return found == std::end(kTypes) ? nullptr : found;
}

}  // namespace norva
