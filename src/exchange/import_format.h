#pragma once

#include "norva/file_description.h"
#include "norva/file_util.h"
#include "norva/import_report.h"
#include "norva/inspection.h"
#include "norva/settings.h"
#include "norva/status.h"

#include <string>
#include <string_view>
#include <vector>

namespace norva {

struct TextPreview;

/// Fixed numbers of the import formats; they never change, and none is given twice.
enum class ImportFormatCode {
    None = 0,
    AsciiXyz = 1,
    Tki = 2,
    Gbn = 4,
    BinaryRecords = 5,
    CG3 = 6,
    SeaSpy = 7,
    AsciiCsv = 8,
    CG5 = 9,
    Ipr12 = 10,
    Gpx = 11,
    AsciiGem = 12,
};

/// One import as it is given to an importer.
struct ImportJob {
    CNorvaFileUtil* store = nullptr;
    std::string inputPath;
    std::string storePath;
    CWindow* owner = nullptr;
    int gravityMeterMode = 0;
    bool asks = true;           ///< the settings are asked of a person, in the format's window
    ImportSettings settings{};  ///< given where nobody is asked; in the end, what the import ran by
    ImportReport report{};      ///< what became of the source, filled by an import that succeeded

    /// Takes settings of a format's own kind over those that its window would open with, when there are any. Fails for
    /// those of another format.
    template <typename Settings>
    Status TakeSettings(Settings& taken) const {
        if (Settings const* const given = std::get_if<Settings>(&settings)) {
            taken = *given;
        } else if (!std::holds_alternative<std::monostate>(settings)) {
            return Status::Failure("Couldn't import the file", inputPath, "The settings are those of another format.");
        }
        return {};
    }

    /// The settings of a format's own kind: as given, or the defaults.
    template <typename Settings>
    Settings SettingsOr(Settings defaults) const {
        Settings const* const given = std::get_if<Settings>(&settings);
        return given != nullptr ? *given : std::move(defaults);
    }
};

/// What a describer is given; it leaves the file's label to the caller.
struct DescribeJob {
    std::string const& inputPath;
    DescriptionSettings const& settings;
};

/// The start of a file, seen as bytes and as upper-cased lines.
struct FileStart {
    std::string bytes;
    std::vector<std::string> lines;
    std::string extension;  ///< upper case

    /// Not text; text of 16 bits a character counts as text, which the text engine refuses with a message.
    bool IsBinary() const;
};

/// A format that can be read: all that file filters, lists, recognition, imports and descriptions need.
struct ImportFormat {
    ImportFormatCode code = ImportFormatCode::None;
    std::string_view label;                      ///< in the format list
    std::string_view filter;                     ///< of the "Import file" dialog
    int lowestLevel = 0;                         ///< format list level from which it is offered
    SettingsKind settings = SettingsKind::None;  ///< that its import takes
    bool (*sniff)(FileStart const& start) = nullptr;
    std::string_view signs;  ///< what `sniff` has seen when it says yes: "it begins with the GBN signature"
    Status (*import)(ImportJob& job) = nullptr;
    Status (*describe)(DescribeJob const& job, FileDescription& description) = nullptr;
    /// Of a format whose files become column text: its first lines.
    Status (*preview)(std::string const& path, TextPreview& preview) = nullptr;
    /// Of such a format too: the import that the whole of a file proposes.
    Status (*inspect)(std::string const& path, InspectionOptions const& options, Inspection& inspection) = nullptr;
    /// Of another format whose settings are better found out from the whole of a file.
    Status (*propose)(std::string const& path, ImportSettings& settings) = nullptr;
};

}  // namespace norva
