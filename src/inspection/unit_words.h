#pragma once

#include <string>
#include <string_view>

/// Units in the names of columns.
namespace norva {

/// Whether the text alone is one of the units that surveys use, in any case.
bool IsUnitWord(std::string_view text);
/// A unit, or anything in brackets, or nothing.
bool IsUnitLike(std::string_view text);
/// Splits "Mag (nT)", "Mag[nT]", "Mag:nT" (a known unit only); "Epoch[]" loses its brackets. False when nothing is
/// split off: "RHO[12]".
bool SplitUnit(std::string_view label, std::string& name, std::string& unit);
/// The text without round or square brackets around it.
std::string_view WithoutBrackets(std::string_view text);

}  // namespace norva
