#pragma once

#include "norva/status.h"
#include "platform/temporary_file.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace norva {

/// The temporary file "fiducial" in the current folder, one double per location; beside the input file where that
/// folder takes no files.
class GbnFiducialFile {
public:
    Status Create(std::string const& inputPath);
    /// Writes `count` values: `start`, then each the one before plus `increment`.
    Status Write(double start, double increment, std::int64_t count);
    /// Reads the bytes of `count` values from the `first` on.
    Status Read(std::int64_t first, std::int64_t count, char* bytes);
    /// Frees its room on the disk.
    void Close() { m_file.Discard(); }

private:
    CTemporaryFile m_file;
};

}  // namespace norva
