#include "inspection/header_search.h"

#include "inspection/line_kind.h"
#include "inspection/line_split.h"
#include "inspection/row_mending.h"
#include "inspection/unit_words.h"
#include "platform/text.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <set>

namespace norva {

namespace {

using Names = std::vector<std::string>;

Names TextsOf(std::vector<CellPart> const& parts) {
    Names names;
    for (CellPart const& part : parts) names.emplace_back(Trim(part.text));
    return names;
}

Names SplitAtWideGaps(std::string_view line) {
    Names names;
    line = Trim(line);
    while (!line.empty()) {
        std::size_t const end = std::min(line.find("  "), line.find('\t'));
        names.emplace_back(Trim(line.substr(0, end)));
        if (end == std::string_view::npos) break;
        line = TrimLeft(line.substr(end));
    }
    return names;
}

/// "LINE---STATION---ALT." at runs of hyphens.
Names SplitAtHyphens(std::string_view line) {
    Names names;
    while (true) {
        line.remove_prefix(std::min(line.find_first_not_of("- \t"), line.size()));
        if (line.empty()) return names;
        std::size_t end = line.find("--");
        end = std::min(end, line.size());
        names.emplace_back(Trim(line.substr(0, end)));
        line.remove_prefix(end);
    }
}

bool LooksTyped(std::string_view text) {
    CellRead read;
    ReadCell(text, {DecimalMarks::Both, true}, CellKind::Number, {}, read);
    return read.kind >= CellKind::Number;
}

class CHeaderSearch {
public:
    CHeaderSearch(Sample const& sample, TextReading const& reading, std::vector<ColumnLook>& looks)
        : m_sample(sample),
          m_reading(reading),
          m_looks(looks),
          m_rule(SplitRuleOf(reading)),
          m_cells(CellRulesOf(reading)) {}

    HeaderChoice Run(std::optional<std::uint64_t> told) {
        if (told) {
            TakeTold(static_cast<std::size_t>(*told));
            return m_choice;
        }
        bool const isTyped = std::any_of(m_looks.begin(), m_looks.end(),
                                         [](ColumnLook const& look) { return IsTyped(KindOf(look.kind)); });
        std::size_t const first = isTyped ? FirstTypedRow() : FirstRowOfTexts();
        FindNames(first);
        PlaceData(first);
        return m_choice;
    }

private:
    bool IsSkipped(std::string_view line) const {
        std::string_view const text = Trim(line);
        std::string_view label;
        if (text.empty() || IsRule(text) || IsMarker(text, m_reading.markerWords, label)) return true;
        if (!IsComment(text, m_reading.commentMarks)) return false;
        std::string_view const rest = WithoutMark(text);
        return rest.empty() || IsRule(rest);
    }

    std::string_view WithoutMark(std::string_view text) const {
        while (IsComment(text, m_reading.commentMarks)) text = TrimLeft(Trim(text).substr(1));
        return Trim(text);
    }

    bool IsData(std::string_view line) {
        if (IsComment(line, m_reading.commentMarks) || SplitLine(line, m_rule, m_parts) ||
            m_parts.size() != m_looks.size()) {
            return false;
        }
        std::size_t typed = 0;
        std::size_t fitting = 0;
        std::size_t other = 0;
        CellRead read;
        for (std::size_t i = 0; i < m_looks.size(); ++i) {
            CellKind const kind = KindOf(m_looks[i].kind);
            if (!IsTyped(kind)) continue;
            ++typed;
            ReadCell(m_parts[i].text, m_cells, kind, m_looks[i].suffix, read);
            if (read.kind == kind) ++fitting;
            if (read.kind != kind && read.kind != CellKind::Missing) ++other;
        }
        return fitting > 0 && other * 2 <= typed;
    }

    std::size_t FirstTypedRow(std::size_t from = 0) {
        for (std::size_t i = from; i < m_sample.headLines; ++i) {
            if (IsData(m_sample.lines[i].text)) return i;
        }
        return m_sample.headLines;
    }

