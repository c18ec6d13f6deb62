#pragma once

#include "exchange/import_format.h"

#include <span>
#include <string_view>
#include <vector>

namespace norva {

/// In the order of the format list.
std::span<ImportFormat const* const> ImportFormats();
/// Null for a number or a label that no format has.
ImportFormat const* FindImportFormat(ImportFormatCode code);
ImportFormat const* FindImportFormat(std::string_view label);
/// What the format list offers at a level, in its order.
std::vector<ImportFormat const*> OfferedImportFormats(int level);

/// The formats in the order in which a file is tried: those that say themselves what they are, those that an extension
/// tells, any text, any bytes.
std::span<ImportFormat const* const> FormatsToTry();

}  // namespace norva
