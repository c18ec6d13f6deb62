#include "platform/text.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace norva {

namespace {

constexpr char UpperOf(char c) {
    unsigned const letter = static_cast<unsigned char>(c) - static_cast<unsigned>('a');
    return letter < 26U ? static_cast<char>(c - ('a' - 'A')) : c;
}

/// Most values have four to eight characters, which two moves that may overlap copy without a call.
inline void CopyShort(char* to, char const* from, std::size_t size) {
    constexpr std::size_t half = 4;
    if (size < half || size > 2 * half) {
        std::copy_n(from, size, to);
        return;
    }
    std::memcpy(to, from, half);
    std::memcpy(to + size - half, from + size - half, half);
}

}  // namespace

std::string_view TrimLeft(std::string_view text) {
    std::size_t first = 0;
    while (first < text.size() && IsBlank(text[first])) {
        ++first;
    }
    return text.substr(first);
}

std::string_view TrimRight(std::string_view text) {
    std::size_t size = text.size();
    while (size > 0 && IsBlank(text[size - 1])) {
        --size;
    }
    return text.substr(0, size);
}

std::string_view Trim(std::string_view text) {
    return TrimLeft(TrimRight(text));
}

std::string_view TrimOf(std::string_view text, std::string_view characters) {
    std::size_t const first = text.find_first_not_of(characters);
    if (first == std::string_view::npos) {
        return text.substr(text.size());
    }
    return text.substr(first, text.find_last_not_of(characters) - first + 1);
}

std::string ToUpper(std::string_view text) {
    std::string out;
    ToUpper(text, out);
    return out;
}

void ToUpper(std::string_view text, std::string& out) {
    out.resize(text.size());
    std::transform(text.begin(), text.end(), out.begin(), UpperOf);
}

std::string ReplaceAll(std::string_view text, std::string_view from, std::string_view to) {
    std::string out;
    if (from.empty()) {
        out = text;
        return out;
    }
    out.reserve(text.size());
    std::size_t done = 0;
    for (std::size_t at = text.find(from); at != std::string_view::npos; at = text.find(from, done)) {
        out.append(text, done, at - done);
        out.append(to);
        done = at + from.size();
    }
    out.append(text, done);
    return out;
}

void AppendRightAligned(std::string& out, std::string_view text, std::size_t width) {
    if (text.size() < width) {
        out.append(width - text.size(), ' ');
    }
    out.append(text);
}

void AppendRightAligned(std::string& out, std::span<TextField const> fields) {
    std::size_t const start = out.size();
    std::size_t length = 0;
    for (TextField const& field : fields) {
        length += std::max(field.width, field.text.size());
    }
    out.append(length, ' ');
    char* end = out.data() + start;
    for (TextField const& field : fields) {
        std::size_t const size = field.text.size();
        end += std::max(field.width, size);
        CopyShort(end - size, field.text.data(), size);
    }
}

}  // namespace norva
