#include "exchange/column_files.h"

#include "platform/last_error.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <new>
#include <utility>

#include <sys/resource.h>
#include <unistd.h>

namespace norva {

namespace {

/// All columns' buffers together, roughly.
constexpr std::size_t kBuffers = 8 * 1024 * 1024;
constexpr std::size_t kSmallestBuffer = 512;

/// How many files may stay open: the process needs descriptors for other things too.
std::size_t FilesToKeepOpen() {
    rlimit limit{};
    std::size_t const allowed = getrlimit(RLIMIT_NOFILE, &limit) == 0 ? limit.rlim_cur : 0;
    return std::min<std::size_t>(allowed / 4, 256);
}

constexpr int kAttempts = 100;

bool IsRemoved(std::string const& path) {
    int const error = RemoveFile(path);
    return error == 0 || error == ENOENT;
}

/// Ends the name of a file that is opened again: no other import makes one of that name.
std::string OwnEnding() {
    static std::atomic<unsigned> counter = 0;
    return "." + std::to_string(::getpid()) + "-" + std::to_string(counter++);
}

}  // namespace

CColumnFiles::~CColumnFiles() {
    for (Column& column : m_columns) RemoveColumn(column);
}

bool CColumnFiles::Fail(Column const& column, int error) {
    m_failed = true;
    m_wideColumn = nullptr;
    for (Column& other : m_columns) other.limit = other.cursor;
    return FailWith("write", column, SystemErrorText(error));
}

bool CColumnFiles::FailWith(std::string_view act, Column const& column, std::string reason) {
    Status error = Status::Failure("Couldn't " + std::string(act) + " the file", column.path, std::move(reason));
    SetLastErrorText(error.Text());
    if (m_error) m_error = std::move(error);
    return false;
}

void CColumnFiles::RemoveColumn(Column& column) {
    if (m_wideColumn == &column) m_wideColumn = nullptr;
    if (column.file.IsOpen()) column.file.Close();
    if (column.isNamed) RemoveFile(column.path);
    column = Column();
}

/// Always a file of its own: one that stands there may be another import's at this moment.
bool CColumnFiles::CreateFile(Column& column, std::string const& path) {
    CFile& file = column.file;
    bool isOpen = file.Open(path, CFile::Mode::CreateNew);
    for (int attempt = 0; !isOpen && attempt < kAttempts; ++attempt) {
        // An older file is taken away only if it could have been truncated as well; another import may be quicker.
        bool const isOlder = file.Error() == EEXIST && file.Open(path, CFile::Mode::Update);
        if (!isOlder && file.Error() != ENOENT) return false;
        if (isOlder && !IsRemoved(path)) break;
        isOpen = file.Open(path, CFile::Mode::CreateNew);
    }
    return isOpen || file.Open(path, CFile::Mode::CreateReadWrite);
}

bool CColumnFiles::Create(std::string const& base, int count, std::string const& inputPath) {
    for (Column& column : m_columns) RemoveColumn(column);
    m_columns.clear();
    m_columns.resize(static_cast<std::size_t>(std::max(count, 0)));
    m_columnBuffer = std::clamp(kBuffers / std::max<std::size_t>(m_columns.size(), 1), kSmallestBuffer, kBufferSize);
    m_openFiles = FilesToKeepOpen();
    m_failed = false;
    m_error = {};
    for (std::size_t at = 0; at < m_columns.size(); ++at) {
        Column& column = m_columns[at];
        // From the moment that the file stands nothing may fail before the destructor knows of it.
        bool const staysOpen = at < m_openFiles;
        column.path = base + "." + std::to_string(at) + (staysOpen ? std::string() : OwnEnding());
        std::string const& path = column.path;
        std::string reason;
        if (path == inputPath || IsSameFile(path, inputPath)) {
            reason = "it is the input file itself";
        } else if (column.isNamed = CreateFile(column, path); !column.isNamed) {
            reason = SystemErrorText(column.file.Error());
        }
        if (!reason.empty()) {
            FailWith("create", column, std::move(reason));
            for (Column& created : m_columns) RemoveColumn(created);
            m_columns.clear();
            return false;
        }
        // A file that stays open needs no name: so no other import takes it for its own, and none is left by a process
        // that is killed.
        column.isNamed = !staysOpen || !IsRemoved(path);
        if (!staysOpen) column.file.Close();
    }
    return true;
}

bool CColumnFiles::WriteColumn(Column& column, char const* data, std::size_t size) {
    if (m_failed) return false;
    if (size == 0) return true;
    bool const wasOpen = column.file.IsOpen();
    if (!wasOpen && !(column.file.Open(column.path, CFile::Mode::Update) && column.file.Seek(column.written))) {
        return Fail(column, column.file.Error());
    }
    if (!column.file.Write(data, size)) return Fail(column, column.file.Error());
    if (!wasOpen && !column.file.Close()) return Fail(column, column.file.Error());
    column.written += size;
    return true;
}

bool CColumnFiles::FlushColumn(Column& column) {
    auto const size = static_cast<std::size_t>(column.cursor - column.buffer.get());
    if (!WriteColumn(column, column.buffer.get(), size)) return false;
    column.cursor = column.buffer.get();
    return true;
}

/// Writes the value that waits in the room for wide ones.
bool CColumnFiles::FlushWide() {
    if (m_wideColumn == nullptr) return !m_failed;
    Column& column = *m_wideColumn;
    m_wideColumn = nullptr;
    column.limit = column.buffer == nullptr ? nullptr : column.buffer.get() + m_columnBuffer;
    return WriteColumn(column, m_wide.get(), m_wideSize);
}

char* CColumnFiles::AppendSlowly(Column& column, std::size_t size) {
    if (!FlushWide() || !FlushColumn(column)) return nullptr;
    if (size > m_columnBuffer) {
        if (m_wide == nullptr) m_wide = std::make_unique_for_overwrite<char[]>(kBufferSize);
        column.limit = column.cursor;
        m_wideColumn = &column;
        m_wideSize = size;
        return m_wide.get();
    }
    if (column.buffer == nullptr) column.buffer = std::make_unique_for_overwrite<char[]>(m_columnBuffer);
    column.limit = column.buffer.get() + m_columnBuffer;
    column.cursor = column.buffer.get() + size;
    return column.buffer.get();
}

bool CColumnFiles::AppendBytes(int column, void const* data, std::size_t size) {
    if (size > m_columnBuffer) {
        Column& to = m_columns[static_cast<std::size_t>(column)];
        return FlushWide() && FlushColumn(to) && WriteColumn(to, static_cast<char const*>(data), size);
    }
    char* const room = Append(column, size);
    if (room == nullptr) return size == 0;
    std::memcpy(room, data, size);
    return true;
}

std::uint64_t CColumnFiles::Size(int column) const {
    Column const& of = m_columns[static_cast<std::size_t>(column)];
    return of.written + static_cast<std::uint64_t>(of.cursor - of.buffer.get()) +
           (m_wideColumn == &of ? m_wideSize : 0);
}

bool CColumnFiles::Read(int column, std::uint64_t offset, void* buffer, std::size_t count) {
    Column& from = m_columns[static_cast<std::size_t>(column)];
    if (!FlushWide() || !FlushColumn(from)) return false;
    bool const wasOpen = from.file.IsOpen();
    std::size_t got = 0;
    bool const isRead = (wasOpen || from.file.Open(from.path, CFile::Mode::Read)) &&
                        from.file.ReadAt(offset, buffer, count, got) && got == count;
    if (!isRead) {
        FailWith("read", from, from.file.Error() != 0 ? SystemErrorText(from.file.Error()) : "it was cut short");
    }
    if (!wasOpen) from.file.Close();
    return isRead;
}

bool CColumnFiles::HandOver(int column, CNorvaFileUtil& store) {
    Column& from = m_columns[static_cast<std::size_t>(column)];
    if (!FlushWide()) return false;
    auto const size = static_cast<std::size_t>(Size(column));
    bool isTaken = false;
    if (from.written == 0) {
        isTaken = store.WriteHuge(size > 0 ? from.buffer.get() : "", size) != 0;
    } else {
        std::unique_ptr<char[]> const values(new (std::nothrow) char[size]);
        if (values == nullptr) {
            return FailWith("read", from, SystemErrorText(ENOMEM));
        }
        isTaken = Read(column, 0, values.get(), size) && store.WriteHuge(values.get(), size) != 0;
    }
    if (isTaken) RemoveColumn(from);
    return isTaken;
}

void CColumnFiles::Remove(int column) {
    RemoveColumn(m_columns[static_cast<std::size_t>(column)]);
}

}  // namespace norva
