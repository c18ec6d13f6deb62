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
constexpr int kAttempts = 100;

}  // namespace

Status GbnFiducialFile::Create(std::string const& inputPath) {
    std::string const path = FullPath("fiducial");
    int error = IsSameFile(path, inputPath) ? EEXIST : 0;
    for (int attempt = 0; error == 0 && attempt < kAttempts; ++attempt) {
        bool const isNew = m_file.Open(path, CFile::Mode::CreateNew);
        // An older file is taken over only if it could have been truncated as well.
        if (isNew || (m_file.Error() == EEXIST && m_file.Open(path, CFile::Mode::Update))) {
            error = RemoveFile(path);
            if (error == ENOENT) error = 0;  // another import was quicker
            if (isNew && error == 0) return {};
            m_file.Close();
        } else if (m_file.Error() != ENOENT) {
            error = m_file.Error();
        }
    }
    return Status::FileFailure("create", path, error != 0 ? error : EEXIST);
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
        if (!m_file.Write(buffer.data(), used)) return Status::FileFailure("write", m_file.Path(), m_file.Error());
    }
    return {};
}

Status GbnFiducialFile::Read(std::int64_t first, std::int64_t count, char* bytes) {
    std::size_t const size = static_cast<std::size_t>(count) * kWidth;
    std::size_t got = 0;
    if (m_file.ReadAt(static_cast<std::uint64_t>(first) * kWidth, bytes, size, got) && got == size) return {};
    return Status::FileFailure("read", m_file.Path(), m_file.Error());
}

}  // namespace norva
