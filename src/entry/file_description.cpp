#include "norva/file_description.h"

#include "entry/exception_guard.h"
#include "entry/import_formats.h"
#include "norva/formats.h"
#include "norva/import_export.h"
#include "norva/toolkit.h"
#include "platform/files.h"
#include "platform/last_error.h"

#include <algorithm>

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
    auto const format = std::ranges::find(ImportFormats(), description.format, &ImportFormat::label);
    if (format == ImportFormats().end()) return fail("there is no format \"" + description.format + "\"");
    description.AddCount("bytes", length);
    int const described = RunGuarded("Couldn't read the file : ", path, [&] {
        return format->describe(DescribeJob{path, settings}, description);
    });
    return described != 0 || !GetLastErrorText().empty() ? described
                                                         : fail("it is not in the format " + description.format);
}

}  // namespace norva
