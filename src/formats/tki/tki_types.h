#pragma once

#include "store/value_rules.h"

#include <cstdint>
#include <string_view>

namespace norva {

enum class TkiElement { UnsignedByte, SignedByte, Short, Word, Long, Float, Double, Character };

/// A type code of TKI descriptors.
struct TkiType {
    std::string_view code;
    TkiElement element;
    int size;  ///< bytes of an element
    bool isArray;

    bool IsText() const { return element == TkiElement::Character && !isArray; }
    bool IsInteger() const { return element <= TkiElement::Long; }
    /// One record holds one array, which the store keeps.
    bool IsIntegerArray() const { return isArray && IsInteger(); }
    /// One record holds samples, each of them a number.
    bool IsScalar() const { return !isArray && element != TkiElement::Character; }
};

/// Compared exactly; null for an unknown code.
TkiType const* FindTkiType(std::string_view code);

/// The number that stands at `bytes`; 0 for a character.
inline double LoadTkiNumber(TkiElement element, char const* bytes) {
    switch (element) {
        case TkiElement::UnsignedByte:
            return static_cast<unsigned char>(*bytes);
        case TkiElement::SignedByte:
            return static_cast<signed char>(*bytes);
        case TkiElement::Short:
            return static_cast<std::int16_t>(LoadLittle16(bytes));
        case TkiElement::Word:
            return LoadLittle16(bytes);
        case TkiElement::Long:
            return static_cast<std::int32_t>(LoadLittle32(bytes));
        case TkiElement::Float:
            return LoadFloat(bytes);
        case TkiElement::Double:
            return LoadDouble(bytes);
        case TkiElement::Character:
            break;
    }
    return 0;
}

}  // namespace norva
