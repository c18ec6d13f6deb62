#pragma once

#include "formats/gbn/gbn_file.h"
#include "formats/gbn/gbn_memory.h"
#include "norva/import_report.h"
#include "norva/values.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace norva {

struct GbnChannelEntry {
    int selected = 1;
    int channelNumber = 0;
    NorvaChannelStruct description;     ///< the user can change its name, units and data type
    int sourceType = DataType::kFloat;  ///< store data type of the values in the file
};

struct GbnLineEntry {
    int selected = 1;
    std::int64_t locationCount = 0;  ///< the most values that any channel has in the line
    std::string name;
};

/// Values of one data block, as they stand in the file.
struct GbnRun {
    std::int64_t first = 0;  ///< location of the first value, counted through all lines
    std::int64_t count = 0;
    std::int32_t valueType = 0;
    std::int32_t line = 0;
    char const* bytes = nullptr;
};

/// Values of one channel. Locations that no run covers have none: there the channel is padded.
struct GbnChannelValues {
    int channelNumber = 0;
    double fiducialStart = 1.0;      ///< of the last block
    double fiducialIncrement = 0.1;  ///< of the last block
    std::vector<GbnRun> runs;        ///< ascending, not overlapping
};

/// What a GBN file holds.
struct GbnContents {
    std::vector<GbnChannelEntry> channels;  ///< records of code 1, in file order
    std::vector<GbnLineEntry> lines;        ///< in file order; a line record without data adds none
    std::vector<GbnChannelValues> values;   ///< one for each channel, in the same order
    GbnArena arena;                         ///< what the runs point into
    std::int64_t locationCount = 0;         ///< of all lines
    std::int64_t blocksBeforeLines = 0;     ///< data blocks before the first line record, which are left out
    std::vector<ReportPart> parts;          ///< records by kind; they add up to the bytes of the file
    std::uint64_t recordsLeftOut = 0;       ///< data blocks before the first line or of no channel
    std::string problem;                    ///< why reading stopped before the end of data, and where; else empty
};

/// Name of the line that a record opens: "12", "12.2", "12:7", "12.2:7".
std::string GbnLineName(GbnLineRecord const& record);

enum class GbnValues {
    Keep,
    Skip,  ///< no runs are made
};

/// Reads what follows the signature. `progress` is told the percentage of the file that is read, before each record.
void ReadGbnContents(GbnFile& file, GbnContents& contents, GbnValues values,
                     std::function<void(int percent)> const& progress);

}  // namespace norva
