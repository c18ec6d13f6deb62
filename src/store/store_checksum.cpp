#include "store/store_checksum.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace norva {

namespace {

constexpr std::uint64_t kPrime1 = 0x9E3779B185EBCA87ULL;
constexpr std::uint64_t kPrime2 = 0xC2B2AE3D27D4EB4FULL;
constexpr std::uint64_t kPrime3 = 0x165667B19E3779F9ULL;
constexpr std::uint64_t kPrime4 = 0x85EBCA77C2B2AE63ULL;
constexpr std::uint64_t kPrime5 = 0x27D4EB2F165667C5ULL;

// Shifts rather than a library call: compilers make one load of each of these, and they run for every byte written.
std::uint64_t Load32(unsigned char const* in) {
    return std::uint64_t{in[0]} | std::uint64_t{in[1]} << 8 | std::uint64_t{in[2]} << 16 | std::uint64_t{in[3]} << 24;
}

std::uint64_t Load64(unsigned char const* in) {
    return Load32(in) | Load32(in + 4) << 32;
}

std::uint64_t Round(std::uint64_t lane, std::uint64_t input) {
    return std::rotl(lane + input * kPrime2, 31) * kPrime1;
}

std::uint64_t Merge(std::uint64_t hash, std::uint64_t lane) {
    return (hash ^ Round(0, lane)) * kPrime1 + kPrime4;
}

}  // namespace

void CStoreChecksum::Consume(unsigned char const* block) {
    for (std::size_t lane = 0; lane < m_lanes.size(); ++lane)
        m_lanes[lane] = Round(m_lanes[lane], Load64(block + 8 * lane));
}

void CStoreChecksum::Add(void const* data, std::size_t size) {
    if (size == 0) return;
    auto const* in = static_cast<unsigned char const*>(data);
    m_total += size;
    if (m_restSize > 0) {
        std::size_t const taken = std::min(size, kBlock - m_restSize);
        std::memcpy(m_rest.data() + m_restSize, in, taken);
        m_restSize += taken;
        in += taken;
        size -= taken;
        if (m_restSize < kBlock) return;
        Consume(m_rest.data());
        m_restSize = 0;
    }
    for (; size >= kBlock; in += kBlock, size -= kBlock) Consume(in);
    if (size > 0) std::memcpy(m_rest.data(), in, size);
    m_restSize = size;
}

std::uint64_t CStoreChecksum::Value() const {
    std::uint64_t hash = kPrime5;
    if (m_total >= kBlock) {
        hash =
            std::rotl(m_lanes[0], 1) + std::rotl(m_lanes[1], 7) + std::rotl(m_lanes[2], 12) + std::rotl(m_lanes[3], 18);
        for (std::uint64_t lane : m_lanes) hash = Merge(hash, lane);
    }
    hash += m_total;
    unsigned char const* in = m_rest.data();
    std::size_t left = m_restSize;
    for (; left >= 8; in += 8, left -= 8) hash = std::rotl(hash ^ Round(0, Load64(in)), 27) * kPrime1 + kPrime4;
    for (; left >= 4; in += 4, left -= 4) hash = std::rotl(hash ^ Load32(in) * kPrime1, 23) * kPrime2 + kPrime3;
    for (; left > 0; ++in, --left) hash = std::rotl(hash ^ *in * kPrime5, 11) * kPrime1;
    hash = (hash ^ hash >> 33) * kPrime2;
    hash = (hash ^ hash >> 29) * kPrime3;
    return hash ^ hash >> 32;
}

}  // namespace norva
