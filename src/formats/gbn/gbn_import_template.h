#pragma once

#include "norva/controls.h"

namespace norva {

namespace templates {
DialogTemplate const& GbnImport4059();
}  // namespace templates

/// Controls of the template 4059. Numbers below 5000 are fixed; the others are this library's own, and a script reaches
/// their controls by label.
namespace ids::GbnImport {
inline constexpr int kLineCount = 5000;
inline constexpr int kChannelCount = 5001;
inline constexpr int kChannels = 5002;
inline constexpr int kLines = 5003;
inline constexpr int kCheckSelection = 5004;
inline constexpr int kUncheckSelection = 5005;
inline constexpr int kOutputFormat = 5006;
inline constexpr int kFloat = 5007;
inline constexpr int kShort = 5008;
inline constexpr int kDouble = 5009;
inline constexpr int kLong = 5010;
inline constexpr int kText = 5011;
inline constexpr int kSetForSelected = 5012;
inline constexpr int kFiducial = 5013;
/// Columns of the channel list and of the line list.
enum ChannelColumn { kExportColumn, kNumberColumn, kNameColumn, kUnitsColumn, kFormatColumn };
enum LineColumn { kLineExportColumn, kLineNumberColumn, kLineNameColumn, kLineLocationsColumn };
}  // namespace ids::GbnImport

}  // namespace norva
