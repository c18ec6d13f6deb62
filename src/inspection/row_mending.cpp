#include "inspection/row_mending.h"

#include <algorithm>
#include <cmath>

namespace norva {

namespace {

constexpr double kLeastFit = 0.5;
constexpr double kMissingFit = 0.4;
constexpr int kMostPlainQuotes = 24;
constexpr std::string_view kSeparators = "\t;|, ";

bool HasAny(std::string_view text, std::string_view characters) {
    return text.find_first_of(characters) != std::string_view::npos;
}

}  // namespace

std::string MendText(RowMend const& mend, std::size_t width) {
    std::string const place = std::to_string(mend.place);
    std::string const counts = std::to_string(width) + " parts needed, " + std::to_string(mend.found) + " found: ";
    switch (mend.how) {
        case RowMend::How::QuotesNotDoubled:
            return "quotes inside of a quoted text are not doubled";
        case RowMend::How::PlainQuote:
            return "a quote without its partner is read as it stands";
        case RowMend::How::PlainQuotes:
            return "quotes without partners are read as they stand";
        case RowMend::How::OtherSeparator:
            return counts + "read with another separator";
        case RowMend::How::SurplusSeparator:
            return counts + "one separator too many before part " + place + ", read without it";
        case RowMend::How::LackingPart:
            return counts + "part " + place + " is missing";
        case RowMend::How::Shorter:
            return counts + "the last ones are missing";
        case RowMend::How::NextLines:
            return "a quoted text goes on in the next line";
        default:
            return {};
    }
}

SplitRule SplitRuleOf(TextReading const& reading) {
    SplitRule rule;
    rule.separator = reading.separator;
    rule.quote = reading.quote;
    rule.backslashQuote = reading.backslashQuote;
    return rule;
}

CellRules CellRulesOf(TextReading const& reading) {
    return {reading.separator == ',' ? DecimalMarks::Point : DecimalMarks::Both, reading.separator != ' '};
}

CRowMender::CRowMender(TextReading const& reading, std::vector<ColumnLook> const& looks)
    : m_reading(reading),
      m_looks(looks),
      m_rule(SplitRuleOf(reading)),
      m_cells(CellRulesOf(reading)),
      m_width(looks.size()) {}

double CRowMender::FitOf(CellPart const& part, std::size_t column) {
    ColumnLook const& look = m_looks[column];
    CellKind const kind = KindOf(look.kind);
    if (kind == CellKind::Missing) return part.text.empty() ? 1 : kMissingFit;
    if (kind == CellKind::Text) return FitOfText(part, look);
    ReadCell(part.text, m_cells, kind, look.suffix, m_read);
    return m_read.kind == kind ? 1 : m_read.kind == CellKind::Missing ? kMissingFit : 0;
}

/// One for a text that looks like the column's others, half for one that does not.
double CRowMender::FitOfText(CellPart const& part, ColumnLook const& look) const {
    if (part.text.empty()) return look.usualLength == 0 ? 1 : 0.75;
    double fit = 0.5;
    auto const length = static_cast<double>(part.text.size());
    double const usual = std::max(1, look.usualLength);
    fit += 0.2 * std::min(length, usual) / std::max(length, usual);
    if (HasAny(part.text, " ") == look.hasBlanks) fit += 0.1;
    if (HasAny(part.text, "0123456789") == look.hasDigits) fit += 0.1;
    bool const strayQuote =
        !part.isQuoted && m_rule.quote != '\0' && part.text.find(m_rule.quote) != std::string_view::npos;
    if (part.isQuoted == look.isQuoted && !strayQuote) fit += 0.1;
    return fit;
}

bool CRowMender::SuitsTyped(std::vector<CellPart> const& parts, bool everyOne) {
    std::size_t typed = 0;
    std::size_t fitting = 0;
    std::size_t misfits = 0;
    for (std::size_t i = 0; i < m_width; ++i) {
        if (!IsTyped(KindOf(m_looks[i].kind))) continue;
        ++typed;
        double const fit = FitOf(parts[i], i);
        if (fit == 1) ++fitting;
        if (fit == 0) ++misfits;
    }
    return typed == 0 ? !everyOne : fitting > 0 && (everyOne ? misfits == 0 : misfits * 2 <= typed);
}

void CRowMender::Try(double cost, RowMend const& mend) {
    double fit = 0;
    for (std::size_t i = 0; i < m_width; ++i) fit += FitOf(m_parts[i], i);
    double const worth = fit / static_cast<double>(m_width) - cost;
    if (worth <= m_best.worth || !SuitsTyped(m_parts, mend.how == RowMend::How::OtherSeparator)) return;
    m_best.worth = worth;
    m_best.mend = mend;
    m_best.parts = m_parts;
}

/// m_parts as they are, or with parts put in or left out so that there are as many as columns.
void CRowMender::TryCounts(std::string_view line, double cost, RowMend mend) {
    bool const isOpen = SplitLine(line, m_rule, m_parts);
    if (isOpen) return;
    if (m_reading.trailingSeparator && m_parts.size() == m_width + 1 && m_parts.back().text.empty()) m_parts.pop_back();
    if (m_parts.size() == m_width) Try(cost, mend);
}

void CRowMender::TryWithoutEmpty() {
    // Cells behind the place stand one column further left.
    std::vector<CellPart> const all = m_parts;
    m_left.assign(m_width + 1, 0);
    m_right.assign(m_width + 2, 0);
    for (std::size_t i = 0; i < m_width; ++i) m_left[i + 1] = m_left[i] + FitOf(all[i], i);
    for (std::size_t i = m_width + 1; i-- > 1;)
        m_right[i] = m_right[i + 1 > m_width ? m_width + 1 : i + 1] + FitOf(all[i], i - 1);
    std::size_t best = all.size();
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (!all[i].text.empty() || all[i].isQuoted) continue;
        if (best == all.size() || m_left[i] + m_right[i + 1] > m_left[best] + m_right[best + 1]) best = i;
    }
    if (best == all.size()) return;
    m_parts.erase(m_parts.begin() + static_cast<std::ptrdiff_t>(best));
    Try(0.02, {RowMend::How::SurplusSeparator, static_cast<int>(best) + 1, '\0', all.size()});
}

