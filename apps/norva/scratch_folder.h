#pragma once

#include "common/command_error.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>

namespace norva {

/// A folder for temporary stores, removed with what is in it.
class CScratchFolder {
public:
    CScratchFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "norva-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) throw CommandError(name + ": " + std::strerror(errno));
        m_path = name;
    }
    CScratchFolder(CScratchFolder const&) = delete;
    CScratchFolder& operator=(CScratchFolder const&) = delete;
    ~CScratchFolder() {
        std::error_code error;
        std::filesystem::remove_all(m_path, error);
    }
    std::filesystem::path const& Path() const { return m_path; }
    std::string StorePath(std::string const& input) const {
        return (m_path / (std::filesystem::path(input).stem().string() + ".nvt")).string();
    }
    /// Of what goes to standard output, in the format of an extension.
    std::string StreamPath(std::string const& extension) const {
        return (m_path / ("stdout." + (extension.empty() ? "xyz" : extension))).string();
    }

private:
    std::filesystem::path m_path;
};

}  // namespace norva
