#include "entry/export_types.h"
#include "entry/import_formats.h"
#include "norva/converters.h"
#include "norva/formats.h"
#include "platform/files.h"
#include "platform/last_error.h"
#include "platform/paths.h"
#include "platform/text.h"

#include <algorithm>

namespace norva {

namespace {

constexpr std::size_t kSniffBytes = 64 * 1024;

}  // namespace

std::vector<ImportFormatInfo> ListImportFormats(int level) {
    std::vector<ImportFormatInfo> formats;
    for (ImportFormat const* const format : OfferedImportFormats(level)) {
        formats.push_back({static_cast<int>(format->code), std::string(format->label), std::string(format->filter),
                           format->settings});
    }
    return formats;
}

std::vector<ExportFormatInfo> ListExportFormats() {
    std::vector<ExportFormatInfo> formats;
    std::vector<std::string_view> extensions;
    auto const add = [&](ExportType const* type) {
        if (type->run == nullptr) return;
        GetTokens(type->extensions, extensions, " ");
        formats.push_back({std::string(type->label), {}});
        for (std::string_view const extension : extensions) {
            std::string& lower = formats.back().extensions.emplace_back(extension);
            for (char& c : lower) c = static_cast<char>(c + ('a' - 'A'));
        }
    };
    std::ranges::for_each(ExportTypes(), add);
    std::ranges::for_each(FurtherExportTypes(), add);
    return formats;
}

RecognizedFormat RecognizeImportFormat(std::string const& path) {
    FileStart start;
    CFile file;
    std::size_t got = 0;
    start.bytes.resize(kSniffBytes);
    if (!file.Open(path, CFile::Mode::Read) || !file.Read(start.bytes.data(), start.bytes.size(), got)) {
        return {0, {}, SystemErrorText(file.Error())};
    }
    start.bytes.resize(got);
    if (got == 0) return {0, {}, "the file is empty"};

    std::vector<std::string_view> lines;
    GetTokens(start.bytes, lines, "\r\n");
    for (std::string_view const line : lines) start.lines.push_back(ToUpper(line));
    start.extension = ToUpper(ExtensionOf(path));

    for (ImportFormat const* const format : FormatsToTry()) {
        if (!format->sniff(start)) continue;
        return {static_cast<int>(format->code), std::string(format->label), std::string(format->signs)};
    }
    return {0, {}, "no format fits"};
}

}  // namespace norva
