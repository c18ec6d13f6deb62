#pragma once

#include "norva/column_text.h"
#include "norva/settings.h"

/// What a person changes in the columns that an inspection proposes. Channels count from 0.
namespace norva {

/// Makes a channel a number, a date, a time, a position or one that is not imported, read in the form that goes with
/// how its column looks; nothing changes where it is of that type already. Widths of texts come from an inspection:
/// making another type a text fails.
Status SetProposedType(ColumnTextSettings& settings, int channel, ColumnType type);
/// Code of a date's or time's template; the order of its parts is how the dates are read.
Status SetProposedTemplate(ColumnTextSettings& settings, int channel, int code);

}  // namespace norva
