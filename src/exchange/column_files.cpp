#include "exchange/column_files.h"

#include "exchange/store_call.h"
#include "platform/last_error.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>
#include <utility>

#include <sys/resource.h>

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

}  // namespace

CColumnFiles::~CColumnFiles() {
    for (Column& column : m_columns) RemoveColumn(column);
}

bool CColumnFiles::Fail(Column const& column, int error) {
    m_wideColumn = nullptr;
    for (Column& other : m_columns) other.limit = other.cursor;
    if (m_error) m_error = Status::FileFailure("write", column.file.Path(), error);
    return false;
}

void CColumnFiles::RemoveColumn(Column& column) {
    if (m_wideColumn == &column) m_wideColumn = nullptr;
    if (m_reading == &column) m_reading = nullptr;
    column = Column();
}

void CColumnFiles::StopReading() {
    if (m_reading != nullptr) m_reading->file.File().Close();
    m_reading = nullptr;
}

Status CColumnFiles::Create(std::string const& base, int count, std::string const& inputPath) {
    for (Column& column : m_columns) RemoveColumn(column);
    m_columns.clear();
    m_columns.resize(static_cast<std::size_t>(std::max(count, 0)));
    m_columnBuffer = std::clamp(kBuffers / std::max<std::size_t>(m_columns.size(), 1), kSmallestBuffer, kBufferSize);
    m_openFiles = FilesToKeepOpen();
    m_error = {};
    for (std::size_t at = 0; at < m_columns.size(); ++at) {
        CTemporaryFile& file = m_columns[at].file;
        using Name = CTemporaryFile::Name;
        Name const name = at < m_openFiles ? Name::Dropped : Name::Kept;
        Status status = file.Create(base + "." + std::to_string(at), name, inputPath);
        if (!status) {
            for (Column& created : m_columns) RemoveColumn(created);
            m_columns.clear();
            return status;
        }
        if (name == Name::Kept) file.File().Close();
    }
    return {};
}

bool CColumnFiles::WriteColumn(Column& column, char const* data, std::size_t size) {
    if (Failed()) return false;
    if (size == 0) return true;
    if (m_reading == &column) StopReading();
    CFile& file = column.file.File();
    bool const wasOpen = file.IsOpen();
    if (!wasOpen && !(file.Open(column.file.Path(), CFile::Mode::Update) && file.Seek(column.written))) {
        return Fail(column, file.Error());
    }
    if (!file.Write(data, size)) return Fail(column, file.Error());
    if (!wasOpen && !file.Close()) return Fail(column, file.Error());
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
    if (m_wideColumn == nullptr) return !Failed();
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

Status CColumnFiles::Read(int column, std::uint64_t offset, void* buffer, std::size_t count) {
    Column& from = m_columns[static_cast<std::size_t>(column)];
    if (count == 0 && !Failed()) return {};
    if (!FlushWide() || !FlushColumn(from)) return m_error;
    CFile& file = from.file.File();
    if (!file.IsOpen()) {
        StopReading();
        if (file.Open(from.file.Path(), CFile::Mode::Read)) m_reading = &from;
    }
    std::size_t got = 0;
    if (file.IsOpen() && file.ReadAt(offset, buffer, count, got) && got == count) return {};
    return Status::Failure("Couldn't read the file", from.file.Path(),
                           file.Error() != 0 ? SystemErrorText(file.Error()) : "it was cut short");
}

Status CColumnFiles::HandOver(int column, CNorvaFileUtil& store) {
    Column& from = m_columns[static_cast<std::size_t>(column)];
    if (!FlushWide()) return Status(m_error).Silent();
    auto const size = static_cast<std::size_t>(Size(column));
    char const* values = size > 0 ? from.buffer.get() : "";
    std::unique_ptr<char[]> read;
    if (from.written > 0) {
        read.reset(new (std::nothrow) char[size]);
        if (read == nullptr) return Status::FileFailure("read", from.file.Path(), ENOMEM).Silent();
        if (Status status = Read(column, 0, read.get(), size); !status) return std::move(status).Silent();
        values = read.get();
    }
    Status status = CallStore(store, [&] { return store.WriteHuge(values, size); });
    if (status) RemoveColumn(from);
    return status;
}

void CColumnFiles::Remove(int column) {
    RemoveColumn(m_columns[static_cast<std::size_t>(column)]);
}

}  // namespace norva
