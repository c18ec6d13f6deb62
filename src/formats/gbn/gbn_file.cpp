#include "formats/gbn/gbn_file.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace norva {

namespace {

/// Takes the fields of a record from its payload.
class PayloadReader {
public:
    explicit PayloadReader(char const* bytes) : m_next(bytes) {}

    void Name(std::string& name) { name = DecodeGbnText(Advance(kGbnNameSize), kGbnNameSize); }
    void Int32(std::int32_t& value) { value = static_cast<std::int32_t>(LoadLittle32(Advance(4))); }
    void Double(double& value) { value = LoadDouble(Advance(8)); }
    void Bytes(char* bytes, std::size_t count) { std::memcpy(bytes, Advance(count), count); }

private:
    char const* Advance(std::size_t count) {
        char const* const bytes = m_next;
        m_next += count;
        return bytes;
    }

    char const* m_next;
};

/// Puts the fields of a record into its payload, which is all zero before.
class PayloadWriter {
public:
    explicit PayloadWriter(char* bytes) : m_next(bytes) {}

    void Name(std::string const& name) {
        std::memcpy(Advance(kGbnNameSize), name.data(), std::min(name.size(), kGbnNameSize - 1));
    }
    void Int32(std::int32_t value) { StoreLittle32(Advance(4), static_cast<std::uint32_t>(value)); }
    void Double(double value) { StoreDouble(Advance(8), value); }

private:
    char* Advance(std::size_t count) {
        char* const bytes = m_next;
        m_next += count;
        return bytes;
    }

    char* m_next;
};

}  // namespace

GbnFile::GbnFile(GbnSource& source)
    : m_source(&source), m_length(source.Length()), m_buffer(std::make_unique_for_overwrite<char[]>(kBufferSize)) {}

GbnFile::GbnFile(GbnSink& sink) : m_sink(&sink) {}

bool GbnFile::Refill(std::size_t count) {
    std::size_t const kept = m_end - m_begin;
    std::memmove(m_buffer.get(), m_buffer.get() + m_begin, kept);
    m_begin = 0;
    m_end = kept;
    if (m_failed) return false;
    std::size_t got = 0;
    if (!m_source->Read(m_buffer.get() + kept, kBufferSize - kept, got)) {
        m_failed = true;
        return false;
    }
    m_end += got;
    return m_end >= count;
}

template <class Record>
bool GbnFile::ReadRecord(Record& record) {
    char const* const payload = Take(Record::kPayload);
    if (payload == nullptr) return false;
    PayloadReader reader(payload);
    Record::Layout(record, reader);
    return true;
}

template bool GbnFile::ReadRecord(GbnChannelRecord&);
template bool GbnFile::ReadRecord(GbnLineRecord&);
template bool GbnFile::ReadRecord(GbnBlockRecord&);
template bool GbnFile::ReadRecord(GbnSecondChannelRecord&);
template bool GbnFile::ReadRecord(GbnOpaqueRecord&);

std::string GbnFile::ReadSignature() {
    std::string signature(kGbnSignature.size(), '\0');
    signature.resize(ReadBytes(signature.data(), signature.size()));
    return signature;
}

bool GbnFile::SkipHeaderText(std::string* text) {
    if (text != nullptr) text->clear();
    while (m_begin < m_end || Refill(1)) {
        char const* const begin = m_buffer.get() + m_begin;
        std::size_t const available = m_end - m_begin;
        void const* const end = std::memchr(begin, kGbnHeaderEnd, available);
        std::size_t const taken =
            end == nullptr ? available : static_cast<std::size_t>(static_cast<char const*>(end) - begin);
        if (text != nullptr) text->append(begin, taken);
        std::size_t const passed = taken + (end == nullptr ? 0 : 1);
        m_begin += passed;
        m_position += passed;
        if (end != nullptr) return true;
    }
    return false;
}

int GbnFile::ReadRecordCode() {
    char const* const code = Take(1);
    return code == nullptr ? static_cast<int>(GbnCode::kEnd) : static_cast<unsigned char>(*code);
}

bool GbnFile::ReadText(std::size_t width, std::string& text) {
    if (width > Remaining()) return false;
    text.resize(width);
    if (ReadBytes(text.data(), width) < width) return false;
    text.resize(DecodeGbnText(text.data(), width).size());
    return true;
}

std::size_t GbnFile::ReadBytes(char* buffer, std::size_t count) {
    std::size_t const buffered = std::min(count, m_end - m_begin);
    if (buffered > 0) std::memcpy(buffer, m_buffer.get() + m_begin, buffered);
    m_begin += buffered;
    m_position += buffered;
    std::size_t const rest = count - buffered;
    if (rest == 0) return count;
    std::size_t got = 0;
    if (rest >= kBufferSize) {
        if (!m_failed && !m_source->Read(buffer + buffered, rest, got)) m_failed = true;
    } else {
        Refill(rest);
        got = std::min(rest, m_end);
        std::memcpy(buffer + buffered, m_buffer.get(), got);
        m_begin = got;
    }
    m_position += got;
    return buffered + got;
}

void GbnFile::Skip(std::uint64_t count) {
    std::uint64_t const target = m_position + std::min(count, Remaining());
    std::uint64_t const ahead = target - m_position;
    if (ahead <= m_end - m_begin) {
        m_begin += static_cast<std::size_t>(ahead);
    } else {
        m_begin = m_end = 0;
        if (!m_source->Seek(target)) m_failed = true;
    }
    m_position = target;
}

template <class Record>
bool GbnFile::WriteRecord(Record const& record) {
    std::array<char, 1 + Record::kPayload> bytes{};
    bytes[0] = static_cast<char>(Record::kCode);
    PayloadWriter writer(bytes.data() + 1);
    Record::Layout(record, writer);
    return WriteBytes(bytes.data(), bytes.size());
}

template bool GbnFile::WriteRecord(GbnLineRecord const&);
template bool GbnFile::WriteRecord(GbnBlockRecord const&);

bool GbnFile::WriteSignature() {
    return WriteBytes(kGbnSignature.data(), kGbnSignature.size()) && WriteBytes("\r\n", 2);
}

bool GbnFile::WriteHeaderEnd() {
    return WriteBytes(&kGbnHeaderEnd, 1);
}

bool GbnFile::WriteChannelRecord() {
    std::replace(channel.name.begin(), channel.name.end(), '.', '_');
    return WriteRecord(channel);
}

bool GbnFile::WriteInt32(std::int32_t value) {
    std::array<char, 4> bytes;
    StoreLittle32(bytes.data(), static_cast<std::uint32_t>(value));
    return WriteBytes(bytes.data(), bytes.size());
}

bool GbnFile::WriteInt16(std::int16_t value) {
    std::array<char, 2> bytes;
    StoreLittle16(bytes.data(), static_cast<std::uint16_t>(value));
    return WriteBytes(bytes.data(), bytes.size());
}

bool GbnFile::WriteDouble(double value) {
    std::array<char, 8> bytes;
    StoreDouble(bytes.data(), value);
    return WriteBytes(bytes.data(), bytes.size());
}

bool GbnFile::WriteBytes(void const* bytes, std::size_t count) {
    if (!m_failed && !m_sink->Write(bytes, count)) m_failed = true;
    return !m_failed;
}

bool GbnFile::WriteEnd() {
    char const code = static_cast<char>(GbnCode::kEnd);
    return WriteBytes(&code, 1);
}

}  // namespace norva
