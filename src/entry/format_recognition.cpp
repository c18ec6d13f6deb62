#include "entry/export_types.h"
#include "entry/import_formats.h"
#include "norva/converters.h"
#include "norva/formats.h"
#include "platform/files.h"
#include "platform/last_error.h"
#include "platform/paths.h"
#include "platform/text.h"

#include <algorithm>
#include <array>

namespace norva {

namespace {

constexpr std::size_t kSniffBytes = 64 * 1024;

/// The start of a file, seen as bytes and as upper-cased lines.
struct FileStart {
    std::string bytes;
    std::vector<std::string> lines;
    std::string extension;  ///< upper case
};

/// Text of 16 bits a character, which the text engine refuses with a message that says so.
bool IsUtf16(std::string_view bytes) {
    if (bytes.size() < 4) return false;
    return (bytes.starts_with("\xFF\xFE") && bytes[3] == '\0') || (bytes.starts_with("\xFE\xFF") && bytes[2] == '\0');
}

bool IsBinary(FileStart const& start) {
    return Contains(start.bytes, std::string_view("\0", 1)) && !IsUtf16(start.bytes);
}

std::string_view FirstToken(std::string const& line) {
    std::string_view const text = Trim(line);
    return text.substr(0, text.find_first_of(" \t,"));
}

bool SniffGbn(FileStart const& start) {
    return start.bytes.starts_with("OASIS BINARY DATA");
}

bool SniffGpx(FileStart const& start) {
    std::string text = ReplaceAll(start.bytes, std::string_view("\0", 1), "");  // UTF-16 as well
    return Contains(text, "<gpx") || Contains(text, ":gpx ");
}

bool SniffTki(FileStart const& start) {
    std::size_t const end = start.bytes.find('\x1A');
    if (end == std::string::npos) return false;
    std::string_view const header = std::string_view(start.bytes).substr(0, end);
    std::size_t const begin = header.find("BEGIN");
    return begin != std::string_view::npos && header.find("END", begin + 5) != std::string_view::npos;
}

bool SniffSeaSpy(FileStart const& start) {
    auto const record = std::find_if(start.lines.begin(), start.lines.end(),
                                     [](std::string const& line) { return line.starts_with('*'); });
    return record != start.lines.end() && Contains(*record, "F[") && Contains(*record, "R[");
}

bool SniffIpr12(FileStart const& start) {
    bool station = false;
    for (std::string const& line : start.lines) {
        std::string_view const first = FirstToken(line);
        if (Contains(first, "STATION")) station = true;
        if (station && Contains(first, "D:")) return true;
    }
    return false;
}

bool SniffCG3(FileStart const& start) {
    bool dashes = false;
    for (std::string const& line : start.lines) {
        if (Contains(line, "-------")) dashes = true;
        if (dashes && Contains(line, "LINE:") && Contains(line, "DATE:")) return true;
    }
    return false;
}

bool SniffCG5(FileStart const& start) {
    return std::any_of(start.lines.begin(), start.lines.end(), [](std::string const& line) {
        return line.starts_with('/') && (Contains(line, "CG-5") || Contains(line, "CG5"));
    });
}

bool SniffCsv(FileStart const& start) {
    return !IsBinary(start) && start.extension == "CSV";
}

bool SniffGem(FileStart const& start) {
    return !IsBinary(start) && start.extension == "STN";
}

bool SniffText(FileStart const& start) {
    return !IsBinary(start);
}

bool SniffAny(FileStart const& /*start*/) {
    return true;
}

struct Sniffer {
    int code;
    bool (*fits)(FileStart const& start);
    char const* reason;
};

/// Formats that say themselves what they are come first, those that an extension tells next, any text, any bytes.
constexpr std::array kSniffers = {
    Sniffer{4, SniffGbn, "it begins with the GBN signature"},
    Sniffer{11, SniffGpx, "it holds a gpx element"},
    Sniffer{2, SniffTki, "its header holds BEGIN, END and the end mark"},
    Sniffer{7, SniffSeaSpy, "its first record holds F[ and R["},
    Sniffer{10, SniffIpr12, "it holds a Station line and a D: line"},
    Sniffer{6, SniffCG3, "it holds block headers with LINE: and DATE:"},
    Sniffer{9, SniffCG5, "its head names a CG-5"},
    Sniffer{8, SniffCsv, "it is text and named .csv"},
    Sniffer{12, SniffGem, "it is text and named .stn"},
    Sniffer{1, SniffText, "it is text"},
    Sniffer{5, SniffAny, "it is not text"},
};

}  // namespace

std::vector<ImportFormatInfo> ListImportFormats(int level) {
    std::vector<ImportFormatInfo> formats;
    for (ImportFormat const* const format : OfferedImportFormats(level)) {
        formats.push_back({format->code, std::string(format->label), std::string(format->filter)});
    }
    return formats;
}

std::vector<ExportFormatInfo> ListExportFormats() {
    std::vector<ExportFormatInfo> formats;
    std::vector<std::string_view> extensions;
    for (ExportType const& type : ExportTypes()) {
        if (type.run == nullptr) continue;
        GetTokens(type.extensions, extensions, " ");
        formats.push_back({std::string(type.label), {}});
        for (std::string_view const extension : extensions) {
            std::string& lower = formats.back().extensions.emplace_back(extension);
            for (char& c : lower) c = static_cast<char>(c + ('a' - 'A'));
        }
    }
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

    for (Sniffer const& sniffer : kSniffers) {
        if (!sniffer.fits(start)) continue;
        ImportFormat const* const format = FindImportFormat(sniffer.code);
        return {sniffer.code, format != nullptr ? std::string(format->label) : std::string(), sniffer.reason};
    }
    return {0, {}, "no format fits"};
}

}  // namespace norva
