#include "inspection/plain_row.h"

#include "inspection/row_mending.h"

#include <algorithm>

namespace norva {

CPlainRows::CPlainRows(TextReading const& reading, std::vector<ColumnLook> const& looks, bool readsTexts)
    : m_rules(CellRulesOf(reading)),
      m_quote(reading.quote),
      m_hasQuote(reading.quote != '\0'),
      m_hasBackslash(reading.backslashQuote),
      m_isByGaps(reading.separator == ' '),
      m_readsTexts(readsTexts),
      m_mayEndInSeparator(reading.trailingSeparator) {
    for (ColumnLook const& look : looks) {
        CellKind const kind = KindOf(look.kind);
        m_columns.push_back({kind, kind == CellKind::Number && look.suffix.empty(), look.suffix});
    }
    for (char const c : {' ', '\t'}) {
        m_isGap[static_cast<unsigned char>(c)] = !m_isByGaps && c != reading.separator;
        m_endsCell[static_cast<unsigned char>(c)] = m_isByGaps;
    }
    m_endsCell[static_cast<unsigned char>(reading.separator)] = true;
    // A separator that numbers may hold would have to be looked for first.
    bool const isUsual =
        reading.separator == '\0' || std::string_view("\t;|, ").find(reading.separator) != std::string_view::npos;
    m_isUsable = !looks.empty() && isUsual && (m_hasQuote ? m_quote != reading.separator : !reading.quotesEveryRow);
    for (char const c : {'\n', '\v', '\f', '\r'}) m_startsOther[static_cast<unsigned char>(c)] = true;
    for (std::string const& mark : reading.commentMarks) {
        if (mark.empty()) {
            m_isUsable = false;
        } else {
            m_startsOther[static_cast<unsigned char>(mark.front())] = true;
        }
    }
}

bool CPlainRows::Fits(Column const& column, std::string_view text, CellRead& read) const {
    if (IsTyped(column.kind)) {
        ReadCell(text, m_rules, column.kind, column.suffix, read);
        return read.kind == column.kind || read.kind == CellKind::Missing;
    }
    if (m_readsTexts) {
        ReadCell(text, m_rules, CellKind::Number, {}, read);
    } else {
        read.kind = CellKind::Text;
    }
    return true;
}

/// The quote that closes the cell that begins behind a quote; null where the quotes have to be looked at closely.
char const* CPlainRows::EndOfQuoted(char const* begin, char const* end) const {
    for (char const* at = begin; at != end; ++at) {
        if (m_hasBackslash && *at == '\\') return nullptr;
        if (*at != m_quote) continue;
        bool const closes = at + 1 == end || EndsCell(at[1]) || IsGap(at[1]);
        return closes ? at : nullptr;
    }
    return nullptr;
}

bool CPlainRows::Read(std::string_view line, std::span<CellPart> parts, std::span<CellRead> reads) const {
    if (!m_isUsable) return false;
    char const* next = line.data();
    char const* const end = next + line.size();
    char const* first = next;
    while (first != end && (*first == ' ' || *first == '\t')) ++first;
    if (first == end || m_startsOther[static_cast<unsigned char>(*first)]) return false;
    if (m_isByGaps) next = first;
    bool hasValue = false;
    std::size_t const last = m_columns.size() - 1;
    for (std::size_t i = 0;; ++i) {
        Column const& column = m_columns[i];
        CellPart& part = parts[i];
        CellRead& read = reads[i];
        part.isQuoted = false;
        part.isEscaped = false;
        while (next != end && (m_isByGaps ? EndsCell(*next) : IsGap(*next))) ++next;
        char const* const begin = next;
        char const* after =
            column.isPlainNumber && next != end ? ScanPlainNumber(next, end, m_rules.marks, read.number) : nullptr;
        if (after != nullptr) {
            part.text = {begin, static_cast<std::size_t>(after - begin)};
            next = after;
            while (next != end && IsGap(*next)) ++next;
            if (next == end || EndsCell(*next)) {
                read.kind = CellKind::Number;
                hasValue = true;
            } else {
                after = nullptr;
                next = begin;
            }
        }
        if (after == nullptr) {
            if (m_hasQuote && next != end && *next == m_quote) {
                char const* const close = EndOfQuoted(next + 1, end);
                if (close == nullptr) return false;
                part.text = {next + 1, static_cast<std::size_t>(close - next - 1)};
                part.isQuoted = true;
                next = close + 1;
                while (next != end && IsGap(*next)) ++next;
                if (next != end && !EndsCell(*next)) return false;
            } else {
                while (next != end && !EndsCell(*next)) {
                    if (m_hasQuote && *next == m_quote) return false;
                    ++next;
                }
                char const* stop = next;
                while (stop != begin && IsGap(stop[-1])) --stop;
                part.text = {begin, static_cast<std::size_t>(stop - begin)};
                if (m_isByGaps && stop == begin) return false;
            }
            if (!Fits(column, part.text, read)) return false;
            hasValue = hasValue || (IsTyped(column.kind) && read.kind != CellKind::Missing);
        }
        if (i == last) break;
        if (next == end) return false;
        ++next;
    }
    if (m_isByGaps) {
        while (next != end && EndsCell(*next)) ++next;
    } else if (next != end && m_mayEndInSeparator) {
        ++next;
        while (next != end && IsGap(*next)) ++next;
    }
    return next == end && hasValue;
}

}  // namespace norva
