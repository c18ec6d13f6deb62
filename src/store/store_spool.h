#pragma once

#include "platform/temporary_file.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace norva {

/// Bytes put aside on the disk, appended and read back. The file has no name while it is in use, so that nothing stays
/// behind however the process ends.
class CStoreSpool {
public:
    bool Open(std::string const& path);
    bool IsOpen() const { return m_spool.File().IsOpen(); }
    bool Append(void const* data, std::size_t size);
    std::uint64_t Size() const { return m_flushed + m_buffer.size(); }
    /// Exactly `size` bytes.
    bool Read(std::uint64_t offset, void* out, std::size_t size);
    std::string Reason() const;

private:
    static constexpr std::size_t kBufferSize = 128 * 1024;

    bool Flush();

    CTemporaryFile m_spool;
    std::vector<char> m_buffer;
    std::uint64_t m_flushed = 0;
    std::string m_openReason;
};

}  // namespace norva
