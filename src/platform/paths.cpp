#include "platform/paths.h"

#include <filesystem>
#include <system_error>

namespace norva {

namespace {

/// Where the file name starts.
std::size_t NameStart(std::string_view path) {
    std::size_t const separator = path.find_last_of("/\\");
    return separator == std::string_view::npos ? 0 : separator + 1;
}

}  // namespace

std::string_view FileNameOf(std::string_view path) {
    return path.substr(NameStart(path));
}

std::string_view FolderOf(std::string_view path) {
    return path.substr(0, NameStart(path));
}

std::string_view WithoutExtension(std::string_view path) {
    std::size_t const dot = path.rfind('.');
    return dot == std::string_view::npos || dot == 0 ? path : path.substr(0, dot);
}

std::string_view ExtensionOf(std::string_view path) {
    std::string_view const name = FileNameOf(path);
    std::size_t const dot = name.rfind('.');
    return dot == std::string_view::npos ? name.substr(name.size()) : name.substr(dot + 1);
}

std::string FullPath(std::string_view path) {
    if (path.empty() || path.front() == '/') {
        return std::string(path);
    }
    std::error_code error;
    std::filesystem::path const folder = std::filesystem::current_path(error);
    if (error) {
        return std::string(path);
    }
    return (folder / std::filesystem::path(path)).string();
}

}  // namespace norva
