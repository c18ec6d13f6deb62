#pragma once

#include "norva/settings.h"
#include "norva/status.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// What is done to the settings of an import of binary records, in a window or without one.
namespace norva {

/// Channels of a record at most.
inline constexpr int kMostRecordChannels = 10000;

/// Appends channels of names "Ch1", "Ch2", ... without a format, or removes the last ones.
void SetChannelCount(RecordSettings& settings, std::size_t count);
/// Whether there are channels, and all of them have a name and a format: then the record's size is known.
bool IsRecordKnown(RecordSettings const& settings);
/// Takes the number of records from the file's length, and puts all of them into one line where the settings ask for
/// none or for longer lines; 0 and 0 as long as the record is not known.
void FitToFile(RecordSettings& settings, std::uint64_t fileLength);
/// Whether an import can run by settings that are filled in, with the fixed texts of what is wrong.
Status CheckRecordSettings(RecordSettings const& settings);
/// Fills in what is left to the file and checks all, for settings that nobody was asked for.
Status CompleteRecordSettings(RecordSettings& settings, std::string const& path, std::uint64_t fileLength);

}  // namespace norva
