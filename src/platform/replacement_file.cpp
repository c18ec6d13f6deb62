#include "platform/files.h"

#include <atomic>
#include <cerrno>
#include <cstring>
#include <string>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace norva {

namespace {

constexpr std::size_t kBufferSize = 256 * 1024;
constexpr int kMaxLinks = 40;
constexpr int kMaxNames = 1000;
constexpr std::size_t kLongestNamePart = 200;

/// Folder of a path as the file system sees it, where "\" is a character like any other; ends in "/" or is empty.
std::string SystemFolderOf(std::string const& path) {
    std::size_t const slash = path.rfind('/');
    return slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
}

/// Follows symbolic links, also one that leads to nothing yet. 0 or the error number.
int FollowLinks(std::string& path) {
    std::string target(4096, '\0');
    for (int links = 0; links < kMaxLinks; ++links) {
        ssize_t const length = ::readlink(path.c_str(), target.data(), target.size());
        if (length < 0) {
            return 0;
        }
        if (static_cast<std::size_t>(length) == target.size()) {
            return ENAMETOOLONG;
        }
        std::string next = target.substr(0, static_cast<std::size_t>(length));
        path = next.starts_with('/') ? next : SystemFolderOf(path) + next;
    }
    return ELOOP;
}

/// Hidden, and told from the file that it is to become; short enough for every file system.
std::string NextTemporaryName(std::string const& path) {
    static std::atomic<unsigned> counter = 0;
    std::string const folder = SystemFolderOf(path);
    return folder + "." + path.substr(folder.size(), kLongestNamePart) + "." + std::to_string(::getpid()) + "-" +
           std::to_string(counter++) + ".part";
}

/// In a folder with the sticky bit only the owner of a file may put another in its place.
bool IsHeldBySticky(std::string const& folder, struct stat const& target) {
    struct stat status {};
    uid_t const user = ::geteuid();
    return ::stat(folder.empty() ? "." : folder.c_str(), &status) == 0 && (status.st_mode & S_ISVTX) != 0 &&
           user != 0 && user != target.st_uid && user != status.st_uid;
}

/// Writes the folder's entries through to the disk. The file stands whatever becomes of this, and not every file
/// system can, so that a failure is no failure of the commit.
void SyncFolder(std::string const& folder) {
    if (InjectedFault(FaultPoint::Sync, folder) != 0) {
        return;
    }
    int const descriptor = ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor >= 0) {
        ::fsync(descriptor);
        ::close(descriptor);
    }
}

}  // namespace

CReplacementFile::~CReplacementFile() {
    Abandon();
}

bool CReplacementFile::Fail(int error) {
    if (m_error == 0) {
        m_error = error;
    }
    return false;
}

bool CReplacementFile::Open(std::string const& path, InPlace inPlace) {
    Abandon();
    m_error = 0;
    m_used = 0;
    m_written = 0;
    m_inPlace = false;
    m_path = path;
    if (path.empty() || path.find('\0') != std::string::npos) {
        return Fail(ENOENT);
    }
    if (int const error = FollowLinks(m_path)) {
        return Fail(error);
    }
    struct stat target {};
    bool const exists = ::stat(m_path.c_str(), &target) == 0;
    if (exists && S_ISDIR(target.st_mode)) {
        return Fail(EISDIR);
    }
    m_buffer.resize(kBufferSize);
    if (exists && ::faccessat(AT_FDCWD, m_path.c_str(), W_OK, AT_EACCESS) != 0) {
        return Fail(errno);
    }
    m_regular = !exists || S_ISREG(target.st_mode);
    if (!m_regular) {
        return OpenInPlace();
    }
    bool const held = exists && IsHeldBySticky(SystemFolderOf(m_path), target);
    if (int const error = held ? EPERM : OpenBeside()) {
        bool const folderRefuses = error == EACCES || error == EPERM || error == EROFS;
        return exists && folderRefuses && inPlace == InPlace::Allowed ? OpenInPlace() : Fail(error);
    }
    if (exists) {
        // Who may not give the file away keeps it as its own.
        if (::fchown(m_file.Descriptor(), target.st_uid, target.st_gid) != 0) {
            errno = 0;
        }
        ::fchmod(m_file.Descriptor(), target.st_mode & 0777);
    }
    return true;
}

/// Creates the temporary file; 0 or the error number.
int CReplacementFile::OpenBeside() {
    for (int tried = 0; tried < kMaxNames; ++tried) {
        std::string name = NextTemporaryName(m_path);
        if (m_file.Open(name, CFile::Mode::CreateNew)) {
            m_temporary = std::move(name);
            return 0;
        }
        if (m_file.Error() != EEXIST) {
            break;
        }
    }
    return m_file.Error();
}

bool CReplacementFile::OpenInPlace() {
    m_inPlace = true;
    return m_file.Open(m_path, CFile::Mode::WriteInPlace) || Fail(m_file.Error());
}

bool CReplacementFile::Write(void const* data, std::size_t size) {
    if (m_error != 0) {
        return false;
    }
    if (!IsOpen()) {
        return Fail(EBADF);
    }
    if (size > m_buffer.size() - m_used) {
        if (!Flush()) {
            return false;
        }
        if (size >= m_buffer.size()) {
            if (!m_file.Write(data, size)) {
                return Fail(m_file.Error());
            }
            m_written += size;
            return true;
        }
    }
    if (size > 0) {
        std::memcpy(m_buffer.data() + m_used, data, size);
    }
    m_used += size;
    m_written += size;
    return true;
}

bool CReplacementFile::Flush() {
    std::size_t const count = std::exchange(m_used, 0);
    return m_file.Write(m_buffer.data(), count) || Fail(m_file.Error());
}

bool CReplacementFile::Commit(bool durable) {
    if (m_error == 0 && !IsOpen()) {
        return Fail(EBADF);
    }
    if (m_error != 0 || !Finish(durable)) {
        Abandon();
        return false;
    }
    m_temporary.clear();
    if (durable && !m_inPlace) {
        SyncFolder(SystemFolderOf(m_path));
    }
    return true;
}

bool CReplacementFile::Finish(bool durable) {
    if (!Flush()) {
        return false;
    }
    bool const synced = !durable || !m_regular || m_file.Sync();
    if (!synced || !m_file.Close()) {
        return Fail(m_file.Error());
    }
    if (m_inPlace) {
        return true;
    }
    if (int const fault = InjectedFault(FaultPoint::Rename, m_path)) {
        return Fail(fault);
    }
    return ::rename(m_temporary.c_str(), m_path.c_str()) == 0 || Fail(errno);
}

void CReplacementFile::Abandon() {
    bool const wasOpen = IsOpen();
    m_used = 0;
    if (wasOpen && m_inPlace && m_regular && ::ftruncate(m_file.Descriptor(), 0) != 0 && m_error == 0) {
        m_error = errno;
    }
    m_file.Close();
    if (!m_temporary.empty()) {
        RemoveFile(std::exchange(m_temporary, {}));
    }
}

}  // namespace norva