void CRowMender::TryLackingPart() {
    std::vector<CellPart> const all = m_parts;
    m_left.assign(m_width + 1, 0);
    m_right.assign(m_width + 1, 0);
    for (std::size_t i = 0; i + 1 < m_width; ++i) m_left[i + 1] = m_left[i] + FitOf(all[i], i);
    for (std::size_t i = m_width - 1; i-- > 0;) m_right[i] = m_right[i + 1] + FitOf(all[i], i + 1);
    CellPart const none{};
    std::size_t best = m_width - 1;
    double bestFit = -1;
    // From the end: where nothing else tells, a row was cut short.
    for (std::size_t i = m_width; i-- > 0;) {
        double const fit = m_left[i] + FitOf(none, i) + m_right[i];
        if (fit <= bestFit + 1e-9) continue;
        bestFit = fit;
        best = i;
    }
    m_parts.insert(m_parts.begin() + static_cast<std::ptrdiff_t>(best), none);
    Try(0.02, {RowMend::How::LackingPart, static_cast<int>(best) + 1, '\0', all.size()});
}

void CRowMender::TryShorter() {
    std::size_t const found = m_parts.size();
    m_parts.resize(m_width);
    Try(0.03, {RowMend::How::Shorter, 0, '\0', found});
}

bool CRowMender::Mend(std::string_view line, std::vector<CellPart>& parts, RowMend& mend) {
    m_best.worth = kLeastFit - 1e-9;
    m_best.mend = {};
    m_best.parts.clear();
    m_rule = SplitRuleOf(m_reading);
    bool const hasQuote = m_rule.quote != '\0' && line.find(m_rule.quote) != std::string_view::npos;

    TryCounts(line, 0, {});
    std::size_t const found = m_parts.size();
    if (hasQuote) {
        m_rule.doublesQuotes = false;
        TryCounts(line, 0.01, {RowMend::How::QuotesNotDoubled, 0, '\0', found});
        m_rule.doublesQuotes = true;
        auto const quotes = static_cast<int>(std::count(line.begin(), line.end(), m_rule.quote));
        for (int k = 1; k < kMostPlainQuotes && k <= quotes; ++k) {
            m_rule.plainQuote = k;
            TryCounts(line, 0.02, {RowMend::How::PlainQuote, k, '\0', found});
        }
        m_rule.plainQuote = 0;
        char const quote = m_rule.quote;
        m_rule.quote = '\0';
        TryCounts(line, 0.04, {RowMend::How::PlainQuotes, 0, '\0', found});
        m_rule.quote = quote;
    }
    for (char const separator : kSeparators) {
        if (separator == m_reading.separator) continue;
        m_rule.separator = separator;
        TryCounts(line, 0.05, {RowMend::How::OtherSeparator, 0, separator, found});
    }
    m_rule.separator = m_reading.separator;
    SplitLine(line, m_rule, m_parts);
    if (m_parts.size() == m_width + 1) {
        TryWithoutEmpty();
    } else if (m_parts.size() + 1 == m_width && !m_parts.empty()) {
        TryLackingPart();
    } else if (m_parts.size() < m_width && m_parts.size() * 2 >= m_width && m_reading.separator != ' ') {
        TryShorter();
    }
    if (m_best.parts.empty()) return false;
    m_best.mend.found = found;
    parts = m_best.parts;
    mend = m_best.mend;
    return true;
}

}  // namespace norva
