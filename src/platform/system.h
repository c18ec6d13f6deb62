#pragma once

#include <string>

/// Services that the host system gives: entry points loaded at run time, the settings registry, the help viewer.
namespace norva {

/// Address of an exported function of a library file, or null. The library stays loaded.
void* LoadEntryPoint(std::string const& library, std::string const& name);

/// Default value of a key of the settings registry: a folder tree below the user's configuration folder
/// (NORVA_REGISTRY names another), one file "default" a key, "\" separating the parts. Empty when there is none.
std::string ReadRegistryDefault(std::string const& key);

/// Shows a topic in the help viewer. The viewer's entry point is loaded on first use from the file that the registry
/// names, else from its fixed name; if that fails once, help stays off for the rest of the process: false.
bool ShowInHelpViewer(std::string const& topic);

}  // namespace norva
