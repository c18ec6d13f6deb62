#include "platform/files.h"

#include "platform/paths.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace norva {

namespace {

constexpr std::size_t kBufferSize = 256 * 1024;
constexpr mode_t kNewFileMode = 0666;

FaultHook g_faultHook;

/// The error number that a test wants this call to fail with, or 0.
int Fault(FaultPoint point, std::string const& path) {
    return g_faultHook ? g_faultHook(point, path) : 0;
}

int FlagsOf(CFile::Mode mode) {
    switch (mode) {
        case CFile::Mode::Read:
            return O_RDONLY;
        case CFile::Mode::CreateReadWrite:
            return O_RDWR | O_CREAT | O_TRUNC;
        case CFile::Mode::CreateNew:
            return O_RDWR | O_CREAT | O_EXCL;
        case CFile::Mode::WriteInPlace:
            return O_WRONLY | O_CREAT | O_TRUNC;
        case CFile::Mode::Update:
            return O_RDWR;
    }
    return O_RDONLY;
}

/// Follows links to the name that is to be replaced.
std::string ResolveTarget(std::string const& path) {
    struct stat info {};
    if (lstat(path.c_str(), &info) != 0 || !S_ISLNK(info.st_mode)) return path;
    char* const resolved = realpath(path.c_str(), nullptr);
    if (resolved == nullptr) return path;
    std::string target = resolved;
    std::free(resolved);
    return target;
}

/// Makes the entry of a new name in a folder last.
void SyncFolder(std::string const& path) {
    std::string folder(FolderOf(path));
    if (folder.empty()) folder = ".";
    int const descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) return;
    fsync(descriptor);
    close(descriptor);
}

}  // namespace

void SetFaultHook(FaultHook hook) {
    g_faultHook = std::move(hook);
}

CFile::CFile(CFile&& other) noexcept
    : m_descriptor(std::exchange(other.m_descriptor, -1)), m_error(other.m_error), m_path(std::move(other.m_path)) {}

CFile& CFile::operator=(CFile&& other) noexcept {
    std::swap(m_descriptor, other.m_descriptor);
    std::swap(m_error, other.m_error);
    std::swap(m_path, other.m_path);
    return *this;
}

CFile::~CFile() {
    Close();
}

bool CFile::Open(std::string const& path, Mode mode) {
    Close();
    m_path = path;
    m_error = path.find('\0') != std::string::npos ? EINVAL : Fault(FaultPoint::Open, path);
    if (m_error != 0) return false;
    do {
        m_descriptor = open(path.c_str(), FlagsOf(mode) | O_CLOEXEC, kNewFileMode);
    } while (m_descriptor < 0 && errno == EINTR);
    if (m_descriptor < 0) {
        m_error = errno;
        return false;
    }
    struct stat info {};
    if (fstat(m_descriptor, &info) == 0 && S_ISDIR(info.st_mode)) {
        Close();
        m_error = EISDIR;
        return false;
    }
    return true;
}

bool CFile::Size(std::uint64_t& size) {
    struct stat info {};
    if (fstat(m_descriptor, &info) != 0) {
        m_error = errno;
        return false;
    }
    size = static_cast<std::uint64_t>(info.st_size);
    return true;
}

bool CFile::Read(void* buffer, std::size_t count, std::size_t& got) {
    got = 0;
    m_error = Fault(FaultPoint::Read, m_path);
    while (m_error == 0 && got < count) {
        ssize_t const part = read(m_descriptor, static_cast<char*>(buffer) + got, count - got);
        if (part == 0) break;
        if (part > 0) {
            got += static_cast<std::size_t>(part);
        } else if (errno != EINTR) {
            m_error = errno;
        }
    }
    return m_error == 0;
}

bool CFile::ReadAt(std::uint64_t offset, void* buffer, std::size_t count, std::size_t& got) {
    got = 0;
    m_error = Fault(FaultPoint::Read, m_path);
    while (m_error == 0 && got < count) {
        ssize_t const part =
            pread(m_descriptor, static_cast<char*>(buffer) + got, count - got, static_cast<off_t>(offset + got));
        if (part == 0) break;
        if (part > 0) {
            got += static_cast<std::size_t>(part);
        } else if (errno != EINTR) {
            m_error = errno;
        }
    }
    return m_error == 0;
}

bool CFile::Write(void const* buffer, std::size_t count) {
    m_error = Fault(FaultPoint::Write, m_path);
    std::size_t done = 0;
    while (m_error == 0 && done < count) {
        ssize_t const part = write(m_descriptor, static_cast<char const*>(buffer) + done, count - done);
        if (part >= 0) {
            done += static_cast<std::size_t>(part);
        } else if (errno != EINTR) {
            m_error = errno;
        }
    }
    return m_error == 0;
}

