#include "platform/temporary_file.h"

#include "platform/paths.h"

#include <atomic>
#include <cerrno>
#include <utility>

#include <unistd.h>

namespace norva {

namespace {

constexpr int kAttempts = 100;
/// What is kept of a name that gets an ending; the rest of what file systems take is left to that.
constexpr std::size_t kLongestNamePart = 200;

std::string WithOwnEnding(std::string const& path) {
    static std::atomic<unsigned> counter = 0;
    std::string_view const folder = FolderOf(path);
    std::string own(folder);
    own.append(path, folder.size(), kLongestNamePart);
    return own + "." + std::to_string(::getpid()) + "-" + std::to_string(counter++);
}

}  // namespace

CTemporaryFile::CTemporaryFile(CTemporaryFile&& other) noexcept
    : m_file(std::move(other.m_file)),
      m_path(std::move(other.m_path)),
      m_isNamed(std::exchange(other.m_isNamed, false)) {}

CTemporaryFile& CTemporaryFile::operator=(CTemporaryFile&& other) noexcept {
    if (this != &other) {
        Discard();
        m_file = std::move(other.m_file);
        m_path = std::move(other.m_path);
        m_isNamed = std::exchange(other.m_isNamed, false);
    }
    return *this;
}

Status CTemporaryFile::Create(std::string const& path, Name name, std::string const& inputPath) {
    Discard();
    if (!inputPath.empty() && (path == inputPath || IsSameFile(path, inputPath))) {
        return Status::Failure("Couldn't create the file", path, "it is the input file itself");
    }
    if (IsFolder(path)) return Status::FileFailure("create", path, EISDIR);
    m_path = name == Name::Kept ? WithOwnEnding(path) : path;
    bool isOpen = m_file.Open(m_path, CFile::Mode::CreateNew);
    for (int attempt = 0; !isOpen && attempt < kAttempts; ++attempt) {
        if (m_file.Error() != EEXIST && m_file.Error() != ENAMETOOLONG) break;
        m_path = WithOwnEnding(path);
        isOpen = m_file.Open(m_path, CFile::Mode::CreateNew);
    }
    if (!isOpen) return Status::FileFailure("create", path, m_file.Error());
    // A name that cannot be dropped now goes at the end.
    m_isNamed = name == Name::Kept || RemoveFile(m_path) != 0;
    return {};
}

void CTemporaryFile::Discard() {
    m_file.Close();
    if (std::exchange(m_isNamed, false)) RemoveFile(m_path);
}

}  // namespace norva
