#include "platform/system.h"

#include "platform/files.h"
#include "platform/text.h"

#include <cstdlib>
#include <string_view>

#include <dlfcn.h>

namespace norva {

namespace {

constexpr char const* kHelpViewerKey = R"(CLSID\{ADB880A6-D8FF-11CF-9377-00AA003B7A11}\InprocServer32)";
constexpr char const* kHelpViewerFile = "hhctrl.ocx";
constexpr char const* kHelpViewerEntry = "HtmlHelp14";
constexpr unsigned kDisplayTopic = 0;
using HelpViewerEntry = int (*)(char const* topic, unsigned command);

constexpr std::size_t kLongestRegistryValue = 64 * 1024;

std::string EnvironmentValue(char const* name) {
    char const* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

/// Folder that holds the settings registry, without a separator at its end; empty when there is none.
std::string RegistryFolder() {
    std::string folder = EnvironmentValue("NORVA_REGISTRY");
    if (!folder.empty()) {
        return folder;
    }
    folder = EnvironmentValue("XDG_CONFIG_HOME");
    // A relative path there is to be ignored.
    if (folder.empty() || folder.front() != '/') {
        folder = EnvironmentValue("HOME");
        if (folder.empty()) {
            return folder;
        }
        folder += "/.config";
    }
    return folder + "/norva/registry";
}

HelpViewerEntry LoadHelpViewer() {
    std::string const file = ReadRegistryDefault(kHelpViewerKey);
    void* entry = file.empty() ? nullptr : LoadEntryPoint(file, kHelpViewerEntry);
    if (entry == nullptr) entry = LoadEntryPoint(kHelpViewerFile, kHelpViewerEntry);
    return reinterpret_cast<HelpViewerEntry>(entry);
}

}  // namespace

void* LoadEntryPoint(std::string const& library, std::string const& name) {
    void* const handle = ::dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) {
        return nullptr;
    }
    void* const entry = ::dlsym(handle, name.c_str());
    if (entry == nullptr) {
        ::dlclose(handle);
    }
    return entry;
}

std::string ReadRegistryDefault(std::string const& key) {
    std::string path = RegistryFolder();
    if (path.empty()) {
        return {};
    }
    for (std::string_view rest = key; !rest.empty();) {
        std::string_view const part = rest.substr(0, rest.find('\\'));
        rest.remove_prefix(part.size() == rest.size() ? part.size() : part.size() + 1);
        // A key names what is below the folder and nothing beside it.
        if (part.empty() || part == "." || part == ".." || Contains(part, "/")) {
            return {};
        }
        path.append("/").append(part);
    }
    CFile file;
    std::string value(kLongestRegistryValue, '\0');
    std::size_t got = 0;
    if (!file.Open(path + "/default", CFile::Mode::Read) || !file.Read(value.data(), value.size(), got)) {
        return {};
    }
    value.resize(got);
    return std::string(Trim(value));
}

bool ShowInHelpViewer(std::string const& topic) {
    static HelpViewerEntry const entry = LoadHelpViewer();
    return entry != nullptr && entry(topic.c_str(), kDisplayTopic) != 0;
}

}  // namespace norva
