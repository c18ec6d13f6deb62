#pragma once

#include "norva/controls.h"

namespace norva {

namespace templates {
DialogTemplate const& Export4000();
}  // namespace templates

/// Controls of the template 4000. Numbers below 5000 are fixed; the others are this library's own, and a script reaches
/// their controls by label.
namespace ids::Export {
inline constexpr int kLinesGroup = 5000;
inline constexpr int kExistingLines = 4005;
inline constexpr int kLinesAddAll = 4007;
inline constexpr int kLinesAdd = 4008;
inline constexpr int kLinesRemove = 4009;
inline constexpr int kLinesRemoveAll = 4010;
inline constexpr int kExportLines = 4006;
inline constexpr int kLabelAsChannel = 4015;
inline constexpr int kLabelAsLine = 4016;
inline constexpr int kPointId = 4046;
inline constexpr int kColumnsGroup = 5001;
inline constexpr int kExistingColumns = 4001;
inline constexpr int kColumnsAddAll = 4011;
inline constexpr int kColumnsAdd = 4012;
inline constexpr int kColumnsRemove = 4013;
inline constexpr int kColumnsRemoveAll = 4014;
inline constexpr int kExportColumns = 4002;
inline constexpr int kUnits = 4091;
inline constexpr int kHelp = 4068;
}  // namespace ids::Export

}  // namespace norva