    /// The first row is one of names when its texts are all different, none of them comes back in its column, and some
    /// column repeats.
    std::size_t FirstRowOfTexts() {
        m_choice.byTextsAlone = true;
        std::size_t first = m_sample.headLines;
        Names names;
        std::vector<std::set<std::string>> seen(m_looks.size());
        bool repeats = false;
        bool comesBack = false;
        for (std::size_t i = 0; i < m_sample.headLines; ++i) {
            std::string const& line = m_sample.lines[i].text;
            if (IsSkipped(line) || IsComment(line, m_reading.commentMarks)) continue;
            if (SplitLine(line, m_rule, m_parts) || m_parts.size() != m_looks.size()) continue;
            Names const texts = TextsOf(m_parts);
            if (first == m_sample.headLines) {
                first = i;
                names = texts;
                continue;
            }
            for (std::size_t c = 0; c < texts.size(); ++c) {
                comesBack = comesBack || (!texts[c].empty() && texts[c] == names[c]);
                repeats = !seen[c].insert(texts[c]).second || repeats;
            }
        }
        bool const isAlone = std::all_of(seen.begin(), seen.end(), [](auto const& texts) { return texts.empty(); });
        bool const isDifferent = std::set<std::string>(names.begin(), names.end()).size() == names.size();
        if (first < m_sample.headLines && isDifferent && !comesBack && (repeats || isAlone)) return first + 1;
        return first;
    }

    /// All ways to read a line as names, the likeliest first.
    std::vector<Names> Readings(std::string_view line) {
        std::vector<Names> readings;
        bool const isComment = IsComment(line, m_reading.commentMarks);
        std::string_view const text = isComment ? WithoutMark(line) : line;
        if (isComment && (text.ends_with(':') || text.ends_with(','))) return readings;
        SplitLine(text, m_rule, m_parts);
        readings.push_back(TextsOf(m_parts));
        if (m_reading.separator == ' ') readings.push_back(SplitAtWideGaps(text));
        for (char const separator : std::string_view("\t;|, ")) {
            if (separator == m_reading.separator || (!isComment && separator == ' ')) continue;
            SplitRule rule = m_rule;
            rule.separator = separator;
            SplitLine(text, rule, m_parts);
            if (m_parts.size() > 1) readings.push_back(TextsOf(m_parts));
        }
        if (isComment) readings.push_back(SplitAtHyphens(text));
        std::stable_partition(readings.begin(), readings.end(), [](Names const& names) {
            return std::none_of(names.begin(), names.end(),
                                [](std::string const& name) { return name.ends_with(','); });
        });
        return readings;
    }

    static bool AreNames(Names const& names) {
        std::size_t filled = 0;
        for (std::string const& name : names) {
            if (name.empty()) continue;
            ++filled;
            if (LooksTyped(name)) return false;
        }
        return filled * 2 > names.size();
    }

    std::optional<Names> NamesIn(std::string_view line, std::size_t width) {
        if (width == 0) return {};
        for (Names& names : Readings(line)) {
            if (names.size() == width && AreNames(names)) return std::move(names);
        }
        return {};
    }

    /// A row of units leaves the places of columns without one empty.
    std::optional<Names> UnitsIn(std::string_view line, std::size_t width) {
        for (Names& names : Readings(line)) {
            bool const isFilled =
                std::any_of(names.begin(), names.end(), [](std::string const& name) { return !name.empty(); });
            if (names.size() == width && isFilled && AreUnits(names)) return std::move(names);
        }
        return {};
    }

    static bool AreUnits(Names const& names) {
        return std::all_of(names.begin(), names.end(), [](std::string const& name) { return IsUnitLike(name); });
    }

