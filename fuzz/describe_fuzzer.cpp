#include "harness.h"
#include "norva/file_description.h"
#include "norva/formats.h"
#include "norva/import_export.h"
#include "platform/last_error.h"

using namespace norva;

/// Recognises any bytes and describes them as a file of every format.
NORVA_FUZZ_TARGET(describe) {
    std::string const path = fuzz::Folder() / "in.dat";
    test::WriteWholeFile(path, bytes);
    RecognizeImportFormat(path);
    std::vector<std::string> labels = {""};
    for (ImportFormatInfo const& format : ListImportFormats(1)) labels.push_back(format.label);
    for (std::string const& label : labels) {
        ClearLastErrorText();
        DescriptionSettings settings;
        settings.format = label;
        settings.record = {{"A", "int16", ""}, {"B", "double", "m"}};
        FileDescription description;
        bool const isDescribed = DescribeFile(path, settings, description) != 0;
        if (!isDescribed && GetLastErrorText().empty()) fuzz::Broken("not described, in silence: " + label);
        for (FileDescription::Table const& table : description.tables) {
            for (auto const& row : table.rows) {
                if (row.size() != table.columns.size()) fuzz::Broken("a row as wide as its table");
            }
        }
    }
    fuzz::CleanUp({"in.dat"});
}
