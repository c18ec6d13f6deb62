#include "norva/file_description.h"

#include "entry/import_formats.h"
#include "exchange/exception_guard.h"
#include "norva/formats.h"
#include "norva/import_export.h"
#include "platform/files.h"
#include "platform/last_error.h"

namespace norva {

int DescribeFile(std::string const& path, DescriptionSettings const& settings, FileDescription& description) {
    description = {};
    ClearLastErrorText();
    auto const fail = [&path](std::string const& reason) {
        SetLastErrorText("Couldn't read the file : " + path + "\n" + reason);
        return 0;
    };
    CFile file;
    std::uint64_t length = 0;
    if (!file.Open(path, CFile::Mode::Read) || !file.Size(length)) return fail(SystemErrorText(file.Error()));
    file.Close();
    if (length == 0) return fail("the file is empty");
    description.format = settings.format.empty() ? RecognizeImportFormat(path).label : settings.format;
    ImportFormat const* const format = FindImportFormat(description.format);
    if (format == nullptr) return fail("there is no format \"" + description.format + "\"");
    description.AddCount("bytes", length);
    Status const status = Guarded("Couldn't read the file", path, [&] {
        return format->describe(DescribeJob{path, settings}, description);
    });
    if (status) return 1;
    if (status.Text().empty()) return fail("it is not in the format " + description.format);
    SetLastErrorText(status.Text());
    return 0;
}

}  // namespace norva
