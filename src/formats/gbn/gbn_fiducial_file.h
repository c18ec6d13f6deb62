#pragma once

#include "norva/status.h"
#include "platform/files.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace norva {

/// The temporary file "fiducial" in the current folder, one double a location. It loses its name as soon as it is
/// open, so that it is gone whatever ends the import, and imports that run in one folder at once do not meet.
class GbnFiducialFile {
public:
    /// Takes the place of an older file. Fails when that is the input file or cannot be written.
    Status Create(std::string const& inputPath);
    /// Writes `count` values: `start`, then each the one before plus `increment`.
    Status Write(double start, double increment, std::int64_t count);
    /// Reads the bytes of `count` values from the `first` on.
    Status Read(std::int64_t first, std::int64_t count, char* bytes);
    /// Frees its room on the disk.
    void Close() { m_file.Close(); }

private:
    CFile m_file;
};

}  // namespace norva
