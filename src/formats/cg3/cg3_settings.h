#pragma once

#include "norva/settings.h"
#include "norva/status.h"

#include <string>
#include <vector>

/// What is done to the settings of a CG3 import, in a window or without one. `titles` are those of the dump's columns.
namespace norva {

/// Columns that are imported when none are chosen.
std::vector<int> UsualCg3Columns(std::vector<std::string> const& titles);
/// Adds columns to the chosen ones, or takes them away; they stay in the order of the dump.
void ChooseCg3Columns(Cg3Settings& settings, std::vector<int> const& columns, bool chosen);
/// Fills in what is left to the dump and checks all, for settings that nobody was asked for.
Status CompleteCg3Settings(Cg3Settings& settings, std::string const& path, std::vector<std::string> const& titles);

}  // namespace norva
