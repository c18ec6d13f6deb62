#include "formats/gbn/gbn_fiducial_file.h"

#include "platform/paths.h"
#include "store/value_rules.h"

#include <algorithm>
#include <cerrno>
#include <vector>

namespace norva {

namespace {

constexpr std::size_t kWidth = sizeof(double);
constexpr std::int64_t kValuesAtOnce = 8192;

}  // namespace

Status GbnFiducialFile::Create(std::string const& inputPath) {
    constexpr auto kDropped = CTemporaryFile::Name::Dropped;
    Status status = m_file.Create(FullPath("fiducial"), kDropped, inputPath);
    int const error = m_file.File().Error();
    bool const isClosedFolder = error == EACCES || error == EPERM || error == EROFS || error == ENOENT;
    if (status || !isClosedFolder) return status;
    return m_file.Create(std::string(FolderOf(inputPath)) + "fiducial", kDropped, inputPath);
}

Status GbnFiducialFile::Write(double start, double increment, std::int64_t count) {
    std::vector<char> buffer(static_cast<std::size_t>(std::min(count, kValuesAtOnce)) * kWidth);
    double value = start;
    for (std::int64_t done = 0; done < count;) {
        std::int64_t const end = std::min(count, done + kValuesAtOnce);
        std::size_t used = 0;
        for (; done < end; ++done, used += kWidth) {
            StoreDouble(buffer.data() + used, value);
            value += increment;
        }
        if (!m_file.File().Write(buffer.data(), used))
            return Status::FileFailure("write", m_file.Path(), m_file.File().Error());
    }
    return {};
}

Status GbnFiducialFile::Read(std::int64_t first, std::int64_t count, char* bytes) {
    std::size_t const size = static_cast<std::size_t>(count) * kWidth;
    std::size_t got = 0;
    if (m_file.File().ReadAt(static_cast<std::uint64_t>(first) * kWidth, bytes, size, got) && got == size) return {};
    return Status::FileFailure("read", m_file.Path(), m_file.File().Error());
}

}  // namespace norva
