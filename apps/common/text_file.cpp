#include "common/text_file.h"

#include "common/command_error.h"

#include <cerrno>
#include <filesystem>
#include <fstream>

namespace norva {

void WriteTextFile(std::string const& path, std::string const& text) {
    std::string const next = path + ".new";
    std::error_code error;
    {
        errno = 0;
        std::ofstream out(next, std::ios::binary);
        out << text;
        out.close();
        if (!out) error = std::error_code(errno != 0 ? errno : EIO, std::generic_category());
    }
    if (!error) std::filesystem::rename(next, path, error);
    if (!error) return;
    std::error_code ignored;
    std::filesystem::remove(next, ignored);
    throw CommandError(path + ": cannot be written: " + error.message());
}

}  // namespace norva
