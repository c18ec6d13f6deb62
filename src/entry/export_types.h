#pragma once

#include "exchange/export_type.h"

#include <span>
#include <string_view>

namespace norva {

/// In the order in which an extension is tried.
std::span<ExportType const* const> ExportTypes();

/// The type of a reported extension, compared in upper case; None when it is none.
ExportTypeCode ExportTypeOf(std::string_view extension);
ExportType const* FindExportType(ExportTypeCode code);

/// The types beside the fixed ones, which are written without windows alone.
std::span<ExportType const* const> FurtherExportTypes();
/// The type that is written without windows to a file of that extension, a further one or a fixed one; null for none.
ExportType const* FindWrittenType(std::string_view extension);

}  // namespace norva
