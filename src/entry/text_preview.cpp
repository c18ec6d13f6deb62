#include "entry/import_formats.h"
#include "entry/quiet_toolkit.h"
#include "exchange/exception_guard.h"
#include "norva/column_text.h"
#include "norva/formats.h"
#include "norva/import_export.h"
#include "platform/last_error.h"

namespace norva {

namespace {

Status Read(std::string const& path, std::string const& label, TextPreview& preview) {
    RecognizedFormat const recognized = label.empty() ? RecognizeImportFormat(path) : RecognizedFormat{0, label, {}};
    ImportFormat const* const format = FindImportFormat(recognized.label);
    auto const fail = [&path](std::string reason) {
        return Status::Failure("Couldn't read the file", path, std::move(reason));
    };
    if (recognized.label.empty()) return fail(recognized.reason);
    if (format == nullptr) return fail("There is no format \"" + label + "\".");
    if (format->preview == nullptr) return fail("A file of the format " + recognized.label + " is no column text.");
    return format->preview(path, preview);
}

}  // namespace

Status ReadTextPreview(std::string const& path, std::string const& format, TextPreview& preview) {
    return Guarded("Couldn't read the file", path, [&] {
        preview = {};
        ClearLastErrorText();
        std::vector<std::string> messages;
        ProgressCallback const noProgress;
        CQuietToolkit toolkit(noProgress, messages);
        CToolkitScope const scope(toolkit);
        return Read(path, format, preview);
    });
}

}  // namespace norva
