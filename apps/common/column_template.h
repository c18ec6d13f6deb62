#pragma once

#include "common/dialog_hand.h"

#include <string>
#include <vector>

/// The choices of the column dialog, kept in a file and made again for the next survey file.
namespace norva {

struct ColumnTemplate {
    struct Column {
        std::string type;  ///< one of set_channels::kTypes
        std::string name;
        std::string units;
        std::string format;  ///< text of the date or time template; empty for other types
        int width = 0;       ///< characters of a text; 0 for other types
    };

    int skip = 0;            ///< non-empty lines before the data
    int headerLine = 0;      ///< line (from 1) that holds the columns' names; 0 for none
    std::string headerText;  ///< that line
    int labelColumn = 0;     ///< column (from 1) whose changes start a survey line; 0 for none
    std::vector<Column> columns;
};

/// What the dialog says now; its selected column is the same afterwards.
ColumnTemplate CaptureTemplate(CDialogHand& hand);

/// How the file in the dialog differs from the files that the template was made for, one sentence each: another header
/// line, another number of columns, first rows that the types cannot hold. Empty when it fits.
std::vector<std::string> TemplateMisfits(ColumnTemplate const& columns, CDialogHand& hand);

/// Makes the template's choices; throws CommandError with the misfits, after which the rows to skip are as before.
void ApplyTemplate(ColumnTemplate const& columns, CDialogHand& hand);

/// The file of a template: a name with a separator or the ending ".json" is a path, any other a template of the user's
/// ($XDG_CONFIG_HOME/norva/templates, else ~/.config/norva/templates).
std::string TemplatePath(std::string const& nameOrPath);

/// Both throw CommandError. The file is replaced only by a whole one; folders are made.
ColumnTemplate ReadTemplate(std::string const& path);
void WriteTemplate(std::string const& path, ColumnTemplate const& columns);

/// Names of the user's templates, sorted.
std::vector<std::string> TemplateNames();

}  // namespace norva
