#include "formats/column_text/text_line.h"

#include "platform/text.h"

#include <cstring>

namespace norva {

namespace {

bool IsLetter(char character, char upper) {
    return character == upper || character == static_cast<char>(upper + ('a' - 'A'));
}

/// First "LINE" at or after `from`, in any case; npos for none. Rows of plain numbers hold no "L" at all, so they
/// cost two searches for one character.
std::size_t FindLineWord(std::string_view text, std::size_t from) {
    std::size_t found = std::string_view::npos;
    for (char const letter : {'L', 'l'}) {
        // Only what stands before the other spelling's find can be earlier.
        std::size_t const limit = found == std::string_view::npos ? text.size() : found;
        std::size_t at = from;
        while (at + 4 <= text.size() && at < limit) {
            auto const* const hit =
                static_cast<char const*>(std::memchr(text.data() + at, letter, text.size() - 3 - at));
            if (hit == nullptr) break;
            at = static_cast<std::size_t>(hit - text.data());
            if (IsLetter(hit[1], 'I') && IsLetter(hit[2], 'N') && IsLetter(hit[3], 'E')) {
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
    return FindLineWord(text, 0) != std::string_view::npos;
}

bool HoldsSpacedLineWord(std::string_view text) {
    for (std::size_t at = FindLineWord(text, 0); at != std::string_view::npos; at = FindLineWord(text, at + 4)) {
        if (at + 4 == text.size()) return false;
        char const next = text[at + 4];
        if (next == ' ' || next == '\t' || next == '\n') return true;
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
