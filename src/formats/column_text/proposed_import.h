#pragma once

#include "exchange/import_format.h"

#include <string>

namespace norva {

/// Imports a text by settings that say how every row is to be read (ColumnTextSettings::reading): in one pass, through
/// the reader that found the settings. Texts keep their case. Asks nobody.
Status ImportByReading(ImportJob& job, std::string const& textPath);

}  // namespace norva
