#pragma once

#include "norva/scripted_toolkit.h"

#include <map>
#include <string>
#include <vector>

namespace norva {

/// A script file as it was read ("docs/automation.md").
struct Script {
    bool isImport = true;
    int level = 0;
    std::string store;  ///< import: proposed store name; export: the store to read
    std::string name;   ///< export: proposed output name
    std::vector<ScriptAnswer> answers;
};

/// Reads a script from JSON text. `{NAME}` in every string is replaced by its setting. Throws std::runtime_error with
/// a message that says what is wrong and where.
Script ParseScript(std::string const& json, std::map<std::string, std::string> const& settings);

/// What a scripted run came to.
struct PlayResult {
    int value = 0;        ///< of the exported function
    std::string store;    ///< store file name handed back
    std::string failure;  ///< what did not fit; empty when the script fitted
};

/// Runs the operation with `toolkit` as the current one; traces store calls and the result into `trace` (may be null).
/// For an export the store is opened first; throws std::runtime_error when that fails.
PlayResult RunOperation(Script const& script, CToolkit& toolkit, CTrace* trace, CWindow* owner);

}  // namespace norva
