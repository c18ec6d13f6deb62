#pragma once

#include "norva/file_util.h"
#include "norva/status.h"
#include "platform/temporary_file.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace norva {

/// The temporary files of one import, "%s.%d" of a base path and the column's index: created together, filled through
/// a buffer each, handed to the store column by column, and removed on every way out. A name at which a file stands
/// gets an ending of this import's own, and so do the last of very many columns; a name that is the input file's own or
/// a folder's counts as one that cannot be created.
class CColumnFiles {
public:
    CColumnFiles() = default;
    CColumnFiles(CColumnFiles const&) = delete;
    CColumnFiles& operator=(CColumnFiles const&) = delete;
    ~CColumnFiles();

    /// Nothing is left behind when one cannot be created.
    Status Create(std::string const& base, int count, std::string const& inputPath);
    int Count() const { return static_cast<int>(m_columns.size()); }

    /// Room for `size` bytes at the end of a column (`size` at most kBufferSize); the caller fills it. Null after a
    /// write failure, see Failed(). The room stays the caller's to fill until the next call of any kind.
    char* Append(int column, std::size_t size) {
        Column& to = m_columns[static_cast<std::size_t>(column)];
        if (static_cast<std::size_t>(to.limit - to.cursor) < size) return AppendSlowly(to, size);
        char* const room = to.cursor;
        to.cursor += size;
        return room;
    }
    /// As Append, for any size.
    bool AppendBytes(int column, void const* data, std::size_t size);
    /// Some write failed (full disk); Error() says why.
    bool Failed() const { return !m_error; }
    Status const& Error() const { return m_error; }
    std::uint64_t Size(int column) const;

    /// Hands the whole column to the store in one WriteHuge, then closes and removes the file. A failure, of reading it
    /// back or of the store, is silent.
    Status HandOver(int column, CNorvaFileUtil& store);
    /// Reads `count` bytes at `offset` of a column.
    Status Read(int column, std::uint64_t offset, void* buffer, std::size_t count);
    /// Closes and removes one file.
    void Remove(int column);

    static constexpr std::size_t kBufferSize = 64 * 1024;

private:
    struct Column {
        char* cursor = nullptr;
        char* limit = nullptr;  ///< at the cursor when the next call has to take the long way
        std::unique_ptr<char[]> buffer;
        std::uint64_t written = 0;  ///< bytes in the file
        CTemporaryFile file;
    };

    char* AppendSlowly(Column& column, std::size_t size);
    bool FlushColumn(Column& column);
    bool FlushWide();
    bool WriteColumn(Column& column, char const* data, std::size_t size);
    bool Fail(Column const& column, int error);
    void RemoveColumn(Column& column);
    void StopReading();

    std::vector<Column> m_columns;
    std::size_t m_columnBuffer = 0;  ///< bytes of each column's buffer
    std::size_t m_openFiles = 0;     ///< the first columns, whose files stay open
    std::unique_ptr<char[]> m_wide;  ///< values larger than a column's buffer, one at a time
    std::size_t m_wideSize = 0;
    Column* m_wideColumn = nullptr;  ///< whose value stands there
    Column* m_reading = nullptr;     ///< of those that do not stay open, the one that is open for Read
    Status m_error;                  ///< of the write that failed first
};

}  // namespace norva
