#pragma once

#include "command_toolkit.h"
#include "common/column_template.h"
#include "import_options.h"

#include <string>
#include <vector>

/// How a command answers each dialog of the library from its options.
namespace norva {

void ChooseFormat(CDialogHand& hand, std::string const& label);
/// `chosen`, unless null, receives what the dialog said when it was accepted.
void SetColumns(CDialogHand& hand, ImportOptions const& options, ColumnTemplate* chosen);
void SetDelimiters(CDialogHand& hand, std::string const& delimiters);
void SetRecordLayout(CDialogHand& hand, ImportOptions const& options, std::string const& inputPath);
void ChooseGbnContents(CDialogHand& hand, ImportOptions const& options);
void ChooseDumpColumns(CDialogHand& hand, ImportOptions const& options);

/// What to write, in output order; empty lists mean all.
struct ExportOptions {
    std::vector<std::string> lines;
    std::vector<std::string> channels;
    bool labelAsChannel = false;
    bool pointId = false;
    bool units = true;
    bool force = false;  ///< replace an older file; write a sheet that its readers cannot hold whole
};

void ChooseExport(CDialogHand& hand, ExportOptions const& options);

}  // namespace norva
