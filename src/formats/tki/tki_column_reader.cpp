#include "formats/tki/tki_column_reader.h"

#include "platform/last_error.h"

#include <algorithm>
#include <cstring>

namespace norva {

namespace {

template <std::size_t width>
void CopyFixed(char const* from, std::size_t step, std::size_t count, char* to) {
    for (std::size_t i = 0; i < count; ++i, from += step, to += width) std::memcpy(to, from, width);
}

void CopyStrided(char const* from, std::size_t step, std::size_t count, std::size_t width, char* to) {
    switch (width) {
        case 1:
            return CopyFixed<1>(from, step, count, to);
        case 2:
            return CopyFixed<2>(from, step, count, to);
        case 4:
            return CopyFixed<4>(from, step, count, to);
        case 8:
            return CopyFixed<8>(from, step, count, to);
        default:
            for (std::size_t i = 0; i < count; ++i, from += step, to += width) std::memcpy(to, from, width);
    }
}

}  // namespace

CTkiColumnReader::CTkiColumnReader(CFile& file, TkiRecords const& records, std::vector<TkiChannelDesc> const& channels,
                                   Limits const& limits)
    : m_file(file), m_records(records), m_limits(limits) {
    std::uint64_t offset = 0;
    for (TkiChannelDesc const& channel : channels) {
        m_columns.push_back({offset, static_cast<std::size_t>(channel.Size())});
        offset += channel.Size();
    }
}

/// 0 when not even one record fits in a block: its channels are then read one by one.
std::size_t CTkiColumnReader::BlockRecords() const {
    return static_cast<std::size_t>(m_limits.block / m_records.length);
}

bool CTkiColumnReader::Select(std::size_t channel) {
    if (channel < m_firstTaken || channel >= m_endTaken) {
        std::uint64_t left = BlockRecords() > 0 ? m_limits.columns / m_records.count : 0;
        std::size_t end = channel;
        for (; end < m_columns.size() && m_columns[end].width <= left; ++end) left -= m_columns[end].width;
        if (end == channel) {
            SelectAlone(channel);
            return true;
        }
        if (!TakeOut(channel, end)) return false;
    }
    std::size_t const before = static_cast<std::size_t>(m_columns[channel].offset - m_columns[m_firstTaken].offset);
    auto const count = static_cast<std::size_t>(m_records.count);
    m_step = m_columns[channel].width;
    m_values = m_taken.data() + before * count;
    m_count = count;
    m_at = 0;
    m_nextRecord = m_records.count;
    return true;
}

void CTkiColumnReader::SelectAlone(std::size_t channel) {
    m_streamed = m_columns[channel];
    m_nextRecord = 0;
    m_at = m_count = 0;
}

bool CTkiColumnReader::TakeOut(std::size_t first, std::size_t end) {
    std::size_t const count = static_cast<std::size_t>(m_records.count);
    std::size_t const step = static_cast<std::size_t>(m_records.length);
    std::uint64_t const start = m_columns[first].offset;
    m_firstTaken = m_endTaken = 0;
    m_taken.resize(static_cast<std::size_t>(m_columns[end - 1].offset - start + m_columns[end - 1].width) * count);
    std::vector<char>& block = m_blocks[0];
    for (std::size_t record = 0; record < count;) {
        std::size_t const some = std::min(BlockRecords(), count - record);
        if (!ReadBlock(record, some, block)) return false;
        for (std::size_t i = first; i < end; ++i) {
            Column const& column = m_columns[i];
            char* const to = m_taken.data() + static_cast<std::size_t>(column.offset - start) * count;
            CopyStrided(block.data() + column.offset, step, some, column.width, to + record * column.width);
        }
        record += some;
    }
    m_firstTaken = first;
    m_endTaken = end;
    return true;
}

bool CTkiColumnReader::Refill() {
    std::uint64_t const left = m_records.count - m_nextRecord;
    if (left == 0) return false;
    m_turn = 1 - m_turn;
    std::vector<char>& block = m_blocks[m_turn];
    auto const some = static_cast<std::size_t>(std::min<std::uint64_t>(BlockRecords(), left));
    if (some > 0) {
        if (!ReadBlock(m_nextRecord, some, block)) return false;
        m_step = static_cast<std::size_t>(m_records.length);
        m_values = block.data() + m_streamed.offset;
        m_count = some;
        m_at = 0;
        m_nextRecord += some;
        return true;
    }
    block.resize(m_streamed.width);
    std::uint64_t const offset = m_records.start + m_nextRecord * m_records.length + m_streamed.offset;
    if (!ReadExactly(offset, block.data(), block.size())) return false;
    m_step = block.size();
    m_values = block.data();
    m_count = 1;
    m_at = 0;
    ++m_nextRecord;
    return true;
}

bool CTkiColumnReader::ReadBlock(std::uint64_t record, std::size_t count, std::vector<char>& block) {
    block.resize(BlockRecords() * static_cast<std::size_t>(m_records.length));
    return ReadExactly(m_records.start + record * m_records.length, block.data(),
                       count * static_cast<std::size_t>(m_records.length));
}

bool CTkiColumnReader::ReadExactly(std::uint64_t offset, char* to, std::size_t size) {
    std::size_t got = 0;
    bool const isRead = m_file.ReadAt(offset, to, size, got);
    if (isRead && got == size) return true;
    SetLastErrorText("Couldn't read the file : " + m_file.Path() + "\n" +
                     (isRead ? "it was cut short" : SystemErrorText(m_file.Error())));
    m_nextRecord = m_records.count;
    return false;
}

}  // namespace norva
