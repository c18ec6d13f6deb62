#include "inspection/label_column.h"

#include "platform/text.h"

#include <algorithm>

namespace norva {

namespace {

constexpr std::uint64_t kRowsOfRun = 5;

/// How well the name says that the column names lines: 0 best, 4 not at all.
int RankOf(std::string_view name) {
    std::string plain;
    for (char const c : ToUpper(name)) {
        if ((c >= 'A' && c <= 'Z') || IsDigit(c)) plain += c;
    }
    auto const is = [&](std::string_view word) {
        if (!plain.starts_with(word)) return false;
        std::string_view const rest = std::string_view(plain).substr(word.size());
        return rest.empty() || rest == "NO" || rest == "NUM" || rest == "NUMBER" || rest == "ID" || rest == "NAME" ||
               rest == "NR";
    };
    if (is("LINE")) return 0;
    if (is("PROFILE")) return 1;
    if (is("FLIGHTLINE")) return 2;
    return is("FLIGHT") ? 3 : 4;
}

bool HasNames(std::vector<std::string> const& names) {
    return std::any_of(names.begin(), names.end(), [](std::string const& name) { return !name.empty(); });
}

/// Whole numbers, or texts.
bool MayBeLabels(CColumnFacts const& column) {
    std::uint64_t const words = column.Count(CellKind::Number) + column.Count(CellKind::Text);
    return column.Present() > 0 && words == column.Present() && column.withDecimals == 0 && !column.hasManyLabels;
}

}  // namespace

std::vector<std::size_t> FindLabelCandidates(std::vector<std::string> const& names) {
    std::vector<std::size_t> candidates;
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (RankOf(names[i]) < 4) candidates.push_back(i);
    }
    if (!HasNames(names) && !names.empty()) candidates.push_back(0);
    return candidates;
}

int FindLabelColumn(std::vector<std::string> const& names, std::vector<CColumnFacts> const& columns,
                    std::vector<InspectionFinding>& findings) {
    std::vector<std::size_t> named;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (RankOf(names[i]) < 4 && MayBeLabels(columns[i])) named.push_back(i);
    }
    if (named.empty()) {
        if (HasNames(names) || columns.empty() || !MayBeLabels(columns[0])) return -1;
        CColumnFacts const& first = columns[0];
        bool const isRun = first.labelRuns >= 2 && first.rows >= kRowsOfRun * first.labelRuns && !first.hasLabelTwice &&
                           !first.hasOddLabel && first.Count(CellKind::Missing) == 0;
        if (!isRun) return -1;
        findings.push_back({"lines", "by column 1",
                            std::to_string(first.labelRuns) + " lines: the column keeps its value over runs of rows",
                            true, "--label-column none"});
        return 0;
    }
    std::stable_sort(named.begin(), named.end(),
                     [&](std::size_t a, std::size_t b) { return RankOf(names[a]) < RankOf(names[b]); });
    std::size_t const best = named.front();
    CColumnFacts const& column = columns[best];
    if (column.rows > 10 && column.labelRuns * 2 > column.rows) {
        findings.push_back({"lines", "one", names[best] + " changes in nearly every row: it names no lines", true,
                            "--label-column " + std::to_string(best + 1)});
        return -1;
    }
    std::string evidence = std::to_string(column.labelRuns) + (column.labelRuns == 1 ? " line" : " lines") +
                           ", by the name of column " + std::to_string(best + 1);
    bool isDoubt = false;
    if (named.size() > 1 && RankOf(names[named[1]]) == RankOf(names[best])) {
        isDoubt = true;
        evidence += "; " + names[named[1]] + " may name them as well";
    }
    if (column.hasLabelTwice) {
        isDoubt = true;
        evidence += "; " + column.labelTwice.text + " comes again in line " + std::to_string(column.labelTwice.line);
    }
    findings.push_back(
        {"lines", "by " + names[best], std::move(evidence), isDoubt, isDoubt ? "--label-column none" : ""});
    return static_cast<int>(best);
}

}  // namespace norva
