#include "common/known_kind.h"

#include <utility>

namespace norva {

std::string_view KnownKind(std::string_view start) {
    using namespace std::string_view_literals;
    constexpr std::pair<std::string_view, std::string_view> kinds[] = {
        {"\x1F\x8B"sv, "a gzip archive; unpack it first"},
        {"PK\x03\x04"sv, "a ZIP archive, or a document or workbook in one (.docx, .xlsx)"},
        {"\xD0\xCF\x11\xE0"sv, "a document or workbook of an office program (.doc, .xls); save it as CSV"},
        {"BZh"sv, "a bzip2 archive; unpack it first"},
        {"\xFD"
         "7zXZ"sv,
         "an xz archive; unpack it first"},
        {"7z\xBC\xAF"sv, "a 7-Zip archive; unpack it first"},
        {"\x28\xB5\x2F\xFD"sv, "a zstd archive; unpack it first"},
        {"%PDF"sv, "a PDF document"},
        {"\x89PNG"sv, "a picture (PNG)"},
        {"\xFF\xD8\xFF"sv, "a picture (JPEG)"},
        {"II*\0"sv, "a picture (TIFF)"},
        {"MM\0*"sv, "a picture (TIFF)"},
        {"\x7F"
         "ELF"sv,
         "a program"},
        {"SQLite format 3"sv, "an SQLite database"},
    };
    for (auto const& [signature, kind] : kinds) {
        if (start.starts_with(signature)) return kind;
    }
    return {};
}

}  // namespace norva
