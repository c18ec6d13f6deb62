#pragma once

#include "norva/file_util.h"

#include <span>
#include <string>
#include <string_view>

namespace norva {

struct ExportJob {
    CNorvaFileUtil* store = nullptr;
    std::string outputPath;
    CWindow* owner = nullptr;
};

/// One row of the export type table. The codes are fixed.
struct ExportType {
    int code = -1;
    std::string_view label;
    std::string_view extensions;                 ///< upper-case letters, separated by blanks; "P*": all that begin so
    int (*run)(ExportJob const& job) = nullptr;  ///< null: no exporter
};

std::span<ExportType const> ExportTypes();

/// The type of a reported extension, compared in upper case; -1 when it is none.
int ExportTypeOf(std::string_view extension);
ExportType const* FindExportType(int code);

// The exporters' entries, each defined beside its exporter.
int RunNativeExport(ExportJob const& job);
int RunXyzExport(ExportJob const& job);
int RunSpreadsheetExport(ExportJob const& job);
int RunGbnExport(ExportJob const& job);

}  // namespace norva
