#include "platform/files.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <limits>
#include <utility>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace norva {

namespace {

FaultHook faultHook;
std::atomic<bool> faultHookSet = false;

/// A single system call takes no more than this.
constexpr std::size_t kLargestTransfer = std::size_t{1} << 30;

bool IsOffset(std::uint64_t offset) {
    return offset <= static_cast<std::uint64_t>(std::numeric_limits<off_t>::max());
}

int OpenFlags(CFile::Mode mode) {
    switch (mode) {
        case CFile::Mode::Read:
            // Without O_NONBLOCK a pipe that nobody writes to would hold the call for ever; files do not care.
            return O_RDONLY | O_NONBLOCK | O_NOCTTY;
        case CFile::Mode::CreateReadWrite:
            return O_RDWR | O_CREAT | O_TRUNC | O_NOCTTY;
        case CFile::Mode::CreateNew:
            return O_RDWR | O_CREAT | O_EXCL;
        case CFile::Mode::Update:
            return O_RDWR | O_NONBLOCK | O_NOCTTY;
        case CFile::Mode::WriteInPlace:
            break;
    }
    return O_WRONLY | O_CREAT | O_TRUNC | O_NOCTTY;
}

/// 0 for a file that can be read at any place as often as needed, else the reason.
int UnfitToRead(int descriptor) {
    struct stat status {};
    if (::fstat(descriptor, &status) != 0) {
        return errno;
    }
    if (S_ISDIR(status.st_mode)) {
        return EISDIR;
    }
    return S_ISREG(status.st_mode) ? 0 : ESPIPE;
}

}  // namespace

void SetFaultHook(FaultHook hook) {
    faultHookSet = false;
    faultHook = std::move(hook);
    faultHookSet = static_cast<bool>(faultHook);
}

int InjectedFault(FaultPoint point, std::string const& path) {
    return faultHookSet.load(std::memory_order_acquire) ? faultHook(point, path) : 0;
}

CFile::CFile(CFile&& other) noexcept
    : m_descriptor(std::exchange(other.m_descriptor, -1)),
      m_error(std::exchange(other.m_error, 0)),
      m_path(std::move(other.m_path)) {}

CFile& CFile::operator=(CFile&& other) noexcept {
    if (this != &other) {
        Close();
        m_descriptor = std::exchange(other.m_descriptor, -1);
        m_error = std::exchange(other.m_error, 0);
        m_path = std::move(other.m_path);
    }
    return *this;
}

CFile::~CFile() {
    Close();
}

bool CFile::Fail(int error) {
    m_error = error;
    return false;
}

bool CFile::Open(std::string const& path, Mode mode) {
    Close();
    m_error = 0;
    m_path = path;
    if (path.find('\0') != std::string::npos) {
        return Fail(EINVAL);
    }
    if (int const fault = InjectedFault(FaultPoint::Open, path)) {
        return Fail(fault);
    }
    do {
        m_descriptor = ::open(path.c_str(), OpenFlags(mode) | O_CLOEXEC, 0666);
    } while (m_descriptor < 0 && errno == EINTR);
    if (m_descriptor < 0) {
        return Fail(errno);
    }
    bool const mustSeek = mode == Mode::Read || mode == Mode::Update;
    if (int const unfit = mustSeek ? UnfitToRead(m_descriptor) : 0) {
        Close();
        return Fail(unfit);
    }
    return true;
}

bool CFile::Size(std::uint64_t& size) {
    m_error = 0;
    struct stat status {};
    if (::fstat(m_descriptor, &status) != 0) {
        return Fail(errno);
    }
    size = static_cast<std::uint64_t>(status.st_size);
    return true;
}

template <typename Call>
bool CFile::ReadAll(std::size_t count, std::size_t& got, Call call) {
    m_error = 0;
    got = 0;
    if (int const fault = InjectedFault(FaultPoint::Read, m_path)) {
        return Fail(fault);
    }
    while (got < count) {
        ssize_t const result = call(got, std::min(count - got, kLargestTransfer));
        if (result < 0) {
            if (errno == EINTR) {
                continue;
            }
            return Fail(errno);
        }
        if (result == 0) {
            break;
        }
        got += static_cast<std::size_t>(result);
    }
    return true;
}

