#include "store/store_reader.h"

#include "platform/last_error.h"

#include <algorithm>

#include <sys/stat.h>

namespace norva {

namespace {

constexpr std::size_t kSmallestWindow = 512;
constexpr std::size_t kLargestWindow = 256 * 1024;
constexpr std::size_t kVerifyStep = 512 * 1024;

}  // namespace

bool CStoreReader::Open(std::string const& path, std::string& reason) {
    if (!m_file.Open(path, CFile::Mode::Read)) {
        reason = SystemErrorText(m_file.Error());
        return false;
    }
    if (!ReadStoreLayout(m_file, m_layout, reason)) return false;
    // Elements of arrays have windows beside those of the columns.
    std::size_t const columns = m_layout.structure.channels.size() * (m_layout.structure.ElementBytes() > 0 ? 2 : 1);
    std::size_t const most = std::max<std::size_t>(m_windowBytes / kSmallestWindow, 1);
    m_windows.resize(std::clamp<std::size_t>(columns, 1, most));
    m_windowSize = std::clamp(m_windowBytes / m_windows.size(), kSmallestWindow, kLargestWindow);
    return true;
}

char const* CStoreReader::Fetch(std::size_t column, std::uint64_t start, std::uint64_t width, std::int64_t index) {
    auto const at = static_cast<std::uint64_t>(index);
    std::uint64_t const perWindow = m_windowSize / width;
    if (perWindow == 0) {
        m_wideValue.resize(static_cast<std::size_t>(width));
        return ReadBytes(start + at * width, m_wideValue.data(), m_wideValue.size()) ? m_wideValue.data() : nullptr;
    }
    Window& window = WindowOf(column);
    if (window.bytes == nullptr) window.bytes = std::make_unique_for_overwrite<char[]>(m_windowSize);
    std::uint64_t const first = at - at % perWindow;
    std::uint64_t const count = std::min(perWindow, static_cast<std::uint64_t>(m_layout.structure.Locations()) - first);
    window.begin = window.end = start + first * width;
    if (!ReadBytes(window.begin, window.bytes.get(), static_cast<std::size_t>(count * width))) return nullptr;
    window.end += count * width;
    return window.bytes.get() + (at - first) * width;
}

char const* CStoreReader::WholeValue(std::size_t channel, StoreProfile const& profile, std::int64_t location) {
    StoreChannel const& of = m_layout.structure.channels[channel];
    if (!of.IsArray()) return ColumnValue(channel, profile, location);
    std::size_t const column = m_layout.structure.channels.size() + channel;
    return Bytes(column, m_layout.elements + of.elementsStart, of.valueWidth, profile.first + location);
}

bool CStoreReader::ReadColumn(std::size_t channel, std::int64_t first, std::int64_t count, void* out) {
    StoreChannel const& of = m_layout.structure.channels[channel];
    return ReadBytes(m_layout.columns + of.columnStart + static_cast<std::uint64_t>(first) * of.columnWidth, out,
                     static_cast<std::size_t>(count) * static_cast<std::size_t>(of.columnWidth));
}

bool CStoreReader::ReadWhole(std::size_t channel, std::int64_t first, std::int64_t count, void* out) {
    StoreChannel const& of = m_layout.structure.channels[channel];
    if (!of.IsArray()) return ReadColumn(channel, first, count, out);
    return ReadBytes(m_layout.elements + of.elementsStart + static_cast<std::uint64_t>(first) * of.valueWidth, out,
                     static_cast<std::size_t>(count) * static_cast<std::size_t>(of.valueWidth));
}

bool CStoreReader::MapWhole(std::size_t channel, std::shared_ptr<void const>& owner,
                            std::span<std::byte const>& values) {
    if (m_mapped == nullptr) m_mapped = m_file.Map(m_layout.end);
    if (m_mapped == nullptr) return false;
    StoreChannel const& of = m_layout.structure.channels[channel];
    std::uint64_t const start = of.IsArray() ? m_layout.elements + of.elementsStart : m_layout.columns + of.columnStart;
    std::uint64_t const size = static_cast<std::uint64_t>(m_layout.structure.Locations()) * of.valueWidth;
    values = {m_mapped.get() + start, static_cast<std::size_t>(size)};
    owner = m_mapped;
    return true;
}

bool CStoreReader::ReadBytes(std::uint64_t offset, void* out, std::size_t size) {
    std::size_t got = 0;
    return m_file.ReadAt(offset, out, size, got) && got == size;
}

bool CStoreReader::VerifyBytes(std::uint64_t offset, std::uint64_t size, std::uint64_t checksum, std::string& reason) {
    CStoreChecksum found;
    std::vector<char> buffer(static_cast<std::size_t>(std::min<std::uint64_t>(size, kVerifyStep)));
    while (size > 0) {
        auto const step = static_cast<std::size_t>(std::min<std::uint64_t>(size, buffer.size()));
        if (!ReadBytes(offset, buffer.data(), step)) {
            reason = Reason();
            return false;
        }
        found.Add(buffer.data(), step);
        offset += step;
        size -= step;
    }
    if (found.Value() == checksum) return true;
    reason = "its values are not those that were written: their checksum does not fit";
    return false;
}

bool CStoreReader::Verify(std::string& reason) {
    if (!m_layout.hasOwnSection) return true;
    CStoreStructure const& structure = m_layout.structure;
    StoreTrailer const& trailer = m_layout.trailer;
    return VerifyBytes(m_layout.columns, structure.ColumnBytes(), trailer.columnChecksum, reason) &&
           VerifyBytes(m_layout.elements, trailer.elementBytes, trailer.elementChecksum, reason);
}

bool CStoreReader::IsCurrent() const {
    struct stat opened {};
    struct stat named {};
    if (stat(m_file.Path().c_str(), &named) != 0) return true;
    return fstat(m_file.Descriptor(), &opened) == 0 && opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

std::string CStoreReader::Reason() const {
    return m_file.Error() != 0 ? SystemErrorText(m_file.Error()) : "the file was cut short while it was open";
}

}  // namespace norva
