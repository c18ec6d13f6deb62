#pragma once

#include "exchange/export_type.h"
#include "exchange/import_format.h"
#include "norva/scripted_toolkit.h"
#include "support/temporary_folder.h"
#include "target.h"

#include <string>
#include <string_view>
#include <vector>

namespace norva::fuzz {

/// The folder of all files of a target, those of the library's temporary folder too: in memory where the system has
/// such a place. It is the current folder, and gone when the process ends normally.
test::CTemporaryFolder& Folder();

ScriptAction Click(int control);
ScriptAction Set(int control, std::string text);
ScriptAction SelectRow(int control, int row, DialogEvent::Modifier modifier = DialogEvent::Modifier::None);
ScriptAction SelectColumn(int control, int column);
ScriptAnswer DialogAnswer(int dialog, std::vector<ScriptAction> actions);

struct ImportTry {
    ImportFormat const& format;
    std::string fileName = "in";
    std::vector<ScriptAnswer> answers{};  ///< whatever is shown after them is answered by its default
    int gravityMeterMode = 0;
};

inline constexpr char const* kStoreName = "out.nvt";

/// Describes the bytes, then imports them into kStoreName; the result is the importer's. Laws: every value of the store
/// can be read and is what its checksum says; without a store something was shown or said; no other file is left.
bool Import(ImportTry const& what, std::string_view bytes);

/// Exports all lines and channels of `store` in the folder to `output` there; the result is the exporter's.
bool Export(ExportType const& type, std::string const& store, std::string const& output);

/// Reads everything that the store describes; false when it does not open. Law: what opens can be read.
bool ReadWholeStore(std::string const& path);

/// Removes all files; more than the `expected` ones break a law.
void CleanUp(std::vector<std::string> const& expected);

}  // namespace norva::fuzz
