#include "inspection/plain_row.h"

#include "inspection/row_mending.h"

#include <algorithm>
#include <cstring>

namespace norva {

namespace {

/// The last characters of a line, with room behind them for numbers to be scanned in blocks.
class CLineTail {
public:
    explicit CLineTail(std::string_view line) : m_end(line.data() + line.size()) {
        std::size_t const size = std::min(line.size(), kKept);
        std::memset(m_text + kKept, 0, kPlainNumberRoom);
        if (size == kKept) {
            std::memcpy(m_text, m_end - kKept, kKept);
        } else {
            std::memcpy(m_text + kKept - size, m_end - size, size);
        }
    }
    /// The same place in the copy.
    char const* At(char const* place) const { return m_text + kKept - (m_end - place); }
    char const* End() const { return m_text + sizeof m_text; }

private:
    static constexpr std::size_t kKept = 32;
    static_assert(kKept >= static_cast<std::size_t>(kPlainNumberRoom));

    char const* m_end;
    char m_text[kKept + kPlainNumberRoom];
};

}  // namespace

CPlainRows::CPlainRows(TextReading const& reading, std::vector<ColumnLook> const& looks, RowsFor purpose)
    : m_rules(CellRulesOf(reading)),
      m_quote(reading.quote),
      m_hasQuote(reading.quote != '\0'),
      m_hasBackslash(reading.backslashQuote),
      m_isByGaps(reading.separator == ' '),
      m_isForFacts(purpose == RowsFor::Facts),
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
    if (m_isForFacts) {
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
    CLineTail const tail(line);
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
        char const* after = nullptr;
        if (column.isPlainNumber) {
            if (end - begin >= kPlainNumberRoom) {
                after = ScanNumber(begin, end, read.number);
            } else if (begin != end) {
                char const* const copy = tail.At(begin);
                after = ScanNumber(copy, tail.End(), read.number);
                if (after != nullptr) after = begin + (after - copy);
            }
        }
        if (after != nullptr) {
            next = after;
            while (next != end && IsGap(*next)) ++next;
            if (next == end || EndsCell(*next)) {
                part.text = {begin, static_cast<std::size_t>(after - begin)};
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
