#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// Files as the library uses them: every call that can fail says so, and every system call passes one point where
/// tests make it fail.
namespace norva {

enum class FaultPoint { Open, Read, Write, Sync, Rename, Remove, Seek };
/// Called once by each call of the library's file layer before it turns to the system, however many system calls that
/// takes; a result other than 0 is the error number to fail with instead. Empty by default.
using FaultHook = std::function<int(FaultPoint, std::string const& path)>;
void SetFaultHook(FaultHook hook);
/// What the hook says: 0, or the error number to fail with. For system calls outside of the classes below.
int InjectedFault(FaultPoint point, std::string const& path);

/// An open file. The calls return false on failure, with the reason in Error(); that is 0 after a call that succeeded.
class CFile {
public:
    enum class Mode {
        Read,             ///< regular files alone: a folder, a pipe or a device is an error
        CreateReadWrite,  ///< created or truncated
        CreateNew,        ///< fails when it exists
        WriteInPlace,     ///< existing or new, truncated
        Update,           ///< existing, kept, for reading and writing; regular files alone
    };

    CFile() = default;
    CFile(CFile&& other) noexcept;
    CFile& operator=(CFile&& other) noexcept;
    ~CFile();

    bool Open(std::string const& path, Mode mode);
    bool IsOpen() const { return m_descriptor >= 0; }
    std::string const& Path() const { return m_path; }
    int Error() const { return m_error; }
    int Descriptor() const { return m_descriptor; }

    bool Size(std::uint64_t& size);
    /// Reads up to `count` bytes; `got` is less only at the end of the file.
    bool Read(void* buffer, std::size_t count, std::size_t& got);
    bool ReadAt(std::uint64_t offset, void* buffer, std::size_t count, std::size_t& got);
    /// The first `size` bytes in memory, read-only, for as long as the pointer or a copy of it lives; null on failure,
    /// also when the file has become shorter than that.
    std::shared_ptr<std::byte const> Map(std::uint64_t size);
    bool Write(void const* buffer, std::size_t count);
    bool Seek(std::uint64_t offset);
    bool Sync();
    bool Close();

private:
    bool Fail(int error);
    template <typename Call>
    bool ReadAll(std::size_t count, std::size_t& got, Call call);

    int m_descriptor = -1;
    int m_error = 0;
    std::string m_path;
};

/// Deletes a file; 0 or the error number. A folder is an error.
int RemoveFile(std::string const& path);
bool FileExists(std::string const& path);
bool IsFolder(std::string const& path);
/// Whether both name the same existing file.
bool IsSameFile(std::string const& first, std::string const& second);

/// A file that takes the place of `path` only in Commit(): it is written under a temporary name beside its target and
/// gets the target's permissions. A symbolic link stays: what it leads to is replaced. Where the folder does not take
/// new files, an existing writable target is written in place instead, when the caller allows that: the older content
/// is gone then from the start. A device or a pipe is always written in place. A target that may not be written is
/// refused.
class CReplacementFile {
public:
    CReplacementFile() = default;
    CReplacementFile(CReplacementFile const&) = delete;
    CReplacementFile& operator=(CReplacementFile const&) = delete;
    /// Abandons what was not committed.
    ~CReplacementFile();

    enum class InPlace { Allowed, Never };

    bool Open(std::string const& path, InPlace inPlace = InPlace::Allowed);
    bool IsOpen() const { return m_file.IsOpen(); }
    /// Buffered. After a failure every further call fails and Error() keeps the first reason.
    bool Write(void const* data, std::size_t size);
    bool Write(std::string_view text) { return Write(text.data(), text.size()); }
    std::uint64_t Written() const { return m_written; }
    /// Flushes, writes through to the disk and renames. `durable` false leaves the disk to the system. After a failure
    /// nothing is left beside the target; one that was written in place is empty then.
    bool Commit(bool durable = true);
    /// Gives up: as after a failed Commit.
    void Abandon();
    int Error() const { return m_error; }
    /// Empty for a target that is written in place.
    std::string const& TemporaryPath() const { return m_temporary; }

private:
    bool Fail(int error);
    int OpenBeside();
    bool OpenInPlace();
    bool Flush();
    bool Finish(bool durable);

    CFile m_file;
    std::string m_path;
    std::string m_temporary;
    std::vector<char> m_buffer;
    std::size_t m_used = 0;
    std::uint64_t m_written = 0;
    int m_error = 0;
    bool m_inPlace = false;
    bool m_regular = true;
};

}  // namespace norva
