#include "platform/paths.h"

#include <filesystem>

namespace norva {

namespace {

constexpr std::string_view kSeparators = "/\\";

}  // namespace

std::string_view FileNameOf(std::string_view path) {
    return path.substr(path.find_last_of(kSeparators) + 1);
}

std::string_view FolderOf(std::string_view path) {
    return path.substr(0, path.find_last_of(kSeparators) + 1);
}

std::string_view WithoutExtension(std::string_view path) {
    std::size_t const dot = path.rfind('.');
    return dot == std::string_view::npos || dot == 0 ? path : path.substr(0, dot);
}

std::string_view ExtensionOf(std::string_view path) {
    std::string_view const name = FileNameOf(path);
    std::size_t const dot = name.rfind('.');
    return dot == std::string_view::npos ? std::string_view() : name.substr(dot + 1);
}

std::string FullPath(std::string_view path) {
    std::error_code error;
    std::filesystem::path const full = std::filesystem::absolute(std::filesystem::path(path), error);
    return error ? std::string(path) : full.string();
}

}  // namespace norva
