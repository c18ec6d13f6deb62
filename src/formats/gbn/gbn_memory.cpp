#include "formats/gbn/gbn_memory.h"

#include <sys/mman.h>

#include <algorithm>
#include <new>

namespace norva {

namespace {

constexpr std::size_t kLargePage = std::size_t{2} * 1024 * 1024;
constexpr std::size_t kFirstPiece = std::size_t{64} * 1024;
constexpr std::size_t kLargestPiece = 16 * kLargePage;

}  // namespace

GbnBytes TakeGbnBytes(std::size_t size) {
    bool const isLarge = size >= kLargePage;
    void* bytes = nullptr;
    if (isLarge) {
        if (posix_memalign(&bytes, kLargePage, size) != 0) throw std::bad_alloc();
        // Advice only; not for the last part, which would grow to a whole large page.
        static_cast<void>(madvise(bytes, size / kLargePage * kLargePage, MADV_HUGEPAGE));
    } else {
        bytes = std::malloc(std::max<std::size_t>(size, 1));
        if (bytes == nullptr) throw std::bad_alloc();
    }
    return GbnBytes(static_cast<char*>(bytes));
}

char* GbnArena::Take(std::size_t size) {
    if (m_left < size) {
        m_pieceSize = std::clamp(2 * m_pieceSize, kFirstPiece, kLargestPiece);
        // What is left of the piece before is lost: little beside it.
        bool const hasOwn = size > m_pieceSize / 16;
        m_pieces.push_back(TakeGbnBytes(hasOwn ? size : m_pieceSize));
        if (hasOwn) return m_pieces.back().get();
        m_next = m_pieces.back().get();
        m_left = m_pieceSize;
    }
    char* const bytes = m_next;
    m_next += size;
    m_left -= size;
    return bytes;
}

void GbnArena::Clear() {
    m_pieces.clear();
    m_pieceSize = 0;
    m_next = nullptr;
    m_left = 0;
}

}  // namespace norva
