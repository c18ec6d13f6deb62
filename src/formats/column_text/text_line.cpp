#include "formats/column_text/text_line.h"

#include "platform/text.h"

#include <cstring>

namespace norva {

namespace {

bool IsLetter(char character, char upper) {
    return character == upper || character == static_cast<char>(upper + ('a' - 'A'));
}

bool IsLineWord(char const* text) {
    return IsLetter(text[0], 'L') && IsLetter(text[1], 'I') && IsLetter(text[2], 'N') && IsLetter(text[3], 'E');
}

/// First "LINE" in any case; npos for none. Rows of plain numbers hold no "L" at all, so they cost two searches for one
/// character.
std::size_t FindLineWord(std::string_view text) {
    std::size_t found = std::string_view::npos;
    for (char const letter : {'L', 'l'}) {
        // Only what stands before the other spelling's find can be earlier.
        std::size_t const limit = found == std::string_view::npos ? text.size() : found;
        std::size_t at = 0;
        while (at + 4 <= text.size() && at < limit) {
            auto const* const hit =
                static_cast<char const*>(std::memchr(text.data() + at, letter, text.size() - 3 - at));
            if (hit == nullptr) break;
            at = static_cast<std::size_t>(hit - text.data());
            if (IsLineWord(hit)) {
                if (at < limit) found = at;
                break;
            }
            ++at;
        }
    }
    return found;
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
