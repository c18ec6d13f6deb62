#include "store/store_spool.h"

#include "platform/last_error.h"

namespace norva {

bool CStoreSpool::Open(std::string const& path) {
    Status const status = m_spool.Create(path, CTemporaryFile::Name::Dropped);
    m_openReason = status.Reason();
    return status.IsGood();
}

bool CStoreSpool::Flush() {
    if (m_buffer.empty()) return true;
    if (!m_spool.File().Write(m_buffer.data(), m_buffer.size())) return false;
    m_flushed += m_buffer.size();
    m_buffer.clear();
    return true;
}

bool CStoreSpool::Append(void const* data, std::size_t size) {
    if (m_buffer.capacity() == 0) m_buffer.reserve(kBufferSize);
    if (size > kBufferSize - m_buffer.size() && !Flush()) return false;
    auto const* bytes = static_cast<char const*>(data);
    if (size > kBufferSize) {
        if (!m_spool.File().Write(bytes, size)) return false;
        m_flushed += size;
    } else {
        m_buffer.insert(m_buffer.end(), bytes, bytes + size);
    }
    return true;
}

bool CStoreSpool::Read(std::uint64_t offset, void* out, std::size_t size) {
    std::size_t got = 0;
    return Flush() && m_spool.File().ReadAt(offset, out, size, got) && got == size;
}

std::string CStoreSpool::Reason() const {
    return m_openReason.empty() ? SystemErrorText(m_spool.File().Error()) : m_openReason;
}

}  // namespace norva