bool CFile::Seek(std::uint64_t offset) {
    m_error = Fault(FaultPoint::Seek, m_path);
    if (m_error == 0 && lseek(m_descriptor, static_cast<off_t>(offset), SEEK_SET) < 0) m_error = errno;
    return m_error == 0;
}

bool CFile::Sync() {
    m_error = Fault(FaultPoint::Sync, m_path);
    if (m_error == 0 && fsync(m_descriptor) != 0 && errno != EINVAL && errno != EROFS) m_error = errno;
    return m_error == 0;
}

bool CFile::Close() {
    if (m_descriptor < 0) return true;
    int const result = close(std::exchange(m_descriptor, -1));
    if (result != 0 && errno != EINTR) m_error = errno;
    return result == 0 || m_error == 0;
}

int RemoveFile(std::string const& path) {
    if (int const error = Fault(FaultPoint::Remove, path); error != 0) return error;
    return unlink(path.c_str()) == 0 ? 0 : errno;
}

bool FileExists(std::string const& path) {
    struct stat info {};
    return stat(path.c_str(), &info) == 0;
}

bool IsFolder(std::string const& path) {
    struct stat info {};
    return stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

bool IsSameFile(std::string const& first, std::string const& second) {
    struct stat one {};
    struct stat other {};
    return stat(first.c_str(), &one) == 0 && stat(second.c_str(), &other) == 0 && one.st_dev == other.st_dev &&
           one.st_ino == other.st_ino;
}

CReplacementFile::~CReplacementFile() {
    Abandon();
}

bool CReplacementFile::Open(std::string const& path, InPlace inPlace) {
    Abandon();
    m_path = ResolveTarget(path);
    m_error = 0;
    m_used = 0;
    m_written = 0;
    m_inPlace = false;
    m_buffer.resize(kBufferSize);

    struct stat old {};
    bool const exists = stat(m_path.c_str(), &old) == 0;
    if (exists && S_ISDIR(old.st_mode)) {
        m_error = EISDIR;
        return false;
    }
    bool const regular = !exists || S_ISREG(old.st_mode);
    if (exists && access(m_path.c_str(), W_OK) != 0) {
        m_error = errno;
        return false;
    }
    static std::atomic<unsigned> counter{0};
    for (int attempt = 0; regular && attempt < 100; ++attempt) {
        std::string const name = "." + std::string(FileNameOf(m_path)) + "." + std::to_string(getpid()) + "-" +
                                 std::to_string(counter.fetch_add(1)) + ".part";
        m_temporary = std::string(FolderOf(m_path)) + name;
        if (m_file.Open(m_temporary, CFile::Mode::CreateNew)) {
            if (exists) static_cast<void>(fchmod(m_file.Descriptor(), old.st_mode & 07777));
            return true;
        }
        if (m_file.Error() != EEXIST) break;
    }
    m_temporary.clear();
    m_error = m_file.Error();
    // A device or pipe, or a file in a folder that takes no new ones.
    if (!exists || (regular && (inPlace == InPlace::Never || (m_error != EACCES && m_error != EPERM)))) return false;
    m_inPlace = m_file.Open(m_path, CFile::Mode::WriteInPlace);
    m_error = m_file.Error();
    return m_inPlace;
}

bool CReplacementFile::Flush() {
    if (m_error == 0 && m_used > 0 && !m_file.Write(m_buffer.data(), m_used)) m_error = m_file.Error();
    m_used = 0;
    return m_error == 0;
}

bool CReplacementFile::Write(void const* data, std::size_t size) {
    if (m_error != 0 || !m_file.IsOpen()) return false;
    m_written += size;
    if (size > m_buffer.size() - m_used) {
        if (!Flush()) return false;
        if (size >= m_buffer.size()) {
            if (!m_file.Write(data, size)) m_error = m_file.Error();
            return m_error == 0;
        }
    }
    std::memcpy(m_buffer.data() + m_used, data, size);
    m_used += size;
    return true;
}

bool CReplacementFile::Commit(bool durable) {
    if (!m_file.IsOpen()) return false;
    Flush();
    if (m_error == 0 && durable && !m_file.Sync()) m_error = m_file.Error();
    if (!m_file.Close() && m_error == 0) m_error = m_file.Error();
    if (m_error == 0 && !m_inPlace) {
        m_error = Fault(FaultPoint::Rename, m_path);
        if (m_error == 0 && rename(m_temporary.c_str(), m_path.c_str()) != 0) m_error = errno;
        if (m_error == 0) {
            m_temporary.clear();
            if (durable) SyncFolder(m_path);
        }
    }
    if (m_error != 0) Abandon();
    return m_error == 0;
}

void CReplacementFile::Abandon() {
    m_file.Close();
    if (!m_temporary.empty()) unlink(m_temporary.c_str());
    m_temporary.clear();
    m_used = 0;
}

}  // namespace norva
