#pragma once

#include "platform/files.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace norva {

/// The bytes of a GPX file as UTF-8. The encoding is known by the file's mark (UTF-8, UTF-16 of either byte order) or
/// by its declaration (ISO-8859-1); everything else passes as it is.
class CGpxSource {
public:
    /// False with Error() set.
    bool Open(std::string const& path);
    void Close();
    bool IsOpen() const { return m_file.IsOpen(); }
    bool Rewind();
    int Error() const { return m_file.Error(); }
    /// Bytes of the file that were read since it was opened or rewound, those kept ahead included.
    std::uint64_t BytesRead() const { return m_bytesRead; }
    bool Size(std::uint64_t& size) { return m_file.Size(size); }

    /// Puts up to `room` bytes (4 at least) at `out` and returns how many: 0 only at the end or after a read error.
    std::size_t Read(char* out, std::size_t room);

private:
    enum class Encoding { Bytes, Latin1, Utf16Little, Utf16Big };

    void DetectEncoding();
    /// Refills m_raw behind what is left in it; false when nothing came.
    bool FillRaw();
    std::size_t TakeBytes(char* out, std::size_t room);
    std::size_t TakeLatin1(char* out, std::size_t room);
    std::size_t TakeUtf16(char* out, std::size_t room);

    CFile m_file;
    Encoding m_encoding = Encoding::Bytes;
    std::vector<unsigned char> m_raw;
    std::size_t m_begin = 0;
    std::size_t m_end = 0;
    std::uint64_t m_bytesRead = 0;
};

/// Appends a character as UTF-8; `code` is a Unicode scalar value.
void AppendUtf8(std::string& out, std::uint32_t code);

}  // namespace norva
