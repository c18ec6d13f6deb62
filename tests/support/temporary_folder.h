#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>

namespace norva::test {

/// An empty folder of a test's own, gone with everything in it at the end.
class CTemporaryFolder {
public:
    CTemporaryFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "norva-test-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
        m_path = name;
    }
    CTemporaryFolder(CTemporaryFolder const&) = delete;
    CTemporaryFolder& operator=(CTemporaryFolder const&) = delete;
    ~CTemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }

    /// Path of a file in the folder.
    std::string operator/(std::string_view name) const { return m_path + "/" + std::string(name); }
    std::string const& Path() const { return m_path; }
    /// How many files and folders stand in it.
    std::size_t Count() const {
        auto const files = std::filesystem::directory_iterator(m_path);
        return static_cast<std::size_t>(std::distance(begin(files), end(files)));
    }

private:
    std::string m_path;
};

inline std::string ReadWholeFile(std::string const& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

inline void WriteWholeFile(std::string const& path, std::string_view bytes) {
    std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

}  // namespace norva::test
