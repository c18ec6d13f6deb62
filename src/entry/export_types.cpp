#include "entry/export_types.h"

#include "norva/converters.h"
#include "platform/text.h"

#include <algorithm>
#include <array>
#include <vector>

namespace norva {

namespace {

constexpr int kNoType = -1;
constexpr int kReservedType = 2;  ///< no exporter

constexpr std::array kTypes = {
    ExportType{0, "Native file", "NVT EET", RunNativeExport},
    ExportType{kReservedType, "Reserved", "P*", nullptr},
    ExportType{1, "XYZ ASCII file", "XYZ ASC DAT DMP TXT", RunXyzExport},
    ExportType{3, "Microsoft Excel file", "XLS", RunSpreadsheetExport},
    ExportType{4, "Geosoft GBN file", "GBN", RunGbnExport},
};

bool Fits(std::string_view pattern, std::string_view extension) {
    if (pattern.ends_with('*')) return extension.starts_with(pattern.substr(0, pattern.size() - 1));
    return pattern == extension;
}

}  // namespace

std::span<ExportType const> ExportTypes() {
    return kTypes;
}

int ExportTypeOf(std::string_view extension) {
    std::string const upper = ToUpper(extension);
    std::vector<std::string_view> patterns;
    for (ExportType const& type : kTypes) {
        GetTokens(type.extensions, patterns, " ");
        bool const fits = std::ranges::any_of(patterns, [&](std::string_view pattern) { return Fits(pattern, upper); });
        if (fits) return type.code;
    }
    return kNoType;
}

ExportType const* FindExportType(int code) {
    auto const found =
        std::find_if(kTypes.begin(), kTypes.end(), [code](ExportType const& t) { return t.code == code; });
    return found == kTypes.end() ? nullptr : &*found;
}

}  // namespace norva
