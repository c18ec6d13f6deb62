#include "entry/export_types.h"

#include "platform/text.h"

#include <algorithm>
#include <array>

namespace norva {

namespace {

constexpr int kNoType = -1;
constexpr int kReservedType = 2;  ///< extensions that begin with P; no exporter

// clang-format off
constexpr std::array kTypes = {
    ExportType{0, "Native file", RunNativeExport},
    ExportType{1, "XYZ ASCII file", RunXyzExport},
    ExportType{kReservedType, "Reserved", nullptr},
    ExportType{3, "Microsoft Excel file", RunSpreadsheetExport},
    ExportType{4, "Geosoft GBN file", RunGbnExport},
};
// clang-format on

}  // namespace

int ExportTypeOf(std::string_view extension) {
    std::string const upper = ToUpper(extension);
    auto const is = [&upper](auto... names) { return ((upper == names) || ...); };
    if (is("EET", "NVT")) return 0;
    if (upper.starts_with('P')) return kReservedType;
    if (is("ASC", "XYZ", "DAT", "DMP", "TXT")) return 1;
    if (is("XLS")) return 3;
    if (is("GBN")) return 4;
    return kNoType;
}

ExportType const* FindExportType(int code) {
    auto const found =
        std::find_if(kTypes.begin(), kTypes.end(), [code](ExportType const& t) { return t.code == code; });
    return found == kTypes.end() ? nullptr : &*found;
}

}  // namespace norva
