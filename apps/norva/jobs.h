#pragma once

#include "console.h"
#include "dialog_drivers.h"
#include "import_options.h"

#include <string>

namespace norva {

/// Level of the format list that offers every format once.
inline constexpr int kHighestLevel = 1;

/// The label in the format list of a format named in any case or by its number from 1; throws CommandError.
std::string FormatLabel(std::string const& wanted);

/// Imports `input` into a new store through the library's own dialogs; throws CommandError. `chosen`, unless null,
/// receives the choices of the column dialog; it has no columns when there was none.
void RunImport(std::string const& input, std::string const& store, ImportOptions const& options, CConsole& console,
               ColumnTemplate* chosen = nullptr);

/// Exports the store file to `output`, whose extension names the type; throws CommandError.
void RunExport(std::string const& store, std::string const& output, ExportOptions const& options, CConsole& console);

/// "5 lines, 10 channels, 296 locations" of a store file.
std::string StoreSummary(std::string const& store);

/// The path that the library writes: a name without any dot gets the extension of a store. A folder stays as it is, to
/// be refused.
std::string WrittenPath(std::string const& path);

/// Throws CommandError when `path` exists and may not be replaced, or is a folder.
void RequireFree(std::string const& path, bool force);

}  // namespace norva
