#pragma once

#include "common/play_script.h"

namespace norva {

/// Runs a script on real windows; the exit status is that of "norva play".
int PlayOnWindows(PlayJob const& job);

}  // namespace norva
