#include "exchange/disk_space.h"

#include "platform/numbers.h"
#include "platform/paths.h"
#include "ui/messages.h"

#include <sys/stat.h>

#include <filesystem>
#include <system_error>

namespace norva {

namespace {

/// Sizes and counts below it leave room for sums and for a factor of 100.
constexpr std::uint64_t kUnknownSpace = std::uint64_t(1) << 55;

std::string FolderWithFile(std::string const& path) {
    std::string folder(FolderOf(path));
    return folder.empty() ? "." : folder;
}

}  // namespace

std::uint64_t FreeBytesFor(std::string const& path) {
    std::error_code error;
    std::filesystem::space_info const space = std::filesystem::space(FolderWithFile(path), error);
    return error || space.available > kUnknownSpace ? kUnknownSpace : space.available;
}

bool IsSameDisk(std::string const& first, std::string const& second) {
    struct stat one {};
    struct stat other {};
    return stat(FolderWithFile(first).c_str(), &one) == 0 && stat(FolderWithFile(second).c_str(), &other) == 0 &&
           one.st_dev == other.st_dev;
}

bool HasRoomFor(std::string const& path, double needed) {
    std::uint64_t const free = FreeBytesFor(path);
    if (needed <= static_cast<double>(free)) return true;
    std::string text = "Not enough free space on the disk : " + FolderWithFile(path) + "\n";
    AppendFixed(text, needed, 0);
    text += " bytes are needed, ";
    AppendInteger(text, static_cast<std::int64_t>(free));
    text += " are free";
    ShowMessage(text);
    return false;
}

}  // namespace norva
