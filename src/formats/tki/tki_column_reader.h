#pragma once

#include "norva/tki_file_read.h"
#include "platform/files.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace norva {

/// Where the records of a TKI file lie.
struct TkiRecords {
    std::uint64_t start = 0;   ///< offset of the first
    std::uint64_t length = 0;  ///< bytes of one
    std::uint64_t count = 0;
};

/// Gives one channel after the other out of the records of a file, in bounded memory. The channels that fit are taken
/// out of the file together, in one pass.
class CTkiColumnReader {
public:
    /// Bytes that columns taken out together fill at most, and bytes read at once.
    struct Limits {
        std::size_t columns = 128 * 1024 * 1024;
        std::size_t block = 1024 * 1024;
    };

    CTkiColumnReader(CFile& file, TkiRecords const& records, std::vector<TkiChannelDesc> const& channels,
                     Limits const& limits);
    CTkiColumnReader(CFile& file, TkiRecords const& records, std::vector<TkiChannelDesc> const& channels)
        : CTkiColumnReader(file, records, channels, Limits()) {}

    /// Goes to the first record of a channel. False after a read error.
    bool Select(std::size_t channel);
    /// Goes there reading no other channel along.
    void SelectAlone(std::size_t channel);
    /// The channel's bytes in the next record; null at the end, after a read error, or when the file has become
    /// shorter. They last until the call after the next one.
    char const* Next() {
        if (m_at == m_count && !Refill()) return nullptr;
        return m_values + m_step * m_at++;
    }

private:
    struct Column {
        std::uint64_t offset;  ///< in the record
        std::size_t width;
    };

    bool Refill();
    bool TakeOut(std::size_t first, std::size_t end);
    bool ReadBlock(std::uint64_t record, std::size_t count, std::vector<char>& block);
    bool ReadExactly(std::uint64_t offset, char* to, std::size_t size);
    std::size_t BlockRecords() const;

    CFile& m_file;
    TkiRecords m_records;
    Limits m_limits;
    std::vector<Column> m_columns;

    char const* m_values = nullptr;  ///< of m_count records, m_step bytes apart
    std::size_t m_step = 0;
    std::size_t m_count = 0;
    std::size_t m_at = 0;

    std::vector<char> m_taken;  ///< columns from m_firstTaken up to m_endTaken, one after the other
    std::size_t m_firstTaken = 0;
    std::size_t m_endTaken = 0;

    Column m_streamed{};
    std::uint64_t m_nextRecord = 0;             ///< to be read by Refill
    std::array<std::vector<char>, 2> m_blocks;  ///< by turns, so that the record before stays
    std::size_t m_turn = 0;
};

}  // namespace norva
