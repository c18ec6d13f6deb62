#pragma once

#include "entry/import_formats.h"

#include <functional>
#include <string>
#include <string_view>

namespace norva {

/// Rewrites a file (first path) as column text (second path): 1 when it was written.
using ConvertToText = std::function<int(std::string const& inputPath, std::string const& textPath)>;

/// Imports a file through a temporary text file: converts it to `temporaryName` in the user's temporary folder,
/// imports that text, and deletes it whatever comes of the import. 0 without a message of its own when the folder
/// cannot be had or the conversion fails; what a failed conversion has left stays there.
int RunConvertedImport(ImportJob const& job, std::string_view temporaryName, ConvertToText const& convert);

}  // namespace norva
