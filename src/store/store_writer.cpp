#include "store/store_writer.h"

#include "store/value_rules.h"

#include <algorithm>
#include <vector>

namespace norva {

void CStoreWriter::Fail(std::string reason) {
    if (m_reason.empty()) m_reason = std::move(reason);
    m_limit = m_cursor;
    m_plainWidth = kNoWidth;
}

bool CStoreWriter::FailOutput() {
    Fail(m_output.Reason());
    return false;
}

bool CStoreWriter::Open(std::string const& path) {
    return m_output.Open(path) || FailOutput();
}

bool CStoreWriter::Start(CStoreStructure const& structure) {
    if (!m_reason.empty()) return false;
    m_structure = &structure;
    if (structure.ElementBytes() > 0 && !m_elements.Open(m_output.SiblingPath(".elements"))) {
        Fail(m_elements.Reason());
        return false;
    }
    if (!m_output.Begin(structure)) return FailOutput();
    m_buffer = std::make_unique_for_overwrite<char[]>(kBufferSize);
    m_cursor = m_settled = m_buffer.get();
    m_channel = 0;
    m_leftAfter = structure.ValueBytes();
    m_left = 0;
    if (StoreChannel const* first = Current()) {
        m_left = static_cast<std::uint64_t>(structure.Locations()) * first->valueWidth;
        m_leftAfter -= m_left;
    }
    Aim();
    return true;
}

StoreChannel const* CStoreWriter::Current() const {
    return m_channel < m_structure->channels.size() ? &m_structure->channels[m_channel] : nullptr;
}

std::uint64_t CStoreWriter::TotalLeft() {
    Settle();
    return m_left + m_leftAfter;
}

/// Counts what went straight into the buffer and goes on to the next channel when the current one is complete.
void CStoreWriter::Settle() {
    m_left -= static_cast<std::uint64_t>(m_cursor - m_settled);
    m_settled = m_cursor;
    while (m_left == 0 && m_leftAfter > 0) {
        ++m_channel;
        m_left = static_cast<std::uint64_t>(m_structure->Locations()) * Current()->valueWidth;
        m_leftAfter -= m_left;
    }
}

/// Lets values of the current channel go straight into the buffer, as far as it and the channel reach.
void CStoreWriter::Aim() {
    m_limit = m_cursor;
    m_plainWidth = kNoWidth;
    StoreChannel const* const channel = Current();
    if (channel == nullptr || channel->IsArray() || m_left == 0) return;
    auto const room = static_cast<std::size_t>(m_buffer.get() + kBufferSize - m_cursor);
    m_limit = m_cursor + std::min<std::uint64_t>(room, m_left);
    m_plainType = channel->description.dataType;
    m_plainWidth = static_cast<std::size_t>(channel->elementWidth);
}

/// What is in the buffer is counted already.
bool CStoreWriter::Flush() {
    auto const size = static_cast<std::size_t>(m_cursor - m_buffer.get());
    m_cursor = m_settled = m_buffer.get();
    return m_output.WriteColumns(m_buffer.get(), size) || FailOutput();
}

/// Into the column, past the counting.
bool CStoreWriter::AppendColumn(char const* data, std::size_t size) {
    if (size > static_cast<std::size_t>(m_buffer.get() + kBufferSize - m_cursor)) {
        if (!Flush()) return false;
        if (size > kBufferSize) return m_output.WriteColumns(data, size) || FailOutput();
    }
    std::memcpy(m_cursor, data, size);
    m_cursor += size;
    m_settled = m_cursor;
    return true;
}

bool CStoreWriter::AppendArray(char const* data, std::size_t size) {
    StoreChannel const& channel = *Current();
    if (!m_elements.Append(data, size)) {
        Fail(m_elements.Reason());
        return false;
    }
    std::uint64_t const total = static_cast<std::uint64_t>(m_structure->Locations()) * channel.valueWidth;
    std::uint64_t place = (total - m_left) % channel.valueWidth;
    while (size > 0) {
        bool const isFirst = place < channel.columnWidth;
        std::uint64_t const end = isFirst ? channel.columnWidth : channel.valueWidth;
        auto const taken = static_cast<std::size_t>(std::min<std::uint64_t>(size, end - place));
        if (isFirst && !AppendColumn(data, taken)) return false;
        place = (place + taken) % channel.valueWidth;
        data += taken;
        size -= taken;
    }
    return true;
}

bool CStoreWriter::Append(void const* data, std::size_t size) {
    if (!m_reason.empty()) return false;
    if (size > TotalLeft()) {
        Fail("more bytes of values were handed over than its profiles and channels need");
        return false;
    }
    auto const* bytes = static_cast<char const*>(data);
    while (size > 0) {
        Settle();
        auto const taken = static_cast<std::size_t>(std::min<std::uint64_t>(size, m_left));
        bool const isTaken = Current()->IsArray() ? AppendArray(bytes, taken) : AppendColumn(bytes, taken);
        if (!isTaken) return false;
        m_left -= taken;
        bytes += taken;
        size -= taken;
    }
    Settle();
    Aim();
    return true;
}

void CStoreWriter::PutValue(char* to, int dataType, void const* value) {
    switch (dataType) {
        case DataType::kFloat:
            StoreFloat(to, *static_cast<float const*>(value));
            break;
        case DataType::kDouble:
            StoreDouble(to, *static_cast<double const*>(value));
            break;
        case DataType::kText:
            *to = *static_cast<char const*>(value);
            break;
        case DataType::kShort:
            StoreLittle16(to, static_cast<std::uint16_t>(*static_cast<std::int16_t const*>(value)));
            break;
        default:
            StoreLittle32(to, static_cast<std::uint32_t>(*static_cast<std::int32_t const*>(value)));
    }
}

bool CStoreWriter::AppendValueSlowly(int dataType, void const* value) {
    if (!m_reason.empty()) return false;
    TotalLeft();
    auto const kind = [](int type) { return type == DataType::kInt ? DataType::kLong : type; };
    StoreChannel const* const channel = Current();
    std::size_t const width = ValueWidth(dataType);
    bool const isExpected = channel != nullptr && kind(channel->description.dataType) == kind(dataType);
    if (width == 0 || (m_left > 0 && !isExpected)) {
        Fail("a value of the data type " + std::to_string(dataType) + " was handed over" +
             (channel != nullptr ? " for the channel \"" + channel->description.name.substr(0, 80) + "\"" : ""));
        return false;
    }
    char bytes[sizeof(double)];
    PutValue(bytes, dataType, value);
    return Append(bytes, width);
}

bool CStoreWriter::EndElements() {
    std::vector<char> buffer(std::min<std::uint64_t>(m_elements.Size(), kBufferSize));
    std::uint64_t offset = 0;
    while (offset < m_elements.Size()) {
        auto const size = static_cast<std::size_t>(std::min<std::uint64_t>(m_elements.Size() - offset, buffer.size()));
        if (!m_elements.Read(offset, buffer.data(), size)) {
            Fail(m_elements.Reason());
            return false;
        }
        if (!m_output.WriteElements(buffer.data(), size)) return FailOutput();
        offset += size;
    }
    return true;
}

bool CStoreWriter::Finish() {
    if (!m_reason.empty()) return false;
    if (std::uint64_t const left = TotalLeft(); left > 0) {
        Fail(std::to_string(m_structure->ValueBytes() - left) +
             " bytes of values were handed over, and its profiles "
             "and channels need " +
             std::to_string(m_structure->ValueBytes()));
        return false;
    }
    return Flush() && EndElements() && (m_output.Finish(*m_structure) || FailOutput());
}

}  // namespace norva
