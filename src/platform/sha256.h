#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace norva {

/// SHA-256 of bytes that come in pieces.
class CSha256 {
public:
    void Add(void const* data, std::size_t size);
    /// Ends the message; 64 hexadecimal digits.
    std::string Finish();

private:
    static constexpr std::size_t kBlock = 64;

    void Take(unsigned char const* blocks, std::size_t count);

    std::array<std::uint32_t, 8> m_state{0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a,
                                         0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};
    std::array<unsigned char, kBlock> m_rest{};
    std::size_t m_restSize = 0;
    std::uint64_t m_size = 0;
};

}  // namespace norva
