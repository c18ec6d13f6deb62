#include "entry/browse_for_file.h"

#include "entry/export_types.h"
#include "entry/import_formats.h"
#include "norva/converters.h"
#include "norva/toolkit.h"
#include "platform/text.h"

namespace norva {

namespace {

char const* const kStoreFilter = "NVT files (*.nvt)|*.nvt|";
char const* const kExportFilter =
    "NVT files (*.nvt)|*.nvt|XYZ ASCII File (*.xyz)|*.xyz|ASCII File (*.txt)|*.txt|"
    "Microsoft Excel Files (*.xls)|*.xls|Geosoft GBN files (*.gbn)|*.gbn*||";

int BrowseForInput(std::string& path, unsigned flags, int formatCode) {
    FileRequest request;
    request.title = "Import file";
    if (ImportFormat const* const format = FindImportFormat(static_cast<ImportFormatCode>(formatCode)))
        request.filter = format->filter;
    request.flags = flags;
    request.initial = path;
    std::string chosen;
    if (!CurrentToolkit().ChooseFileToOpen(request, chosen)) return 0;
    path = std::move(chosen);
    return 1;
}

}  // namespace

int BrowseForFile(std::string& path, unsigned flags, FileDialogMode mode, int& formatCode) {
    if (mode == FileDialogMode::ImportInput) return BrowseForInput(path, flags, formatCode);

    bool const isStore = mode == FileDialogMode::ImportStore;
    std::string const initial = path;
    std::string chosen = path;
    std::string extension;
    if (CUAC::BrowseFileToSaveGetExt(flags, isStore ? kStoreFilter : kExportFilter, chosen, initial, extension) == 0) {
        return 0;
    }
    path = std::move(chosen);
    if (!Contains(path, ".")) path += "." + (isStore ? "nvt" : extension);
    if (!isStore) formatCode = static_cast<int>(ExportTypeOf(extension));
    return 1;
}

}  // namespace norva
