#include "platform/sha256.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace norva {

namespace {

/// Fractions of the cube roots of the first 64 primes.
constexpr std::uint32_t kRound[64] = {
    0x428a2f98, 0x71374491, 0xb5c0fbcf, 0xe9b5dba5, 0x3956c25b, 0x59f111f1, 0x923f82a4, 0xab1c5ed5,
    0xd807aa98, 0x12835b01, 0x243185be, 0x550c7dc3, 0x72be5d74, 0x80deb1fe, 0x9bdc06a7, 0xc19bf174,
    0xe49b69c1, 0xefbe4786, 0x0fc19dc6, 0x240ca1cc, 0x2de92c6f, 0x4a7484aa, 0x5cb0a9dc, 0x76f988da,
    0x983e5152, 0xa831c66d, 0xb00327c8, 0xbf597fc7, 0xc6e00bf3, 0xd5a79147, 0x06ca6351, 0x14292967,
    0x27b70a85, 0x2e1b2138, 0x4d2c6dfc, 0x53380d13, 0x650a7354, 0x766a0abb, 0x81c2c92e, 0x92722c85,
    0xa2bfe8a1, 0xa81a664b, 0xc24b8b70, 0xc76c51a3, 0xd192e819, 0xd6990624, 0xf40e3585, 0x106aa070,
    0x19a4c116, 0x1e376c08, 0x2748774c, 0x34b0bcb5, 0x391c0cb3, 0x4ed8aa4a, 0x5b9cca4f, 0x682e6ff3,
    0x748f82ee, 0x78a5636f, 0x84c87814, 0x8cc70208, 0x90befffa, 0xa4506ceb, 0xbef9a3f7, 0xc67178f2};

std::uint32_t LoadBig(unsigned char const* in) {
    return std::uint32_t{in[0]} << 24 | std::uint32_t{in[1]} << 16 | std::uint32_t{in[2]} << 8 | in[3];
}

}  // namespace

void CSha256::Take(unsigned char const* blocks, std::size_t count) {
    for (; count > 0; --count, blocks += kBlock) {
        std::uint32_t w[64];
        for (int i = 0; i < 16; ++i) w[i] = LoadBig(blocks + 4 * i);
        for (int i = 16; i < 64; ++i) {
            std::uint32_t const s0 = std::rotr(w[i - 15], 7) ^ std::rotr(w[i - 15], 18) ^ w[i - 15] >> 3;
            std::uint32_t const s1 = std::rotr(w[i - 2], 17) ^ std::rotr(w[i - 2], 19) ^ w[i - 2] >> 10;
            w[i] = w[i - 16] + s0 + w[i - 7] + s1;
        }
        auto [a, b, c, d, e, f, g, h] = m_state;
        for (int i = 0; i < 64; ++i) {
            std::uint32_t const s1 = std::rotr(e, 6) ^ std::rotr(e, 11) ^ std::rotr(e, 25);
            std::uint32_t const t1 = h + s1 + ((e & f) ^ (~e & g)) + kRound[i] + w[i];
            std::uint32_t const s0 = std::rotr(a, 2) ^ std::rotr(a, 13) ^ std::rotr(a, 22);
            std::uint32_t const t2 = s0 + ((a & b) ^ (a & c) ^ (b & c));
            h = g;
            g = f;
            f = e;
            e = d + t1;
            d = c;
            c = b;
            b = a;
            a = t1 + t2;
        }
        std::uint32_t const sums[8] = {a, b, c, d, e, f, g, h};
        for (std::size_t i = 0; i < 8; ++i) m_state[i] += sums[i];
    }
}

void CSha256::Add(void const* data, std::size_t size) {
    auto const* in = static_cast<unsigned char const*>(data);
    m_size += size;
    if (m_restSize > 0) {
        std::size_t const part = std::min(size, kBlock - m_restSize);
        std::copy_n(in, part, m_rest.begin() + static_cast<std::ptrdiff_t>(m_restSize));
        m_restSize += part;
        in += part;
        size -= part;
        if (m_restSize < kBlock) return;
        Take(m_rest.data(), 1);
        m_restSize = 0;
    }
    Take(in, size / kBlock);
    in += size / kBlock * kBlock;
    m_restSize = size % kBlock;
    std::copy_n(in, m_restSize, m_rest.begin());
}

std::string CSha256::Finish() {
    std::uint64_t const bits = m_size * 8;
    unsigned char padding[kBlock + 8] = {0x80};
    std::size_t const zeros = (m_restSize < 56 ? 56 : 120) - m_restSize;
    for (std::size_t i = 0; i < 8; ++i) padding[zeros + i] = static_cast<unsigned char>(bits >> (56 - 8 * i));
    Add(padding, zeros + 8);
    std::string digits;
    for (std::uint32_t const word : m_state) {
        for (int shift = 28; shift >= 0; shift -= 4) digits += "0123456789abcdef"[word >> shift & 15];
    }
    return digits;
}

}  // namespace norva
