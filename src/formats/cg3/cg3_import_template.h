#pragma once

#include "norva/controls.h"

namespace norva {

namespace templates {
DialogTemplate const& CG3Import4062();
}  // namespace templates

/// Controls of the template 4062. Numbers below 5000 are fixed; the others are this library's own, and a script reaches
/// their controls by label.
namespace ids::CG3Import {
inline constexpr int kColumnsInFile = 4074;
inline constexpr int kAdd = 4077;
inline constexpr int kRemove = 4078;
inline constexpr int kColumnsToImport = 4075;
inline constexpr int kDateFormat = 4080;
inline constexpr int kTimeFormat = 4081;
inline constexpr int kSortByTime = 4082;
inline constexpr int kImport = 4079;
}  // namespace ids::CG3Import

}  // namespace norva
