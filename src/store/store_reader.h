#pragma once

#include "platform/files.h"
#include "store/store_layout.h"
#include "store/store_structure.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace norva {

/// Reads the values of one store file. Every column is read through a window of its own, so that walking through many
/// channels row by row costs a system call a window and not a value; the windows together never take more than
/// kWindowBytes. The file that was opened stays the one that is read, also once another takes its name.
class CStoreReader {
public:
    static constexpr std::size_t kWindowBytes = 16 * 1024 * 1024;

    explicit CStoreReader(std::size_t windowBytes = kWindowBytes) : m_windowBytes(windowBytes) {}

    /// False with `reason` set for what is no sound store.
    bool Open(std::string const& path, std::string& reason);

    StoreLayout const& Layout() const { return m_layout; }
    CStoreStructure& Structure() { return m_layout.structure; }

    /// A location's bytes in the channel's column (the first element of an array); null when they cannot be read.
    /// They stay until the next call.
    char const* ColumnValue(std::size_t channel, StoreProfile const& profile, std::int64_t location) {
        StoreChannel const& of = m_layout.structure.channels[channel];
        return Bytes(channel, m_layout.columns + of.columnStart, of.columnWidth, profile.first + location);
    }
    /// The same with all elements of an array.
    char const* WholeValue(std::size_t channel, StoreProfile const& profile, std::int64_t location);
    /// Values of a run of locations, `first` counted over all profiles, from the column or with all elements.
    bool ReadColumn(std::size_t channel, std::int64_t first, std::int64_t count, void* out);
    bool ReadWhole(std::size_t channel, std::int64_t first, std::int64_t count, void* out);
    /// Values of all locations with all elements, in the file mapped into memory; they last as long as `owner`.
    bool MapWhole(std::size_t channel, std::shared_ptr<void const>& owner, std::span<std::byte const>& values);
    /// Bytes of the file from an offset on.
    bool ReadBytes(std::uint64_t offset, void* out, std::size_t size);
    /// Compares all values with the checksums; false with `reason` set when they differ.
    bool Verify(std::string& reason);
    /// False once another file stands under the path that was opened.
    bool IsCurrent() const;
    /// Why reading failed.
    std::string Reason() const;

private:
    /// A stretch of the file in memory.
    struct Window {
        std::uint64_t begin = 0;
        std::uint64_t end = 0;
        std::unique_ptr<char[]> bytes;
    };

    /// Only stores of very many columns share windows, and a division a value is dear.
    Window& WindowOf(std::size_t column) {
        return m_windows[column < m_windows.size() ? column : column % m_windows.size()];
    }
    char const* Bytes(std::size_t column, std::uint64_t start, std::uint64_t width, std::int64_t index) {
        std::uint64_t const offset = start + static_cast<std::uint64_t>(index) * width;
        Window const& window = WindowOf(column);
        if (offset >= window.begin && offset < window.end && width <= window.end - offset) {
            return window.bytes.get() + (offset - window.begin);
        }
        return Fetch(column, start, width, index);
    }
    bool VerifyBytes(std::uint64_t offset, std::uint64_t size, std::uint64_t checksum, std::string& reason);
    char const* Fetch(std::size_t column, std::uint64_t start, std::uint64_t width, std::int64_t index);

    CFile m_file;
    StoreLayout m_layout;
    std::shared_ptr<std::byte const> m_mapped;  ///< the whole file, once it was asked for
    std::size_t m_windowBytes;
    std::size_t m_windowSize = 0;  ///< of one window
    std::vector<Window> m_windows;
    std::vector<char> m_wideValue;  ///< a value that is larger than a window
};

}  // namespace norva
