#include "store/store_spool.h"

#include "platform/last_error.h"

namespace norva {

bool CStoreSpool::Open(std::string const& path) {
    if (!m_file.Open(path, CFile::Mode::CreateReadWrite)) return false;
    m_removeError = RemoveFile(path);
    if (m_removeError == 0) return true;
    m_file.Close();
    return false;
}

bool CStoreSpool::Flush() {
    if (m_buffer.empty()) return true;
    if (!m_file.Write(m_buffer.data(), m_buffer.size())) return false;
    m_flushed += m_buffer.size();
    m_buffer.clear();
    return true;
}

bool CStoreSpool::Append(void const* data, std::size_t size) {
    if (m_buffer.capacity() == 0) m_buffer.reserve(kBufferSize);
    if (size > kBufferSize - m_buffer.size() && !Flush()) return false;
    auto const* bytes = static_cast<char const*>(data);
    if (size > kBufferSize) {
        if (!m_file.Write(bytes, size)) return false;
        m_flushed += size;
    } else {
        m_buffer.insert(m_buffer.end(), bytes, bytes + size);
    }
    return true;
}

bool CStoreSpool::Read(std::uint64_t offset, void* out, std::size_t size) {
    std::size_t got = 0;
    return Flush() && m_file.ReadAt(offset, out, size, got) && got == size;
}

std::string CStoreSpool::Reason() const {
    return SystemErrorText(m_removeError != 0 ? m_removeError : m_file.Error());
}

}  // namespace norva
