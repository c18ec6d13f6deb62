#pragma once

#include "formats/gbn/gbn_records.h"
#include "formats/gbn/gbn_streams.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace norva {

/// Reads or writes a GBN file record by record, value by value or block by block, at its current position.
///
/// Reading calls return false when the file ends before what they read is complete, or could not be read (then
/// Failed()). The fields of the last record read, or to be written, stand in the public members.
class GbnFile {
public:
    /// The source or sink stays the caller's.
    explicit GbnFile(GbnSource& source);
    explicit GbnFile(GbnSink& sink);

    GbnChannelRecord channel;
    GbnLineRecord line;
    GbnBlockRecord block;
    GbnSecondChannelRecord secondChannel;
    GbnOpaqueRecord opaque;

    std::uint64_t Length() const { return m_length; }
    std::uint64_t Position() const { return m_position; }
    std::uint64_t Remaining() const { return m_length > m_position ? m_length - m_position : 0; }
    /// The source gave an error, or the sink did.
    bool Failed() const { return m_failed; }

    /// Reads as many bytes as the signature has; fewer when the file is shorter.
    std::string ReadSignature();
    /// Goes behind the first 0x1A and gives the text before it, if wanted. False when there is none up to the end.
    bool SkipHeaderText(std::string* text = nullptr);
    /// 0 at the end of the file.
    int ReadRecordCode();
    bool ReadChannelRecord() { return ReadRecord(channel); }
    bool ReadLineRecord() { return ReadRecord(line); }
    bool ReadBlockHeader() { return ReadRecord(block); }
    bool ReadSecondChannelRecord() { return ReadRecord(secondChannel); }
    bool ReadOpaqueRecord() { return ReadRecord(opaque); }
    /// One value of a numeric type as the store holds it.
    template <std::int32_t type>
    bool ReadValue(typename GbnValue<type>::Stored& value) {
        char const* const bytes = Take(GbnValue<type>::kWidth);
        if (bytes == nullptr) return false;
        value = GbnValue<type>::Decode(bytes);
        return true;
    }
    /// One text value of `width` bytes (at least 1), without what follows its first zero byte.
    bool ReadText(std::size_t width, std::string& text);
    /// Bytes of values as they stand in the file; the result is how many there were.
    std::size_t ReadBytes(char* buffer, std::size_t count);
    /// Goes `count` bytes on, to the end of the file at most.
    void Skip(std::uint64_t count);

    bool WriteSignature();
    bool WriteHeaderEnd();
    /// Every "." in the name becomes "_"; a name of more than 63 bytes is cut.
    bool WriteChannelRecord();
    bool WriteLineRecord() { return WriteRecord(line); }
    bool WriteBlockHeader() { return WriteRecord(block); }
    bool WriteInt32(std::int32_t value);
    bool WriteInt16(std::int16_t value);
    bool WriteDouble(double value);
    bool WriteBytes(void const* bytes, std::size_t count);
    bool WriteEnd();

private:
    template <class Record>
    bool ReadRecord(Record& record);
    template <class Record>
    bool WriteRecord(Record const& record);

    /// The next `count` bytes (at most kBufferSize), or null when the file has fewer.
    char const* Take(std::size_t count) {
        if (m_end - m_begin < count && !Refill(count)) return nullptr;
        char const* const bytes = m_buffer.get() + m_begin;
        m_begin += count;
        m_position += count;
        return bytes;
    }
    /// Brings at least `count` bytes into the buffer, if there are as many.
    bool Refill(std::size_t count);

    static constexpr std::size_t kBufferSize = std::size_t{256} * 1024;

    GbnSource* m_source = nullptr;
    GbnSink* m_sink = nullptr;
    std::uint64_t m_length = 0;
    std::uint64_t m_position = 0;
    std::unique_ptr<char[]> m_buffer;  ///< read ahead: bytes m_begin to m_end
    std::size_t m_begin = 0;
    std::size_t m_end = 0;
    bool m_failed = false;
};

}  // namespace norva
