#pragma once

#include "norva/controls.h"

namespace norva {

namespace templates {
DialogTemplate const& SetChannels4003();
}  // namespace templates

/// Controls of the template 4003. Numbers below 5000 are fixed; the others are this library's own, and a script reaches
/// their controls by label.
namespace ids::SetChannels {
inline constexpr int kFileHeader = 4018;
inline constexpr int kSkipFirst = 4073;
inline constexpr int kRowsNote = 5000;
inline constexpr int kDelimiters = 4047;
inline constexpr int kPreview = 5001;
inline constexpr int kName = 5002;
inline constexpr int kUnits = 5003;
inline constexpr int kText = 4019;
inline constexpr int kTextSize = 4061;
inline constexpr int kFloat = 4020;
inline constexpr int kDouble = 4021;
inline constexpr int kShort = 4022;
inline constexpr int kLong = 4023;
inline constexpr int kDate = 4062;
inline constexpr int kDateTemplate = 4063;
inline constexpr int kTime = 4064;
inline constexpr int kTimeTemplate = 4065;
inline constexpr int kGeographic = 4083;
inline constexpr int kSkipColumn = 4024;
inline constexpr int kLineLabel = 4025;
inline constexpr int kHelp = 4068;
}  // namespace ids::SetChannels

}  // namespace norva
