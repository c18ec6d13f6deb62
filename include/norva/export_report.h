#pragma once

#include "norva/api.h"

#include <cstdint>
#include <string>
#include <vector>

/// What an export made of the store's values.
namespace norva {

/// One exported channel. A value that is counted nowhere below reads back from the file as it stands in the store.
struct ExportReportChannel {
    std::string name;
    std::uint64_t values = 0;       ///< all that were written, those without data too
    std::uint64_t fewerDigits = 0;  ///< the text written reads back as another number
    std::uint64_t exponents = 0;    ///< the same of a channel that is written as 1.2e+06
    std::uint64_t cutTexts = 0;     ///< longer than the file holds
    /// Texts that a reader of columns takes for no or for several cells: empty, with a blank, or with a line break
    /// (written as a blank).
    std::uint64_t splitTexts = 0;
    std::uint64_t replaced = 0;       ///< numbers that the file cannot hold, written as no-data
    std::uint64_t laterElements = 0;  ///< elements of arrays after the first, which are not written
    std::uint64_t notGiven = 0;       ///< locations for which the store gave no value
};

/// A kind of loss: its name in reports, what it means, and where it is counted.
struct ExportKind {
    char const* name;
    char const* text;
    std::uint64_t ExportReportChannel::*count;
};
/// All kinds; ends with a kind without a name.
NORVA_API extern ExportKind const kExportKinds[];

struct NORVA_API ExportReport {
    std::uint64_t lines = 0;             ///< written
    std::uint64_t locations = 0;         ///< written, of all lines
    std::uint64_t hiddenLines = 0;       ///< of the store, which are never written to another file
    std::uint64_t deletedLocations = 0;  ///< of the lines written, left out
    std::uint64_t changedNames = 0;      ///< names of lines and channels that the file cannot hold as they are
    std::uint64_t rowsBeyond = 0;        ///< rows and columns of a sheet that its readers do not show
    std::vector<ExportReportChannel> channels;

    /// Values that a reader of the file does not get as they stand in the store.
    std::uint64_t LossCount() const;
};

/// Copies the report of this thread's last Export_Data_File: 1, or 0 when that export failed or there was none.
/// ExportStore has a report in its result.
NORVA_API int GetExportReport(ExportReport& report);

}  // namespace norva
