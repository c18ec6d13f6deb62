#pragma once

#include "norva/controls.h"

namespace norva {

namespace templates {
DialogTemplate const& BinaryImport4004();
}  // namespace templates

/// Controls of the template 4004. Numbers below 5000 are fixed; the others are this library's own, and a script reaches
/// their controls by label.
namespace ids::BinaryImport {
inline constexpr int kRecordsNote = 5000;
inline constexpr int kFormatNote = 5001;
inline constexpr int kChannelCount = 5002;
inline constexpr int kSetCount = 5003;
inline constexpr int kChannels = 5004;
inline constexpr int kSelectAll = 5005;
inline constexpr int kReadFormat = 5006;
inline constexpr int kReadInt32 = 5007;
inline constexpr int kReadInt16 = 5008;
inline constexpr int kReadFloat64 = 5009;
inline constexpr int kReadFloat32 = 5010;
inline constexpr int kWriteFormat = 5011;
inline constexpr int kWriteFloat = 5012;
inline constexpr int kWriteDouble = 5013;
inline constexpr int kWriteShort = 5014;
inline constexpr int kWriteLong = 5015;
inline constexpr int kSetForSelected = 5016;
inline constexpr int kTotalRecords = 5017;
inline constexpr int kPointsPerLine = 5018;
inline constexpr int kAddFiducial = 5019;
inline constexpr int kFrequency = 5020;
inline constexpr int kHelp = 5021;
/// Columns of the channel list.
enum ChannelColumn { kNumberColumn, kNameColumn, kUnitsColumn, kFormatColumn };
}  // namespace ids::BinaryImport

}  // namespace norva
