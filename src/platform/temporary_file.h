#pragma once

#include "norva/status.h"
#include "platform/files.h"

#include <string>

namespace norva {

/// A file of the library's own for the time of an operation, gone with this object. It never takes a name at which
/// something stands: such a name, or one too long for the file system, gets an ending of its own.
class CTemporaryFile {
public:
    CTemporaryFile() = default;
    CTemporaryFile(CTemporaryFile&& other) noexcept;
    CTemporaryFile& operator=(CTemporaryFile&& other) noexcept;
    ~CTemporaryFile() { Discard(); }

    enum class Name {
        Dropped,  ///< lost at once: nothing stays behind however the process ends, and nobody else meets the file
        Kept,     ///< with an ending of its own in any case: the file may be closed and opened again by Path()
    };

    /// Creates the file for reading and writing. Fails where a folder stands at `path`, or the input file itself.
    Status Create(std::string const& path, Name name, std::string const& inputPath = {});
    CFile& File() { return m_file; }
    CFile const& File() const { return m_file; }
    /// What the file was created as.
    std::string const& Path() const { return m_path; }
    /// Closes and removes the file.
    void Discard();

private:
    CFile m_file;
    std::string m_path;
    bool m_isNamed = false;
};

}  // namespace norva
