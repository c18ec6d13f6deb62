#include "inspection/table_reader.h"

#include "inspection/line_kind.h"
#include "platform/text.h"

#include <algorithm>
#include <map>

namespace norva {

namespace {

constexpr std::size_t kMostJoined = 20;
constexpr std::size_t kMostJoinedBytes = 64 * 1024;
/// So many odd rows in a row are looked at together: they may be another table.
constexpr std::size_t kRunOfOdd = 5;
constexpr std::size_t kMostHeld = 4096;
/// Behind so many odd rows in sequence no further one is mended, so that a file of nothing else stays cheap.
constexpr std::size_t kMostMendedInRow = 1000;

}  // namespace

CTableReader::CTableReader(TextReading const& reading, std::vector<ColumnLook> const& looks, RowsFor purpose,
                           IRowSink& sink)
    : m_reading(reading),
      m_looks(looks),
      m_sink(sink),
      m_rule(SplitRuleOf(reading)),
      m_cells(CellRulesOf(reading)),
      m_mender(reading, looks),
      m_plainRows(reading, looks, purpose),
      m_isForFacts(purpose == RowsFor::Facts) {
    for (ColumnLook const& look : looks) {
        m_kinds.push_back(KindOf(look.kind));
        if (IsTyped(m_kinds.back())) ++m_typed;
    }
    m_reads.resize(looks.size());
}

void CTableReader::Feed(std::string_view line, std::uint64_t number) {
    if (FeedPlain(line, number)) return;
    std::string_view const text = Trim(line);
    if (!m_open.empty()) {
        if (GoesOnWith(line, number)) return;
    }
    if (text.empty()) return GiveLine(TableLine::Blank, line, number);
    if (IsComment(text, m_reading.commentMarks)) return GiveLine(TableLine::Comment, line, number);
    if (number < m_reading.firstDataLine) {
        std::string_view label;
        if (number >= m_reading.firstMarkerLine && IsMarker(text, m_reading.markerWords, label)) {
            return GiveLine(TableLine::Marker, line, number, 0, label);
        }
        return GiveLine(IsRule(text) ? TableLine::Rule : TableLine::Above, line, number);
    }
    FeedTable(line, number, true);
}

/// Gives the line where nothing around it has to be looked at and nothing in it is odd.
bool CTableReader::FeedPlain(std::string_view line, std::uint64_t number) {
    if (number < m_reading.firstDataLine || !m_open.empty() || !m_held.empty() || m_inOtherTable) return false;
    m_parts.resize(m_looks.size());
    if (!m_plainRows.Read(line, m_parts, m_reads)) return false;
    m_oddInRow = 0;
    GiveRow(line, number, {});
    return true;
}

void CTableReader::FeedTable(std::string_view line, std::uint64_t number, bool canJoin) {
    bool const isOpen = SplitLine(line, m_rule, m_parts);
    std::size_t const width = m_looks.size();
    if (m_reading.trailingSeparator && m_parts.size() == width + 1 && m_parts.back().text.empty()) m_parts.pop_back();
    // Lines of blanks alone do not come here.
    char const first = line[std::min(line.find_first_not_of(" \t"), line.size() - 1)];
    bool const mayBeRule = !IsDigit(first) && std::string_view("=-_*~+").find(first) != std::string_view::npos;
    if (mayBeRule && IsRule(line) && !IsRowOfMarks()) return GiveLine(TableLine::Rule, line, number);
    if (m_parts.size() == width && !isOpen) {
        if (IsNothing() && width > 1) {
            m_held.push_back({std::string(line), number, width, true});
            if (m_held.size() > kMostHeld) Release(false);
            return;
        }
        if (ReadRow() && !(m_reading.quotesEveryRow && HasStrayQuote())) {
            std::string_view label;
            bool const mayBeNames = m_misfits > 0 || m_typed == 0;
            if (mayBeNames && !m_reading.headerText.empty() && Trim(line) == m_reading.headerText) {
                return GiveLine(TableLine::NamesAgain, line, number);
            }
            if (m_misfits > 0 && IsMarker(line, m_reading.markerWords, label)) {
                Release(false);
                return GiveLine(TableLine::Marker, line, number, 0, label);
            }
            if (!m_held.empty() || m_inOtherTable) {
                Release(false);
                // Releasing may have used the parts.
                SplitLine(line, m_rule, m_parts);
                if (m_parts.size() > width) m_parts.pop_back();
                ReadRow();
            }
            m_inOtherTable = false;
            m_oddInRow = 0;
            return GiveRow(line, number, {});
        }
    }
    if (!m_reading.headerText.empty() && Trim(line) == m_reading.headerText) {
        return GiveLine(TableLine::NamesAgain, line, number);
    }
    std::string_view label;
    if (IsMarker(line, m_reading.markerWords, label)) {
        Release(false);
        return GiveLine(TableLine::Marker, line, number, 0, label);
    }
    if (isOpen && canJoin) {
        m_open.push_back({std::string(line), number, 0, false});
        m_joined = line;
        return;
    }
    HoldOdd(line, number, m_parts.size());
}

/// Whether the line belongs to the row whose quoted text is still open. When it does not, the lines so far are taken
/// one by one.
bool CTableReader::GoesOnWith(std::string_view line, std::uint64_t number) {
    std::size_t const width = m_looks.size();
    bool const isRow = !SplitLine(line, m_rule, m_parts) && m_parts.size() == width && ReadRow();
    if (isRow || m_open.size() >= kMostJoined || m_joined.size() + line.size() > kMostJoinedBytes) {
        GiveUpJoining();
        return false;
    }
    m_joined += '\n';
    m_joined += line;
    bool const isOpen = SplitLine(m_joined, m_rule, m_parts);
    if (isOpen && m_parts.size() <= width) {
        m_open.push_back({std::string(line), number, 0, false});
        return true;
    }
    if (isOpen || m_parts.size() != width || !ReadRow()) {
        GiveUpJoining();
        return false;
    }
    std::uint64_t const first = m_open.front().number;
    m_open.clear();
    std::string const joined = m_joined;
    Release(false);
    SplitLine(joined, m_rule, m_parts);
    ReadRow();
    GiveRow(joined, first, {RowMend::How::NextLines, 0, '\0', width});
    return true;
}

void CTableReader::GiveUpJoining() {
    std::vector<Held> const lines = std::move(m_open);
    m_open.clear();
    for (Held const& line : lines) {
        if (Trim(line.text).empty()) {
            GiveLine(TableLine::Blank, line.text, line.number);
        } else {
            FeedTable(line.text, line.number, false);
        }
    }
}

/// Reads m_parts; false when too many do not fit their columns.
bool CTableReader::ReadRow() {
    m_misfits = 0;
    for (std::size_t i = 0; i < m_parts.size(); ++i) {
        CellKind const kind = m_kinds[i];
        CellRead& read = m_reads[i];
        if (kind == CellKind::Number && m_looks[i].suffix.empty() &&
            ScanNumberText(m_parts[i].text, m_cells.marks, read.number) &&
            read.number.length == m_parts[i].text.size()) {
            // Most cells of most files.
            read.kind = CellKind::Number;
        } else if (IsTyped(kind)) {
            ReadCell(m_parts[i].text, m_cells, kind, m_looks[i].suffix, read);
            if (read.kind != kind && read.kind != CellKind::Missing) ++m_misfits;
        } else if (m_isForFacts) {
            ReadCell(m_parts[i].text, m_cells, CellKind::Number, {}, read);
        } else {
            read.kind = CellKind::Text;
        }
    }
    return m_misfits * 2 <= m_typed;
}

bool CTableReader::IsNothing() const {
    return m_parts.front().text.empty() && std::all_of(m_parts.begin(), m_parts.end(), [](CellPart const& part) {
               return part.text.empty() && !part.isQuoted;
           });
}

bool CTableReader::HasStrayQuote() const {
    return std::any_of(m_parts.begin(), m_parts.end(), [&](CellPart const& part) {
        return !part.isQuoted && part.text.find(m_rule.quote) != std::string_view::npos;
    });
}

/// "--  --  --" among three columns is a row without values, and no rule.
bool CTableReader::IsRowOfMarks() {
    if (m_parts.size() != m_looks.size() || m_parts.size() < 2) return false;
    MissingMark mark{};
    return std::all_of(m_parts.begin(), m_parts.end(),
                       [&](CellPart const& part) { return IsMissingMark(part.text, mark); });
}

void CTableReader::HoldOdd(std::string_view line, std::uint64_t number, std::size_t parts) {
    ++m_oddInRow;
    if (m_inOtherTable) return GiveLine(TableLine::OtherTable, line, number, parts);
    if (m_oddInRow > kMostMendedInRow) {
        Release(false);
        return GiveLine(TableLine::Odd, line, number, parts);
    }
    m_held.push_back({std::string(line), number, parts, false});
    std::map<std::size_t, std::size_t> widths;
    std::size_t odd = 0;
    for (Held const& held : m_held) {
        if (held.isNothing) continue;
        ++odd;
        if (held.parts != m_looks.size()) ++widths[held.parts];
    }
    if (odd < kRunOfOdd) return;
    auto const most = std::max_element(widths.begin(), widths.end(),
                                       [](auto const& a, auto const& b) { return a.second < b.second; });
    if (most == widths.end() || most->second * 10 < odd * 6) {
        if (odd >= 4 * kRunOfOdd) Release(false);
        return;
    }
    m_inOtherTable = true;
    for (Held const& held : m_held) {
        GiveLine(held.isNothing ? TableLine::NothingAtEnd : TableLine::OtherTable, held.text, held.number, held.parts);
    }
    m_held.clear();
}

/// Gives what was held until the run of odd rows ended.
void CTableReader::Release(bool isEnd) {
    std::deque<Held> const all = std::move(m_held);
    m_held.clear();
    std::size_t last = all.size();
    if (isEnd) {
        // Rows of nothing that no row follows are left out. Odd lines that cannot be mended do not count.
        RowMend mend;
        while (last > 0 && (all[last - 1].isNothing || !m_mender.Mend(all[last - 1].text, m_parts, mend))) --last;
    }
    for (std::size_t i = 0; i < all.size(); ++i) {
        Held const& held = all[i];
        if (!held.isNothing) {
            GiveOdd(held);
        } else if (i < last) {
            m_parts.assign(m_looks.size(), {});
            ReadRow();
            GiveRow(held.text, held.number, {});
        } else {
            GiveLine(TableLine::NothingAtEnd, held.text, held.number, held.parts);
        }
    }
}

void CTableReader::GiveOdd(Held const& held) {
    RowMend mend;
    if (!m_mender.Mend(held.text, m_parts, mend)) {
        return GiveLine(TableLine::Odd, held.text, held.number, held.parts);
    }
    ReadRow();
    GiveRow(held.text, held.number, mend);
}

void CTableReader::GiveRow(std::string_view line, std::uint64_t number, RowMend const& mend) {
    m_sink.Row({number, line, m_parts, m_reads, mend});
}

void CTableReader::GiveLine(TableLine kind, std::string_view line, std::uint64_t number, std::size_t parts,
                            std::string_view label) {
    m_sink.Line({kind, number, line, label, parts});
}

void CTableReader::Finish() {
    if (!m_open.empty()) GiveUpJoining();
    Release(true);
}

}  // namespace norva
