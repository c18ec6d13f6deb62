#pragma once

#include "support/temporary_folder.h"

#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace norva::fuzz {

/// A folder for the files of a target, in memory where the system has such a place; it becomes the current folder.
/// It is removed when the process ends normally.
inline test::CTemporaryFolder& Folder() {
    static bool const isSet = [] {
        if (std::filesystem::is_directory("/dev/shm")) setenv("TMPDIR", "/dev/shm", 0);
        return true;
    }();
    static_cast<void>(isSet);
    static test::CTemporaryFolder folder;
    static bool const isCurrent = [] {
        std::filesystem::current_path(folder.Path());
        return true;
    }();
    static_cast<void>(isCurrent);
    return folder;
}

inline std::string_view AsText(unsigned char const* data, std::size_t size) {
    return {reinterpret_cast<char const*>(data), size};
}

}  // namespace norva::fuzz