bool CFile::Read(void* buffer, std::size_t count, std::size_t& got) {
    char* const bytes = static_cast<char*>(buffer);
    return ReadAll(count, got,
                   [&](std::size_t at, std::size_t size) { return ::read(m_descriptor, bytes + at, size); });
}

bool CFile::ReadAt(std::uint64_t offset, void* buffer, std::size_t count, std::size_t& got) {
    got = 0;
    if (!IsOffset(offset) || !IsOffset(offset + count)) {
        return Fail(EINVAL);
    }
    char* const bytes = static_cast<char*>(buffer);
    return ReadAll(count, got, [&](std::size_t at, std::size_t size) {
        return ::pread(m_descriptor, bytes + at, size, static_cast<off_t>(offset + at));
    });
}

std::shared_ptr<std::byte const> CFile::Map(std::uint64_t size) {
    struct stat status {};
    m_error = InjectedFault(FaultPoint::Read, m_path);
    if (m_error == 0 && ::fstat(m_descriptor, &status) != 0) m_error = errno;
    if (m_error != 0) return nullptr;
    // Reading a mapped page beyond the end of the file ends the process.
    if (size == 0 || static_cast<std::uint64_t>(status.st_size) < size) {
        m_error = EINVAL;
        return nullptr;
    }
    auto const length = static_cast<std::size_t>(size);
    void* const bytes = ::mmap(nullptr, length, PROT_READ, MAP_SHARED, m_descriptor, 0);
    if (bytes == MAP_FAILED) {
        m_error = errno;
        return nullptr;
    }
    auto const unmap = [length](std::byte const* start) { ::munmap(const_cast<std::byte*>(start), length); };
    return {static_cast<std::byte const*>(bytes), unmap};
}

bool CFile::Write(void const* buffer, std::size_t count) {
    m_error = 0;
    char const* bytes = static_cast<char const*>(buffer);
    if (int const fault = InjectedFault(FaultPoint::Write, m_path)) {
        return Fail(fault);
    }
    while (count > 0) {
        ssize_t const result = ::write(m_descriptor, bytes, std::min(count, kLargestTransfer));
        if (result < 0) {
            if (errno == EINTR) {
                continue;
            }
            return Fail(errno);
        }
        if (result == 0) {
            return Fail(EIO);
        }
        bytes += result;
        count -= static_cast<std::size_t>(result);
    }
    return true;
}

bool CFile::Seek(std::uint64_t offset) {
    m_error = 0;
    if (int const fault = InjectedFault(FaultPoint::Seek, m_path)) {
        return Fail(fault);
    }
    if (!IsOffset(offset)) {
        return Fail(EINVAL);
    }
    return ::lseek(m_descriptor, static_cast<off_t>(offset), SEEK_SET) >= 0 || Fail(errno);
}

bool CFile::Sync() {
    m_error = 0;
    if (int const fault = InjectedFault(FaultPoint::Sync, m_path)) {
        return Fail(fault);
    }
    int result = 0;
    do {
        result = ::fsync(m_descriptor);
    } while (result != 0 && errno == EINTR);
    return result == 0 || Fail(errno);
}

bool CFile::Close() {
    if (m_descriptor < 0) {
        return true;
    }
    // The descriptor is gone whatever close says; interrupted only means that it was not waited for.
    return ::close(std::exchange(m_descriptor, -1)) == 0 || errno == EINTR || Fail(errno);
}

int RemoveFile(std::string const& path) {
    if (int const fault = InjectedFault(FaultPoint::Remove, path)) {
        return fault;
    }
    return ::unlink(path.c_str()) == 0 ? 0 : errno;
}

bool FileExists(std::string const& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0;
}

bool IsFolder(std::string const& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool IsSameFile(std::string const& first, std::string const& second) {
    struct stat one {};
    struct stat other {};
    return ::stat(first.c_str(), &one) == 0 && ::stat(second.c_str(), &other) == 0 && one.st_dev == other.st_dev &&
           one.st_ino == other.st_ino;
}

}  // namespace norva
