#pragma once

#include <array>
#include <cstddef>
#include <string_view>
#include <vector>

namespace norva {

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

/// Replaces `tokens` by those of the text, which they are views into.
inline void GetTokens(std::string_view text, std::vector<std::string_view>& tokens, CDelimiters const& delimiters) {
    tokens.clear();
    CTokenCursor cursor(text, delimiters);
    for (std::string_view token; cursor.Next(token);) tokens.push_back(token);
}

}  // namespace norva