    bool Search(std::size_t first, std::size_t width) {
        std::optional<Names> unitRow;
        std::size_t unitIndex = 0;
        for (std::size_t i = first; i-- > 0;) {
            std::string const& line = m_sample.lines[i].text;
            if (IsSkipped(line)) continue;
            std::optional<Names> found = NamesIn(line, width);
            if (!found && !unitRow && width > 1) found = UnitsIn(line, width);
            // One column: every line of text would do, so only the nearest may.
            if (!found && width == 1) break;
            if (!found) continue;
            if (!unitRow && AreUnits(*found)) {
                unitRow = std::move(found);
                unitIndex = i;
                continue;
            }
            Take(std::move(*found), i);
            if (unitRow) {
                m_choice.units = std::move(*unitRow);
                for (std::string& unit : m_choice.units) unit = WithoutBrackets(unit);
                m_choice.unitLine = m_sample.lines[unitIndex].number;
                m_below = unitIndex + 1;
            }
            return true;
        }
        if (!unitRow) return false;
        Take(std::move(*unitRow), unitIndex);
        return true;
    }

    void Take(Names names, std::size_t index) {
        m_choice.names = std::move(names);
        m_choice.nameLines = {m_sample.lines[index].number};
        m_choice.headerText = Trim(m_sample.lines[index].text);
        m_top = index;
        m_below = index + 1;
        JoinWithUpper(index);
    }

    /// "North,North" above "Mag,Alt": names that are double or empty take those above them in front.
    void JoinWithUpper(std::size_t index) {
        Names& names = m_choice.names;
        std::set<std::string> different;
        bool const isPlain = std::all_of(names.begin(), names.end(), [&](std::string const& name) {
            return !name.empty() && different.insert(name).second;
        });
        if (isPlain || index == 0) return;
        std::optional<Names> upper = NamesIn(m_sample.lines[index - 1].text, names.size());
        if (!upper) {
            // Names over groups of columns leave most places empty.
            SplitLine(m_sample.lines[index - 1].text, m_rule, m_parts);
            Names const texts = TextsOf(m_parts);
            bool const isText =
                std::none_of(texts.begin(), texts.end(), [](std::string const& text) { return LooksTyped(text); });
            bool const isFilled =
                std::count_if(texts.begin(), texts.end(), [](auto const& text) { return !text.empty(); }) >= 2;
            if (texts.size() == names.size() && isText && isFilled && m_reading.separator != ' ') upper = texts;
        }
        if (!upper || AreUnits(*upper)) return;
        std::string left;
        for (std::size_t i = 0; i < names.size(); ++i) {
            if (!(*upper)[i].empty()) left = (*upper)[i];
            if (left.empty()) continue;
            names[i] = names[i].empty() ? left : left + " " + names[i];
        }
        m_choice.nameLines.insert(m_choice.nameLines.begin(), m_sample.lines[index - 1].number);
        m_top = index - 1;
    }

    void FindNames(std::size_t first) {
        m_below = first;
        m_top = first;
        std::size_t const width = m_looks.size();
        bool const endsEmpty =
            width > 1 && m_looks.back().kind == ColumnLook::Kind::Empty && m_reading.separator != ' ';
        if (Search(first, width)) {
            if (endsEmpty && m_choice.names.back().empty()) DropLast();
        } else if (endsEmpty && Search(first, width - 1)) {
            m_choice.lacksEnd = true;
            DropLast();
        } else if (!SearchUneven(first) && endsEmpty) {
            DropLast();
        }
        m_choice.names.resize(m_looks.size());
        m_choice.units.resize(m_looks.size());
    }

    /// The names stand in the line `number`, from 1, or nowhere.
    void TakeTold(std::size_t number) {
        std::size_t const first = FirstTypedRow(number);
        bool const isTyped = first < m_sample.headLines;
        std::size_t const below = isTyped ? first : std::min(number, m_sample.headLines);
        m_below = below;
        m_top = below;
        if (number > m_sample.headLines) {
            m_choice.problem = "it is not among the first " + std::to_string(m_sample.headLines) + " lines";
        } else if (number > 0) {
            ReadTold(number - 1, below);
        }
        bool const endsEmpty =
            m_looks.size() > 1 && m_looks.back().kind == ColumnLook::Kind::Empty && m_reading.separator != ' ';
        if (endsEmpty && (m_choice.names.size() < m_looks.size() || m_choice.names.back().empty())) DropLast();
        m_choice.names.resize(m_looks.size());
        m_choice.units.resize(m_looks.size());
        PlaceData(below);
    }

