#pragma once

#include <array>
#include <cstring>
#include <string_view>

/// Lines of column text: what kind each is, and its tokens.
namespace norva {

enum class LineKind {
    Empty,
    Comment,  ///< begins with "/" or "\"
    Marker,   ///< any other line that holds "LINE"
    Data,
};

/// Whether the line begins with "/" or "\".
inline bool IsCommentLine(std::string_view line) {
    return !line.empty() && (line.front() == '/' || line.front() == '\\');
}

/// Whether "LINE" stands anywhere in the text, in any case.
bool HoldsLineWord(std::string_view text);
/// The same, followed by a space, a tab or a line feed.
bool HoldsSpacedLineWord(std::string_view text);

/// Trims the line of white space at both ends and tells its kind.
LineKind ClassifyLine(std::string_view& line);

/// Characters that separate tokens.
class CDelimiters {
public:
    explicit constexpr CDelimiters(std::string_view characters) {
        for (char const character : characters) m_is[static_cast<unsigned char>(character)] = true;
    }
    bool Has(char character) const { return m_is[static_cast<unsigned char>(character)]; }

private:
    std::array<bool, 256> m_is{};
};

/// Delimiters of data rows: a CSV file's values may hold spaces.
inline constexpr CDelimiters kRowDelimiters{" ,\t\n"};
inline constexpr CDelimiters kCsvRowDelimiters{",\t\n"};

/// Walks over the tokens of a line without storing them; adjacent delimiters give no empty token.
class CTokenCursor {
public:
    CTokenCursor(std::string_view line, CDelimiters const& delimiters)
        : m_next(line.data()), m_end(line.data() + line.size()), m_delimiters(&delimiters) {}

    bool Next(std::string_view& token) {
        while (m_next != m_end && m_delimiters->Has(*m_next)) ++m_next;
        if (m_next == m_end) return false;
        char const* const begin = m_next;
        while (m_next != m_end && !m_delimiters->Has(*m_next)) ++m_next;
        token = {begin, static_cast<std::size_t>(m_next - begin)};
        return true;
    }

private:
    char const* m_next;
    char const* m_end;
    CDelimiters const* m_delimiters;
};

}  // namespace norva
