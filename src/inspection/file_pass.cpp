#include "inspection/file_pass.h"

namespace norva {

namespace {

constexpr std::size_t kMostListed = 1000;
constexpr std::size_t kMostLabels = 1000;
constexpr std::size_t kShownText = 120;
constexpr std::size_t kMostOddTexts = 1500;
constexpr std::size_t kLongestOddText = 4096;

/// "0", "0.000", "-0.0"
bool IsZero(std::string_view text) {
    return text.find('0') != std::string_view::npos && text.find_first_not_of("-+0.,") == std::string_view::npos;
}

}  // namespace

CFilePass::CFilePass(std::size_t count, InspectionOptions const& options) : columns(count) {
    for (CColumnFacts& column : columns) column.SetMarks(&options.noData, &options.keep);
}

void CFilePass::Settle() {
    for (CColumnFacts& column : columns) column.Settle();
}

void CFilePass::List(InspectedLine line) {
    if (lines.size() < kMostListed) lines.push_back(std::move(line));
}

void CFilePass::Row(RowView const& row) {
    ++counts.rows;
    if (counts.markers == 0) ++rowsBeforeMarker;
    for (std::size_t i = 0; i < columns.size(); ++i) columns[i].Add(row.parts[i], row.reads[i], row.number);
    if (position && IsZero(row.parts[position->first].text) && IsZero(row.parts[position->second].text)) {
        if (atZero++ == 0) firstAtZero = row.number;
    }
    if (row.mend.how == RowMend::How::None) return;
    ++counts.mended;
    if (row.mend.how == RowMend::How::NextLines) {
        for (char const c : row.text) counts.continued += c == '\n' ? 1 : 0;
        --counts.mended;
        return;
    }
    List({row.number, row.number, InspectedLine::What::Mended, std::string(row.text.substr(0, kShownText)),
          MendText(row.mend, columns.size())});
}

void CFilePass::Line(LineView const& line) {
    switch (line.kind) {
        case TableLine::Marker:
            ++counts.markers;
            if (labels.size() < kMostLabels) labels.emplace_back(line.label);
            return;
        case TableLine::Comment:
            ++counts.comments;
            return;
        case TableLine::Rule:
            ++counts.rules;
            return;
        case TableLine::Blank:
            ++counts.blank;
            return;
        case TableLine::Above:
            ++counts.above;
            return;
        case TableLine::NothingAtEnd:
            ++counts.nothingAtEnd;
            return;
        case TableLine::NamesAgain:
            if (counts.namesAgain++ == 0) firstNamesAgain = line.number;
            return;
        case TableLine::Odd:
            ++counts.leftOut;
            List({line.number, line.number, InspectedLine::What::LeftOut, std::string(line.text.substr(0, kShownText)),
                  line.parts == columns.size() ? "more than half of its parts do not suit their columns"
                                               : std::to_string(line.parts) + (line.parts == 1 ? " part" : " parts") +
                                                     " where the table has " + std::to_string(columns.size())});
            break;
        case TableLine::OtherTable:
            ++counts.otherTable;
            // Blank lines and comments in between belong to the same run.
            if (m_lastOfOtherTable != 0 && !lines.empty() && lines.back().what == InspectedLine::What::OtherTable &&
                lines.back().last == m_lastOfOtherTable) {
                lines.back().last = line.number;
            } else {
                ++otherTables;
                List({line.number, line.number, InspectedLine::What::OtherTable,
                      std::string(line.text.substr(0, kShownText)),
                      "another table of " + std::to_string(line.parts) + (line.parts == 1 ? " column" : " columns")});
            }
            m_lastOfOtherTable = line.number;
            break;
    }
    if (oddTexts.size() < kMostOddTexts && line.text.size() <= kLongestOddText) oddTexts.emplace_back(line.text);
}

}  // namespace norva