    void ReadTold(std::size_t index, std::size_t first) {
        std::string const& line = m_sample.lines[index].text;
        std::optional<Names> names = NamesIn(line, m_looks.size());
        if (!names) {
            SplitLine(WithoutMark(line), m_rule, m_parts);
            names = TextsOf(m_parts);
            if (!AreNames(*names)) {
                m_choice.problem = names->size() < 2 && Trim(line).empty() ? "it is empty" : "it holds numbers";
                return;
            }
            m_choice.isUneven = names->size() != m_looks.size();
        }
        m_choice.names = std::move(*names);
        m_choice.nameLines = {m_sample.lines[index].number};
        m_choice.headerText = Trim(line);
        m_top = index;
        m_below = index + 1;
        for (std::size_t i = index + 1; i < first && m_choice.unitLine == 0; ++i) {
            if (IsSkipped(m_sample.lines[i].text)) continue;
            std::optional<Names> units = UnitsIn(m_sample.lines[i].text, m_looks.size());
            if (!units) break;
            m_choice.units = std::move(*units);
            for (std::string& unit : m_choice.units) unit = WithoutBrackets(unit);
            m_choice.unitLine = m_sample.lines[i].number;
            m_below = i + 1;
        }
    }

    void DropLast() {
        m_choice.trailingSeparator = true;
        m_looks.pop_back();
    }

    /// The nearest row without a number that has about as many parts names the columns from the left.
    bool SearchUneven(std::size_t first) {
        std::size_t const width = m_looks.size();
        for (std::size_t i = first; i-- > 0 && width > 1;) {
            std::string const& line = m_sample.lines[i].text;
            if (IsSkipped(line)) continue;
            SplitLine(WithoutMark(line), m_rule, m_parts);
            Names names = TextsOf(m_parts);
            bool const isNear = names.size() >= 2 && names.size() * 2 >= width && names.size() * 2 <= 3 * width;
            if (!isNear || !AreNames(names) || (IsComment(line, m_reading.commentMarks) && line.ends_with(':'))) {
                m_choice.textAbove = std::max(m_choice.textAbove, m_sample.lines[i].number);
                continue;
            }
            Take(std::move(names), i);
            m_choice.isUneven = true;
            return true;
        }
        return false;
    }

    /// The data begin right below the names, so that no row is dropped unseen; rows of nothing there do not count.
    void PlaceData(std::size_t first) {
        std::size_t begin = m_choice.nameLines.empty() ? first : m_below;
        while (begin < first) {
            SplitLine(m_sample.lines[begin].text, m_rule, m_parts);
            bool const isNothing =
                std::all_of(m_parts.begin(), m_parts.end(), [](CellPart const& part) { return part.text.empty(); });
            if (!isNothing && !IsSkipped(m_sample.lines[begin].text)) break;
            ++begin;
        }
        m_choice.firstDataLine = begin + 1;
        std::size_t top = m_choice.nameLines.empty() ? begin : m_top;
        while (top > 0 && (IsSkipped(m_sample.lines[top - 1].text) ||
                           IsComment(m_sample.lines[top - 1].text, m_reading.commentMarks))) {
            --top;
        }
        m_choice.firstMarkerLine = top + 1;
    }

    Sample const& m_sample;
    TextReading const& m_reading;
    std::vector<ColumnLook>& m_looks;
    SplitRule m_rule;
    CellRules m_cells;
    HeaderChoice m_choice;
    std::vector<CellPart> m_parts;
    std::size_t m_top = 0;    ///< line of the names, the upper of two
    std::size_t m_below = 0;  ///< line behind names and units
};

}  // namespace

HeaderChoice FindHeader(Sample const& sample, TextReading const& reading, std::vector<ColumnLook>& looks,
                        std::optional<std::uint64_t> told) {
    return CHeaderSearch(sample, reading, looks).Run(told);
}

}  // namespace norva
