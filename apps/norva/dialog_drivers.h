#pragma once

#include "command_toolkit.h"
#include "import_options.h"

#include <string>
#include <vector>

/// How a command answers each dialog of the library from its options.
namespace norva {

void ChooseFormat(CDialogHand& hand, std::string const& label);
void SetColumns(CDialogHand& hand, ImportOptions const& options);
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

/// Position of a name (in any case when there is none in its own), or of a number counted from `first`, in a list; throws
/// CommandError when there is none.
int FindNamed(std::vector<std::string> const& names, std::string const& wanted, int first, std::string const& what);

}  // namespace norva
