#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <vector>

namespace norva {

struct GbnFreeBytes {
    void operator()(char* bytes) const { std::free(bytes); }
};
/// Bytes whose content is not set at first.
using GbnBytes = std::unique_ptr<char[], GbnFreeBytes>;

/// Memory for `size` bytes, of large pages where the system has them: filling hundreds of megabytes once costs more in
/// page faults than in copying. Throws std::bad_alloc.
GbnBytes TakeGbnBytes(std::size_t size);

/// Memory for the bytes of many blocks, all freed at once. A large block has a piece of its own, of exactly its size.
class GbnArena {
public:
    char* Take(std::size_t size);
    void Clear();

private:
    std::vector<GbnBytes> m_pieces;
    std::size_t m_pieceSize = 0;
    char* m_next = nullptr;
    std::size_t m_left = 0;
};

}  // namespace norva
