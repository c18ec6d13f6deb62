#pragma once

#include <string>

/// Services that the host system gives: entry points loaded at run time, the settings registry, the help viewer.
namespace norva {

/// Address of an exported function of a library file, or null. The library stays loaded.
void* LoadEntryPoint(std::string const& library, std::string const& name);

/// Default value of a key of the settings registry: a folder tree below the user's configuration folder
/// (NORVA_REGISTRY names another), one file "default" a key, "\" separating the parts. Empty when there is none.
std::string ReadRegistryDefault(std::string const& key);

/// Shows a topic in the help viewer; false when that failed. The viewer is a library file, named by the default value
/// of the registry key "CLSID\{ADB880A6-D8FF-11CF-9377-00AA003B7A11}\InprocServer32", else, or when that does not load,
/// "hhctrl.ocx". Its entry point is `extern "C" int HtmlHelp14(char const* topic, unsigned command)`, called with
/// command 0 (display the topic), not 0 on success. It is loaded on first use; if that fails once, help stays off for
/// the rest of the process.
bool ShowInHelpViewer(std::string const& topic);

}  // namespace norva
