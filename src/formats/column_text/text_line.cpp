#include "formats/column_text/text_line.h"

#include "platform/text.h"

#include <cstdint>
#include <cstring>

namespace norva {

namespace {

bool IsLetter(char character, char upper) {
    return character == upper || character == static_cast<char>(upper + ('a' - 'A'));
}

bool IsLineWord(char const* text) {
    return IsLetter(text[0], 'L') && IsLetter(text[1], 'I') && IsLetter(text[2], 'N') && IsLetter(text[3], 'E');
}

/// First "L" or "l" from `at` on; the text's size for none. Every line of a file is searched, and two searches for one
/// character each cost three times as much.
std::size_t FindL(std::string_view text, std::size_t at) {
    constexpr std::uint64_t kOnes = 0x0101010101010101;
    auto const holdsOne = [&text](std::size_t from) {
        std::uint64_t bytes = 0;
        std::memcpy(&bytes, text.data() + from, sizeof bytes);
        std::uint64_t const off = (bytes | kOnes * 0x20) ^ (kOnes * 'l');  // 0 in a byte that is one
        return ((off - kOnes) & ~off & (kOnes * 0x80)) != 0;
    };
    constexpr std::size_t kStep = sizeof(std::uint64_t);
    if (text.size() >= kStep) {
        while (at + kStep <= text.size() && !holdsOne(at)) at += kStep;
        bool const isTail = at + kStep > text.size();
        if (isTail && !holdsOne(text.size() - kStep)) return text.size();
    }
    while (at < text.size() && !IsLetter(text[at], 'L')) ++at;
    return at;
}

/// First "LINE" in any case; npos for none.
std::size_t FindLineWord(std::string_view text) {
    for (std::size_t at = FindL(text, 0); at + 4 <= text.size(); at = FindL(text, at + 1)) {
        if (IsLineWord(text.data() + at)) return at;
    }
    return std::string_view::npos;
}

}  // namespace

bool HoldsLineWord(std::string_view text) {
    return FindLineWord(text) != std::string_view::npos;
}

bool HoldsSpacedLineWord(std::string_view text) {
    std::size_t at = FindLineWord(text);
    if (at == std::string_view::npos) return false;
    for (; at + 4 < text.size(); ++at) {
        char const next = text[at + 4];
        if ((next == ' ' || next == '\t' || next == '\n') && IsLineWord(text.data() + at)) return true;
    }
    return false;
}

LineKind ClassifyLine(std::string_view& line) {
    auto const isBlank = [](char character) { return static_cast<unsigned char>(character) <= ' '; };
    if (!line.empty() && (isBlank(line.front()) || isBlank(line.back()))) line = Trim(line);
    if (line.empty()) return LineKind::Empty;
    if (IsCommentLine(line)) return LineKind::Comment;
    return HoldsLineWord(line) ? LineKind::Marker : LineKind::Data;
}

}  // namespace norva
