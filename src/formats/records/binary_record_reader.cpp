#include "formats/records/binary_record_reader.h"

#include <algorithm>

namespace norva {

namespace {

/// Small enough to stay in the processor's cache while one channel after the other is taken out of it.
constexpr std::size_t kBlockSize = 256 * 1024;

}  // namespace

CBinaryRecordReader::CBinaryRecordReader(CFile& file, std::vector<RecordChannel> const& channels)
    : m_file(file), m_missing(RecordSize(channels)) {
    std::size_t end = 0;
    for (RecordChannel const& channel : channels) {
        PutMissing(channel.format, m_missing.data() + end);
        m_ends.push_back(end += RecordFormatWidth(channel.format));
    }
    m_block.resize(std::max<std::size_t>(kBlockSize / std::max<std::size_t>(end, 1), 1) * end);
}

char const* CBinaryRecordReader::Read(std::size_t records) {
    std::size_t const length = RecordLength();
    std::size_t const wanted = records * length;
    std::size_t got = 0;
    if (!m_file.Read(m_block.data(), wanted, got)) return nullptr;
    m_got = got;
    m_bytesRead += got;
    // Of the record that the file ends in, only whole values are kept.
    std::size_t const inRecord = got % length;
    auto const next = std::upper_bound(m_ends.begin(), m_ends.end(), inRecord);
    got -= inRecord;
    std::size_t from = next == m_ends.begin() ? 0 : *(next - 1);
    for (; got < wanted; got += length, from = 0) {
        std::copy(m_missing.begin() + static_cast<std::ptrdiff_t>(from), m_missing.end(),
                  m_block.begin() + static_cast<std::ptrdiff_t>(got + from));
    }
    return m_block.data();
}

std::size_t CBinaryRecordReader::Present(std::size_t channel) const {
    std::size_t const length = RecordLength();
    return m_got / length + (m_got % length >= m_ends[channel] ? 1 : 0);
}

}  // namespace norva
