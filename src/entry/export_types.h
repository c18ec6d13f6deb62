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

}  // namespace norva
