#include "common/store_column.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <limits>

namespace norva {

namespace {

constexpr long kChunk = 64 * 1024;

template <typename Value>
void Widen(char const* bytes, std::size_t size, long count, double noData, double* values) {
    static_assert(std::endian::native == std::endian::little);
    for (long i = 0; i < count; ++i, bytes += size) {
        Value value;
        std::memcpy(&value, bytes, sizeof value);
        auto const number = static_cast<double>(value);
        values[i] = number == noData ? std::numeric_limits<double>::quiet_NaN() : number;
    }
}

}  // namespace

bool CColumnReader::Read(int channel, int line, long first, long count, double* values) {
    std::size_t const size = m_store.GetChannelValueSize(channel);
    int const dataType = m_store.GetChannelDataType(channel);
    m_bytes.resize(size * static_cast<std::size_t>(std::clamp(count, 0L, kChunk)));
    for (long done = 0; done < count; done += kChunk) {
        long const piece = std::min(kChunk, count - done);
        if (m_store.ReadColumn(channel, line, first + done, piece, m_bytes.data()) == 0) return false;
        double* const out = values + done;
        switch (dataType) {
            case DataType::kFloat:
                Widen<float>(m_bytes.data(), size, piece, static_cast<double>(kNoDataFloat), out);
                break;
            case DataType::kDouble:
                Widen<double>(m_bytes.data(), size, piece, kNoDataDouble, out);
                break;
            case DataType::kShort:
                Widen<std::int16_t>(m_bytes.data(), size, piece, kNoDataShort, out);
                break;
            case DataType::kText:
                return false;
            default:
                Widen<std::int32_t>(m_bytes.data(), size, piece, kNoDataLong, out);
        }
    }
    return true;
}

bool ReadNumbers(CNorvaFileUtil& store, int channel, int line, long first, long count, double* values) {
    return CColumnReader(store).Read(channel, line, first, count, values);
}

}  // namespace norva
