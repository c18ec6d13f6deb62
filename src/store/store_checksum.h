#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace norva {

/// The checksum of store files: xxHash64 with seed 0, fed in pieces of any size.
class CStoreChecksum {
public:
    void Add(void const* data, std::size_t size);
    /// Of all that was added so far; more may follow.
    std::uint64_t Value() const;

private:
    static constexpr std::size_t kBlock = 32;

    void Consume(unsigned char const* block);

    std::array<std::uint64_t, 4> m_lanes{0x60EA27EEADC0B5D6ULL, 0xC2B2AE3D27D4EB4FULL, 0, 0x61C8864E7A143579ULL};
    std::array<unsigned char, kBlock> m_rest{};
    std::size_t m_restSize = 0;
    std::uint64_t m_total = 0;
};

}  // namespace norva
