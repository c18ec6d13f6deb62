#pragma once

/// Numbers of the controls of every dialog template. Those below 5000 are fixed; the others are this library's own,
/// and a script reaches their controls by label.
namespace norva::ids {

namespace Export {  // 4000
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
}  // namespace Export

namespace SetChannels {  // 4003
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
}  // namespace SetChannels

namespace BinaryImport {  // 4004
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
}  // namespace BinaryImport

namespace Progress {  // 4053
inline constexpr int kFileLabel = 5000;
inline constexpr int kFileText = 4058;
inline constexpr int kFileBar = 4055;
inline constexpr int kChannelLabel = 5001;
inline constexpr int kChannelText = 4056;
inline constexpr int kChannelBar = 4057;
}  // namespace Progress

namespace GbnImport {  // 4059
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
}  // namespace GbnImport

namespace Delimiters {  // 4060
inline constexpr int kTab = 4048;
inline constexpr int kSpace = 4049;
inline constexpr int kSemicolon = 4050;
inline constexpr int kComma = 4052;
inline constexpr int kOther = 4051;
inline constexpr int kOtherText = 4054;
}  // namespace Delimiters

namespace CG3Import {  // 4062
inline constexpr int kColumnsInFile = 4074;
inline constexpr int kAdd = 4077;
inline constexpr int kRemove = 4078;
inline constexpr int kColumnsToImport = 4075;
inline constexpr int kDateFormat = 4080;
inline constexpr int kTimeFormat = 4081;
inline constexpr int kSortByTime = 4082;
inline constexpr int kImport = 4079;
}  // namespace CG3Import

namespace ImportFormats {  // 4063
inline constexpr int kFormats = 5000;
}  // namespace ImportFormats

}  // namespace norva::ids
