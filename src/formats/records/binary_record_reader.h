#pragma once

#include "formats/records/binary_record.h"
#include "platform/files.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace norva {

/// Reads fixed-length records in blocks. Values that the file does not hold, or holds only in part, are the missing
/// value of their read format, in the partial record at its end and in any number of records after it.
class CBinaryRecordReader {
public:
    /// `file` stands at the first record. The record is not empty.
    CBinaryRecordReader(CFile& file, std::vector<RecordChannel> const& channels);

    std::size_t RecordLength() const { return m_missing.size(); }
    /// Records that Read can take at once, at least 1.
    std::size_t BlockRecords() const { return m_block.size() / RecordLength(); }
    /// The next records, packed, valid until the next call; null after a read error, which `file` tells.
    char const* Read(std::size_t records);
    /// How many of the records that were read last hold a whole value of a channel.
    std::size_t Present(std::size_t channel) const;
    /// Bytes of the file so far.
    std::uint64_t BytesRead() const { return m_bytesRead; }

private:
    CFile& m_file;
    std::vector<std::size_t> m_ends;  ///< where each value of a record ends
    std::vector<char> m_missing;      ///< a record of missing values
    std::vector<char> m_block;
    std::size_t m_got = 0;  ///< bytes of the block that the file held
    std::uint64_t m_bytesRead = 0;
};

}  // namespace norva
