#pragma once

#include "norva/controls.h"

namespace norva {

namespace templates {
DialogTemplate const& Delimiters4060();
}  // namespace templates

/// Controls of the template 4060. Numbers below 5000 are fixed; the others are this library's own, and a script reaches
/// their controls by label.
namespace ids::Delimiters {
inline constexpr int kTab = 4048;
inline constexpr int kSpace = 4049;
inline constexpr int kSemicolon = 4050;
inline constexpr int kComma = 4052;
inline constexpr int kOther = 4051;
inline constexpr int kOtherText = 4054;
}  // namespace ids::Delimiters

}  // namespace norva
