#pragma once

#include <cstdint>

namespace norva {

/// Percentage of a file that has been read, worked out only where it changes.
class CFilePercent {
public:
    /// The offset goes into the percentage in steps of `granularity` bytes, and so does the length: 100 for a share
    /// of whole hundreds of bytes, 1 for the exact one.
    CFilePercent(std::uint64_t length, std::uint64_t granularity)
        : m_length(length), m_granularity(granularity), m_units(length / granularity) {}

    /// Whether the percentage at `offset` is to be sent: it differs from the last one, or is the first.
    bool Changed(std::uint64_t offset) {
        if (offset < m_next) return false;
        Advance(offset);
        return true;
    }
    long long Value() const { return m_value; }

private:
    void Advance(std::uint64_t offset) {
        if (m_units == 0) {  // too short to be divided: nothing, then all of it
            m_value = offset >= m_length ? 100 : 0;
            m_next = m_length;
            if (m_value == 100) m_next = UINT64_MAX;
            return;
        }
        std::uint64_t const percent = offset / m_granularity * 100 / m_units;
        m_value = static_cast<long long>(percent);
        m_next = ((percent + 1) * m_units + 99) / 100 * m_granularity;
    }

    std::uint64_t m_length;
    std::uint64_t m_granularity;
    std::uint64_t m_units;
    std::uint64_t m_next = 0;
    long long m_value = 0;
};

}  // namespace norva
