#include "inspection/line_split.h"

#include <bit>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace norva {

namespace {

bool IsGap(char c) {
    return c == ' ' || c == '\t';
}

std::string_view TrimGaps(char const* begin, char const* end) {
    while (begin != end && IsGap(*begin)) ++begin;
    while (begin != end && IsGap(end[-1])) --end;
    return {begin, static_cast<std::size_t>(end - begin)};
}

/// Writes over the parts of the line before, of which most lines have as many.
class CPartsWriter {
public:
    explicit CPartsWriter(std::vector<CellPart>& parts) : m_parts(parts) {}
    ~CPartsWriter() { m_parts.resize(m_count); }
    CPartsWriter(CPartsWriter const&) = delete;
    CPartsWriter& operator=(CPartsWriter const&) = delete;

    void Put(std::string_view text) {
        if (m_count == m_parts.size()) m_parts.resize(m_count * 2 + 8);
        m_parts[m_count++] = {text, false, false};
    }

private:
    std::vector<CellPart>& m_parts;
    std::size_t m_count = 0;
};

void SplitAtGaps(std::string_view line, std::vector<CellPart>& parts) {
    CPartsWriter writer(parts);
    char const* next = line.data();
    char const* const end = next + line.size();
    while (true) {
        while (next != end && IsGap(*next)) ++next;
        if (next == end) return;
        char const* const begin = next;
        while (next != end && !IsGap(*next)) ++next;
        writer.Put({begin, static_cast<std::size_t>(next - begin)});
    }
}

void SplitPlain(std::string_view line, char separator, std::vector<CellPart>& parts) {
    if (separator == ' ') return SplitAtGaps(line, parts);
    CPartsWriter writer(parts);
    char const* next = line.data();
    char const* const end = next + line.size();
    char const* begin = next;
#if defined(__SSE2__)
    __m128i const wanted = _mm_set1_epi8(separator);
    for (; end - next >= 16; next += 16) {
        __m128i const bytes = _mm_loadu_si128(reinterpret_cast<__m128i const*>(next));
        auto found = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, wanted)));
        for (; found != 0; found &= found - 1) {
            char const* const at = next + std::countr_zero(found);
            writer.Put(TrimGaps(begin, at));
            begin = at + 1;
        }
    }
#endif
    for (; next != end; ++next) {
        if (*next != separator) continue;
        writer.Put(TrimGaps(begin, next));
        begin = next + 1;
    }
    writer.Put(TrimGaps(begin, end));
}

/// Cells of a line that holds quotes.
class CQuotedSplit {
public:
    CQuotedSplit(std::string_view line, SplitRule const& rule, std::vector<CellPart>& parts)
        : m_next(line.data()), m_end(line.data() + line.size()), m_rule(rule), m_parts(parts) {}

    /// True when no quote closes the last cell.
    bool Run() {
        bool const byGaps = m_rule.separator == ' ';
        while (true) {
            while (m_next != m_end && IsGap(*m_next) && *m_next != m_rule.separator) ++m_next;
            if (byGaps) {
                while (m_next != m_end && IsGap(*m_next)) ++m_next;
                if (m_next == m_end) return m_isOpen;
            }
            bool const opens = m_next != m_end && *m_next == m_rule.quote && ++m_opened != m_rule.plainQuote;
            if (opens ? !Quoted() : !Plain()) return m_isOpen;
        }
    }

private:
    bool IsSeparator(char c) const { return m_rule.separator == ' ' ? IsGap(c) : c == m_rule.separator; }

    /// Whether a cell ends at `next`, behind blanks; goes behind its separator then.
    bool Closes(char const* next) {
        if (m_rule.separator != ' ') {
            while (next != m_end && IsGap(*next) && *next != m_rule.separator) ++next;
        }
        if (next != m_end && !IsSeparator(*next)) return false;
        m_next = next;
        return true;
    }

    /// False for the last cell of the line.
    bool Quoted() {
        char const* const begin = m_next + 1;
        CellPart part{{}, true, false};
        for (char const* at = begin; at != m_end; ++at) {
            if (m_rule.backslashQuote && *at == '\\' && at + 1 != m_end && at[1] == m_rule.quote) {
                part.isEscaped = true;
                ++at;
            } else if (*at == m_rule.quote) {
                if (m_rule.doublesQuotes && at + 1 != m_end && at[1] == m_rule.quote) {
                    part.isEscaped = true;
                    ++at;
                } else if (Closes(at + 1)) {
                    part.text = {begin, static_cast<std::size_t>(at - begin)};
                    m_parts.push_back(part);
                    return Advance();
                }
            }
        }
        part.text = {begin, static_cast<std::size_t>(m_end - begin)};
        m_parts.push_back(part);
        m_next = m_end;
        m_isOpen = true;
        return false;
    }

    bool Plain() {
        char const* const begin = m_next;
        while (m_next != m_end && !IsSeparator(*m_next)) ++m_next;
        m_parts.push_back({TrimGaps(begin, m_next)});
        return Advance();
    }

    bool Advance() {
        if (m_next == m_end) return false;
        ++m_next;
        return true;
    }

    char const* m_next;
    char const* m_end;
    SplitRule const& m_rule;
    std::vector<CellPart>& m_parts;
    int m_opened = 0;
    bool m_isOpen = false;
};

}  // namespace

bool SplitLine(std::string_view line, SplitRule const& rule, std::vector<CellPart>& parts) {
    if (rule.quote == '\0' || line.empty() || std::memchr(line.data(), rule.quote, line.size()) == nullptr) {
        SplitPlain(line, rule.separator, parts);
        return false;
    }
    parts.clear();
    return CQuotedSplit(line, rule, parts).Run();
}

std::string_view PlainText(CellPart const& part, SplitRule const& rule, std::string& buffer) {
    if (!part.isEscaped) return part.text;
    buffer.clear();
    for (std::size_t i = 0; i < part.text.size(); ++i) {
        char const c = part.text[i];
        bool const hasNext = i + 1 < part.text.size();
        bool const isDoubled = rule.doublesQuotes && c == rule.quote;
        bool const isMarked = rule.backslashQuote && c == '\\';
        if (hasNext && part.text[i + 1] == rule.quote && (isDoubled || isMarked)) ++i;
        buffer += part.text[i];
    }
    return buffer;
}

}  // namespace norva
