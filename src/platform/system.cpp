#include "platform/system.h"

#include "platform/line_reader.h"
#include "platform/text.h"

#include <dlfcn.h>
#include <cstdlib>

namespace norva {

namespace {

constexpr char const* kViewerKey = "CLSID\\{ADB880A6-D8FF-11CF-9377-00AA003B7A11}\\InprocServer32";
constexpr char const* kViewerFile = "hhctrl.ocx";
constexpr char const* kViewerEntry = "HtmlHelp";  ///< int (char const* topic), not 0 when it was shown

std::string RegistryFolder() {
    if (char const* const folder = std::getenv("NORVA_REGISTRY")) return folder;
    if (char const* const folder = std::getenv("XDG_CONFIG_HOME")) return std::string(folder) + "/norva/registry";
    if (char const* const home = std::getenv("HOME")) return std::string(home) + "/.config/norva/registry";
    return {};
}

}  // namespace

void* LoadEntryPoint(std::string const& library, std::string const& name) {
    void* const handle = dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL);
    return handle == nullptr ? nullptr : dlsym(handle, name.c_str());
}

std::string ReadRegistryDefault(std::string const& key) {
    std::string const folder = RegistryFolder();
    if (folder.empty()) return {};
    CLineReader file;
    std::string_view line;
    if (!file.Open(folder + "/" + ReplaceAll(key, "\\", "/") + "/default") || !file.Next(line)) return {};
    return std::string(Trim(line));
}

bool ShowInHelpViewer(std::string const& topic) {
    using Viewer = int (*)(char const*);
    static Viewer const viewer = [] {
        std::string file = ReadRegistryDefault(kViewerKey);
        if (file.empty()) file = kViewerFile;
        return reinterpret_cast<Viewer>(LoadEntryPoint(file, kViewerEntry));
    }();
    return viewer != nullptr && viewer(topic.c_str()) != 0;
}

}  // namespace norva
