#include "entry/import_formats.h"

#include "formats/cg3/cg3_format.h"
#include "formats/column_text/column_text_format.h"
#include "formats/gbn/gbn_format.h"
#include "formats/gpx/gpx_format.h"
#include "formats/ipr12/ipr12_format.h"
#include "formats/records/records_format.h"
#include "formats/seaspy/sea_spy_format.h"
#include "formats/tki/tki_format.h"

#include <algorithm>

namespace norva {

namespace {

constexpr ImportFormat const* kFormats[] = {
    &kAsciiXyzFormat, &kAsciiCsvFormat, &kAsciiGemFormat, &kBinaryRecordsFormat, &kGbnFormat, &kCG3Format,
    &kCG5Format,      &kIpr12Format,    &kSeaSpyFormat,   &kTkiFormat,           &kGpxFormat,
};

constexpr ImportFormat const* kFormatsToTry[] = {
    &kGbnFormat, &kGpxFormat,      &kTkiFormat,      &kSeaSpyFormat,   &kIpr12Format,         &kCG3Format,
    &kCG5Format, &kAsciiCsvFormat, &kAsciiGemFormat, &kAsciiXyzFormat, &kBinaryRecordsFormat,
};

/// At this level the list begins with the GEM format.
constexpr int kGemLevel = 5;

template <typename Wanted, typename Of>
ImportFormat const* Find(Wanted const& wanted, Of of) {
    auto const found = std::ranges::find(kFormats, wanted, of);
    return found == std::end(kFormats) ? nullptr : *found;
}

}  // namespace

std::span<ImportFormat const* const> ImportFormats() {
    return kFormats;
}

std::span<ImportFormat const* const> FormatsToTry() {
    return kFormatsToTry;
}

ImportFormat const* FindImportFormat(ImportFormatCode code) {
    return Find(code, [](ImportFormat const* format) { return format->code; });
}

ImportFormat const* FindImportFormat(std::string_view label) {
    return Find(label, [](ImportFormat const* format) { return format->label; });
}

std::vector<ImportFormat const*> OfferedImportFormats(int level) {
    std::vector<ImportFormat const*> offered;
    for (ImportFormat const* const format : kFormats) {
        if (level < format->lowestLevel) continue;
        bool const isFirst = level == kGemLevel && format->code == ImportFormatCode::AsciiGem;
        offered.insert(isFirst ? offered.begin() : offered.end(), format);
    }
    return offered;
}

}  // namespace norva
