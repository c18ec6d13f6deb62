#pragma once

#include "formats/gbn/gbn_contents.h"
#include "norva/settings.h"
#include "norva/status.h"

#include <string>

/// What is done to the settings of a GBN import, in a window or without one.
namespace norva {

/// The entry for a channel among the changes, made if there is none.
GbnSettings::Channel& ChangeOf(GbnSettings& settings, int channel);
/// Gives a line a name of its own.
void RenameLine(GbnSettings& settings, int line, std::string name);

/// Makes the settings' choice in what a file holds: marks lines and channels, changes names, units and types. Fails for
/// what the file does not have, and where nothing is left to import.
Status ApplyGbnSettings(GbnSettings const& settings, std::string const& path, GbnContents& contents);

}  // namespace norva
