#include "exchange/disk_space.h"

#include "platform/numbers.h"
#include "platform/paths.h"

#include <sys/stat.h>

#include <filesystem>
#include <system_error>
#include <utility>

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

Status HasRoomFor(std::string const& path, double needed) {
    std::uint64_t const free = FreeBytesFor(path);
    if (needed <= static_cast<double>(free)) return {};
    std::string reason;
    AppendFixed(reason, needed, 0);
    reason += " bytes are needed, ";
    AppendInteger(reason, static_cast<std::int64_t>(free));
    reason += " are free";
    return Status::Failure("Not enough free space on the disk", FolderWithFile(path), std::move(reason));
}

}  // namespace norva
