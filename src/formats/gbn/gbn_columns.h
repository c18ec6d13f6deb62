#pragma once

#include "exchange/column_files.h"
#include "exchange/value_tally.h"
#include "formats/gbn/gbn_contents.h"
#include "norva/values.h"

#include <cstdint>

namespace norva {

/// The description that a store channel gets: record type and array size go with the data type that was chosen.
NorvaChannelStruct DescribedGbnChannel(GbnChannelEntry const& entry);

/// What became of a channel's values in the selected lines.
struct GbnColumnTally {
    std::uint64_t present = 0;  ///< values that the file has
    ValueTally values;
};

/// Appends a channel's value for every location of the file to a column, as `described` wants them: converted to its
/// data type, with no-data of the channel's own type (a blank text) where the file has none. The column is the
/// channel's index. False when a write fails.
bool WriteGbnColumn(GbnContents const& contents, std::size_t channel, NorvaChannelStruct const& described,
                    CColumnFiles& files, GbnColumnTally& tally);

}  // namespace norva
