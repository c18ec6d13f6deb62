#pragma once

#include "norva/column_text.h"
#include "norva/values.h"

#include <string>
#include <string_view>
#include <vector>

/// Guessing the types of text columns from the first rows of a file.
namespace norva {

enum class ColumnClass : int {
    None = -1,
    Date,
    Time,
    Geographic,
    Short,
    Long,
    Float,
    Double,
    FloatExponent,
    DoubleExponent,
    Text,
};

/// Preview rows as tokens.
using TokenRows = std::vector<std::vector<std::string>>;

/// Class that one upper-cased token shows; None when it shows nothing. Never Text.
ColumnClass ClassifyToken(std::string_view token);

/// Guessed class of every column. Gives every column of `columns` (one a label) its default settings, named by its
/// label; those that hold text become text columns as wide as their longest such token.
std::vector<ColumnClass> GuessColumns(TokenRows const& rows, std::vector<std::string> const& labels,
                                      std::vector<NorvaChannelStruct>& columns);

/// Sets the type of a column by its guessed class.
void ApplyClass(ColumnClass columnClass, NorvaChannelStruct& column);

/// Index of the first template that a value fits; -1 for none. A date fits by its length and the place of its first
/// "/" (none in both counts as the same), a time by its "." or by its length and the place of its first ":".
int MatchDateTemplate(std::vector<std::string> const& templates, std::string_view token);
int MatchTimeTemplate(std::vector<std::string> const& templates, std::string_view token);

}  // namespace norva
