#include "entry/export_types.h"

#include "formats/column_text/xyz_export_type.h"
#include "formats/csv/csv_export_type.h"
#include "formats/gbn/gbn_export_type.h"
#include "formats/native/native_export_type.h"
#include "formats/worksheet/worksheet_export_type.h"
#include "norva/converters.h"
#include "platform/text.h"

#include <algorithm>
#include <vector>

namespace norva {

namespace {

/// Extensions that are kept for a type without an exporter.
constexpr ExportType kReserved = {.code = ExportTypeCode::Reserved, .label = "Reserved", .extensions = "P*"};

constexpr ExportType const* kTypes[] = {&kNativeExport, &kReserved, &kXyzExport, &kWorksheetExport, &kGbnExport};

constexpr ExportType const* kFurtherTypes[] = {&kCsvExport};

bool Fits(std::string_view pattern, std::string_view extension) {
    if (pattern.ends_with('*')) return extension.starts_with(pattern.substr(0, pattern.size() - 1));
    return pattern == extension;
}

}  // namespace

std::span<ExportType const* const> ExportTypes() {
    return kTypes;
}

ExportTypeCode ExportTypeOf(std::string_view extension) {
    std::string const upper = ToUpper(extension);
    std::vector<std::string_view> patterns;
    for (ExportType const* const type : kTypes) {
        GetTokens(type->extensions, patterns, " ");
        bool const fits = std::ranges::any_of(patterns, [&](std::string_view pattern) { return Fits(pattern, upper); });
        if (fits) return type->code;
    }
    return ExportTypeCode::None;
}

std::span<ExportType const* const> FurtherExportTypes() {
    return kFurtherTypes;
}

ExportType const* FindWrittenType(std::string_view extension) {
    std::string const upper = ToUpper(extension);
    auto const found =
        std::ranges::find_if(kFurtherTypes, [&upper](ExportType const* type) { return type->extensions == upper; });
    return found != std::end(kFurtherTypes) ? *found : FindExportType(ExportTypeOf(extension));
}

ExportType const* FindExportType(ExportTypeCode code) {
    auto const found = std::ranges::find_if(kTypes, [code](ExportType const* type) { return type->code == code; });
    return found == std::end(kTypes) ? nullptr : *found;
}

}  // namespace norva
