#pragma once

#include "import_binary/gbn_contents.h"
#include "norva/values.h"
#include "store/column_files.h"

#include <cstdint>

namespace norva {

/// The description that a store channel gets: record type and array size go with the data type that was chosen.
NorvaChannelStruct DescribedGbnChannel(GbnChannelEntry const& entry);

/// Appends a channel's value for every location of the file to a column, as `described` wants them: converted to its
/// data type, with no-data of the channel's own type (a blank text) where the file has none. False when a write fails.
bool WriteGbnColumn(GbnChannelEntry const& entry, GbnChannelValues const& values, std::int64_t locationCount,
                    NorvaChannelStruct const& described, CColumnFiles& files, int column);

}  // namespace norva
