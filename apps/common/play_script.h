#pragma once

#include "norva/scripted_toolkit.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace norva {

/// What a scripted run was asked for.
struct PlayJob {
    std::string script;                 ///< file
    std::vector<std::string> settings;  ///< NAME=VALUE
    std::string trace;                  ///< file; empty for none
    bool traceBytes = false;
    bool defaults = false;
    std::string helpFile;
};

/// Makes the toolkit that plays the answers.
using ToolkitMaker =
    std::function<std::unique_ptr<CScriptedToolkit>(std::vector<ScriptAnswer> answers, bool defaults, CTrace* trace)>;

/// Plays a script file; the result is the exit status when the script fitted. Throws CommandError.
int PlayScript(PlayJob const& job, ToolkitMaker const& makeToolkit);

}  // namespace norva
