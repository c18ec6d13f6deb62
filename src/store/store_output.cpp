#include "store/store_output.h"

#include "platform/last_error.h"

#include <algorithm>

namespace norva {

namespace {

/// Small enough to be still in the processor's cache when it is written after its checksum was taken.
constexpr std::size_t kStep = 512 * 1024;

bool WriteSummed(CReplacementFile& file, CStoreChecksum& checksum, void const* data, std::size_t size) {
    auto const* bytes = static_cast<char const*>(data);
    while (size > 0) {
        std::size_t const step = std::min(size, kStep);
        checksum.Add(bytes, step);
        if (!file.Write(bytes, step)) return false;
        bytes += step;
        size -= step;
    }
    return true;
}

}  // namespace

bool CStoreOutput::Open(std::string const& path) {
    m_structure = m_columns = m_elements = {};
    m_elementBytes = 0;
    m_columnsEnded = false;
    m_isDevice = false;
    if (!m_file.Open(path, CReplacementFile::InPlace::Never)) return false;
    m_isDevice = m_file.TemporaryPath().empty();
    if (m_isDevice) m_file.Abandon();
    return !m_isDevice;
}

bool CStoreOutput::Begin(CStoreStructure const& structure) {
    return WriteTextSections(structure, [this](std::string_view piece) {
        return WriteSummed(m_file, m_structure, piece.data(), piece.size());
    });
}

bool CStoreOutput::WriteColumns(void const* data, std::size_t size) {
    return WriteSummed(m_file, m_columns, data, size);
}

bool CStoreOutput::EndColumns() {
    if (m_columnsEnded) return true;
    m_columnsEnded = true;
    return m_file.Write(kDataEndLine) && m_file.Write(kStoreStartLine);
}

bool CStoreOutput::WriteElements(void const* data, std::size_t size) {
    m_elementBytes += size;
    return EndColumns() && WriteSummed(m_file, m_elements, data, size);
}

bool CStoreOutput::Finish(CStoreStructure const& structure, StoreTrailer const* copied) {
    if (!EndColumns()) return false;
    std::uint64_t const tableStart = m_file.Written();
    bool const isTableWritten = WriteStoreTable(structure, [this](std::string_view piece) {
        return WriteSummed(m_file, m_structure, piece.data(), piece.size());
    });
    if (!isTableWritten) return false;
    StoreTrailer trailer;
    trailer.elementBytes = m_elementBytes;
    trailer.tableBytes = m_file.Written() - tableStart;
    trailer.columnChecksum = copied != nullptr ? copied->columnChecksum : m_columns.Value();
    trailer.elementChecksum = copied != nullptr ? copied->elementChecksum : m_elements.Value();
    return m_file.Write(EncodeTrailer(trailer, m_structure)) && m_file.Commit();
}

std::string CStoreOutput::Reason() const {
    return m_isDevice ? "it is a device or a pipe" : SystemErrorText(m_file.Error());
}

}  // namespace norva
