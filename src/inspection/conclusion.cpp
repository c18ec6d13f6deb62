#include "inspection/conclusion.h"

#include "inspection/column_types.h"
#include "inspection/label_column.h"
#include "inspection/line_kind.h"
#include "inspection/source_lines.h"
#include "inspection/unit_words.h"
#include "platform/text.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <set>
#include <utility>

namespace norva {

namespace {

constexpr double kRivalIsNear = 0.85;
/// So many rows of numbers are no accident.
constexpr std::uint64_t kRowsOfTable = 3;

std::string Number(std::uint64_t number) {
    return std::to_string(number);
}

std::string Hundredths(double value) {
    auto const whole = static_cast<unsigned>(value * 100 + 0.5);
    return Number(whole / 100) + (whole % 100 < 10 ? ".0" : ".") + Number(whole % 100);
}

class CConclusion {
public:
    CConclusion(Sample const& sample, InspectionOptions const& options, FileReading&& reading, FileSigns&& signs)
        : m_sample(sample), m_options(options), m_found(std::move(reading)), m_signs(std::move(signs)) {}

    Inspection Run() {
        if (m_reading.encoding == TextReading::Encoding::Utf8 && m_signs.noUtf8.IsSet())
            m_reading.encoding = TextReading::Encoding::Latin1;
        TellBytes();
        TellSeparator();
        TellDecimalMark();
        TellHeader();
        NameColumns();
        TellLines();
        PlanColumns();
        TellPositions();
        TellTable();
        m_reading.missing = {"", "*"};
        m_result.settings.reading = m_reading;
        m_result.settings.looks = m_looks;
        m_result.headerLine = m_header.nameLines.empty() ? 0 : m_header.nameLines.back();
        m_result.unitLine = m_header.unitLine;
        m_result.counts = m_found.pass->counts;
        m_result.surveyLines = m_found.pass->labels;
        ShowInUtf8();
        std::stable_sort(m_result.lines.begin(), m_result.lines.end(),
                         [](InspectedLine const& a, InspectedLine const& b) { return a.line < b.line; });
        return std::move(m_result);
    }

private:
    void Say(std::string subject, std::string choice, std::string evidence, bool isDoubt = false,
             std::string option = {}) {
        m_result.findings.push_back(
            {std::move(subject), std::move(choice), std::move(evidence), isDoubt, std::move(option)});
    }

    void TellBytes() {
        switch (m_reading.encoding) {
            case TextReading::Encoding::Latin1: {
                static constexpr char kHex[] = "0123456789ABCDEF";
                auto const byte = static_cast<unsigned char>(m_signs.noUtf8.text.front());
                Say("encoding", "Latin-1",
                    std::string("byte ") + kHex[byte >> 4] + kHex[byte & 15] + " in line " +
                        Number(m_signs.noUtf8.line) + " is no UTF-8");
                break;
            }
            case TextReading::Encoding::Utf16Little:
                Say("encoding", "UTF-16", "by its mark, low byte first");
                break;
            case TextReading::Encoding::Utf16Big:
                Say("encoding", "UTF-16", "by its mark, high byte first");
                break;
            default:
                break;
        }
        if (m_signs.nulLine != 0) Say("encoding", "", "line " + Number(m_signs.nulLine) + " holds a NUL byte", true);
    }

    void TellSeparator() {
        SeparatorScore const& best = m_found.separators.Best();
        if (m_reading.separator == '\0') {
            Say("separator", "none", "no character separates the lines into parts that read");
            return;
        }
        std::string evidence = Number(best.parts) + " parts in " + Number(best.rows) + " of " +
                               Number(m_found.separators.voters) + " lines";
        SeparatorScore const* const rival = m_found.separators.Rival();
        bool isNear = false;
        if (rival != nullptr) {
            evidence += "; next: " + std::string(SeparatorName(rival->separator)) + " " + Hundredths(rival->score);
            isNear = rival->parts != best.parts && rival->score > kRivalIsNear * best.score;
        }
        if (m_signs.isSecondLook) evidence += "; found in a second pass, by the lines that did not agree in the first";
        Say("separator", std::string(SeparatorName(m_reading.separator)), std::move(evidence),
            isNear && !m_options.separator,
            isNear ? "--separator " + std::string(SeparatorName(rival->separator)) : "");
        if (m_reading.trailingSeparator) {
            Say("separator", "",
                "one more at the end of each row is passed over" +
                    std::string(m_header.lacksEnd ? "; the names have none there: a name may be missing" : ""),
                m_header.lacksEnd);
        }
        for (std::string const& mark : m_signs.doubtfulMarks) {
            Say("comments", "", "\"" + mark + "\" begins more than half of the lines and is taken for data", true);
        }
    }

    void TellDecimalMark() {
        if (m_reading.separator == ',') return;
        std::uint64_t points = 0;
        std::uint64_t commas = 0;
        std::uint64_t beforeThree = 0;
        for (std::size_t i = 0; i < m_looks.size(); ++i) {
            if (m_looks[i].kind != ColumnLook::Kind::Number) continue;
            points += m_found.pass->columns[i].withPoint;
            commas += m_found.pass->columns[i].withComma;
            beforeThree += m_found.pass->columns[i].commaBeforeThree;
        }
        if (commas == 0) return;
        m_reading.decimalMark = commas >= points ? ',' : '.';
        std::string const counts = Number(commas) + " numbers with a comma, " + Number(points) + " with a point";
        if (points > 0) {
            Say("decimal mark", "both", counts, true);
        } else if (beforeThree == commas) {
            Say("decimal mark", "comma", counts + "; three digits follow each: it may stand between thousands", true);
        } else {
            Say("decimal mark", "comma", counts);
        }
    }

    std::string InUtf8(std::string const& text) const {
        if (m_reading.encoding != TextReading::Encoding::Latin1) return text;
        std::string converted;
        AppendLatin1AsUtf8(converted, text);
        return converted;
    }

    /// What was taken from the file to be shown is as the file writes it up to here.
    void ShowInUtf8() {
        if (m_reading.encoding != TextReading::Encoding::Latin1) return;
        auto const convert = [&](std::string& text) {
            if (FindNoUtf8(text) != std::string_view::npos) text = InUtf8(text);
        };
        for (InspectionFinding& finding : m_result.findings) convert(finding.evidence);
        for (std::string& label : m_result.surveyLines) convert(label);
        for (InspectedLine& line : m_result.lines) {
            convert(line.text);
            convert(line.reason);
        }
    }

    /// Units off the names, then every name different and none empty.
    void NameColumns() {
        std::size_t const width = m_looks.size();
        m_naming.resize(width);
        std::vector<std::string> split(width);
        std::vector<std::string> units(width);
        std::map<std::string, int> used;
        for (std::size_t i = 0; i < width; ++i) {
            m_header.names[i] = std::string(TrimOf(InUtf8(m_header.names[i]), "\""));
            if (!SplitUnit(m_header.names[i], split[i], units[i])) split[i] = m_header.names[i];
            ++used[split[i]];
        }
        std::set<std::string> taken;
        for (std::size_t i = 0; i < width; ++i) {
            ColumnNaming& naming = m_naming[i];
            bool const wouldBeAlike = used[split[i]] > 1 && split[i] != m_header.names[i];
            naming.name = wouldBeAlike ? m_header.names[i] : split[i];
            naming.units = wouldBeAlike ? "" : units[i];
            if (!m_header.units[i].empty()) naming.units = InUtf8(m_header.units[i]);
            if (naming.name.empty()) naming.name = "Ch" + Number(i + 1);
            std::string const wanted = naming.name;
            for (int n = 2; !taken.insert(naming.name).second; ++n) naming.name = wanted + "_" + std::to_string(n);
            if (m_header.nameLines.empty()) continue;
            if (m_header.names[i].empty() && !m_header.isUneven)
                Say(naming.name, "", "column " + Number(i + 1) + " has no name", true);
            if (naming.name != wanted) Say(naming.name, "", "the name " + wanted + " stands twice in the header", true);
        }
    }

    void TellDefinition() {
        Definition const& definition = m_signs.definition;
        if (definition.path.empty()) return;
        std::string const name = definition.path.substr(definition.path.find_last_of('/') + 1);
        std::string const fields = Number(definition.fields.size()) + " fields";
        if (m_found.isDefined) {
            Say("names", name, fields + ", as many as the columns: names, units and missing values are its own");
        } else if (!m_options.headerLine) {
            Say("names", "",
                name + " has " + fields + ", the table " + Number(m_looks.size()) + " columns: it is not used", true,
                "--header-line 0");
        }
    }

    void TellHeader() {
        TellDefinition();
        if (m_found.isDefined) return;
        if (m_options.headerLine) {
            std::string evidence = "as told";
            if (m_header.isUneven) evidence += "; it has not as many names as there are columns, from the left";
            if (m_header.unitLine != 0) evidence += "; row of units in line " + Number(m_header.unitLine);
            Say("header line", *m_options.headerLine == 0 ? "none" : Number(*m_options.headerLine), std::move(evidence),
                m_header.isUneven);
            return;
        }
        if (m_header.nameLines.empty()) {
            if (m_header.textAbove != 0) {
                Say("header line", "none",
                    "line " + Number(m_header.textAbove) + " above the data is text, but has no names for " +
                        Number(m_looks.size()) + " columns",
                    true, "--header-line " + Number(m_header.textAbove));
            } else if (m_header.byTextsAlone) {
                Say("header line", "none", "no column holds numbers or dates, and the first row looks like the others",
                    true, "--header-line 1");
            } else {
                Say("header line", "none", "no line of text stands above the data");
            }
            return;
        }
        std::string const line = Number(m_header.nameLines.back());
        std::string evidence = "the last line above the data with " + Number(m_looks.size()) +
                               (m_looks.size() == 1 ? " part" : " parts") + " and no number";
        bool isDoubt = false;
        if (m_header.isUneven) {
            evidence = "it has not as many names as there are columns; they name the columns from the left";
            isDoubt = true;
        } else if (m_header.byTextsAlone) {
            evidence = "no column holds numbers or dates; no text of this line comes again in its column";
            isDoubt = true;
        } else if (m_header.nameLines.size() > 1) {
            evidence = "joined from lines " + Number(m_header.nameLines.front()) + " and " + line;
            isDoubt = true;
        }
        if (m_header.unitLine != 0) evidence += "; row of units in line " + Number(m_header.unitLine);
        Say("header line", line, std::move(evidence), isDoubt, isDoubt ? "--header-line N" : "");
    }

    void TellLines() {
        CFilePass const& pass = *m_found.pass;
        m_labelColumn = -1;
        bool const isColumnTold = m_options.labelColumn && *m_options.labelColumn >= 0;
        if (pass.counts.markers > 0 && !isColumnTold) {
            bool const hasRowsAbove = pass.rowsBeforeMarker > 0;
            std::string evidence = (pass.counts.markers == 1 ? "a row of its own starts line "
                                                             : "rows of their own start them, the first line ") +
                                   pass.labels.front();
            if (hasRowsAbove) evidence += "; " + Number(pass.rowsBeforeMarker) + " rows stand above the first";
            Say("lines", Number(pass.counts.markers), std::move(evidence), hasRowsAbove);
            for (std::string const& word : m_found.otherMarkers)
                Say("lines", "", "\"" + word + "\" is taken to start a line", true, "--marker none");
        } else if (m_options.labelColumn) {
            m_labelColumn = *m_options.labelColumn < static_cast<int>(m_looks.size()) ? *m_options.labelColumn : -1;
            Say("lines", m_labelColumn < 0 ? "one" : "by column " + std::to_string(m_labelColumn + 1), "as told");
        } else {
            m_labelColumn = FindLabelColumn(m_header.names, pass.columns, m_result.findings);
        }
        m_isLabelNamed = m_labelColumn >= 0 && !m_header.names[static_cast<std::size_t>(m_labelColumn)].empty();
    }

    /// Positions that stand for none.
    void TellPositions() {
        CFilePass const& pass = *m_found.pass;
        if (!pass.position) return;
        if (pass.atZero > 0 && pass.atZero * 2 < pass.counts.rows) {
            Say(m_naming[pass.position->first].name, "",
                Number(pass.atZero) + (pass.atZero == 1 ? " row stands" : " rows stand") +
                    " at latitude 0, longitude 0, the first in line " + Number(pass.firstAtZero) +
                    ": positions that were not known?",
                true);
        }
    }

    void PlanColumns() {
        std::vector<MissingNumbers> const missing = FindMissingNumbers(m_found.pass->columns, m_options);
        m_result.lines = m_found.pass->lines;
        for (std::size_t i = 0; i < m_looks.size(); ++i) {
            m_naming[i].isLabel = m_isLabelNamed && static_cast<int>(i) == m_labelColumn;
            ColumnPlan plan = PlanColumn(m_found.pass->columns[i], m_looks[i], static_cast<int>(i), m_naming[i],
                                         missing[i], m_reading, m_options);
            if (static_cast<int>(i) == m_labelColumn)
                m_result.settings.labelColumn = static_cast<int>(m_result.settings.columns.size());
            for (ColumnPlan::Channel& channel : plan.channels) {
                m_result.settings.columns.push_back(std::move(channel.channel));
                m_result.settings.columnReadings.push_back(std::move(channel.reading));
            }
            std::move(plan.findings.begin(), plan.findings.end(), std::back_inserter(m_result.findings));
            std::move(plan.spoilt.begin(), plan.spoilt.end(), std::back_inserter(m_result.lines));
        }
    }

    /// Rows of numbers above the names: a table that is left out.
    void TellTableAbove() {
        std::vector<CellPart> parts;
        CellRead read;
        std::uint64_t first = 0;
        std::uint64_t last = 0;
        std::uint64_t rows = 0;
        for (std::size_t i = 0; i < m_sample.headLines && m_sample.lines[i].number < m_reading.firstDataLine; ++i) {
            std::string const& line = m_sample.lines[i].text;
            if (IsComment(line, m_reading.commentMarks) || SplitLine(line, SplitRuleOf(m_reading), parts) ||
                parts.size() < 2)
                continue;
            auto const typed = std::count_if(parts.begin(), parts.end(), [&](CellPart const& part) {
                ReadCell(part.text, CellRulesOf(m_reading), CellKind::Number, {}, read);
                return IsTyped(read.kind);
            });
            if (static_cast<std::size_t>(typed) * 2 <= parts.size()) continue;
            last = m_sample.lines[i].number;
            if (rows++ == 0) first = last;
        }
        if (rows < kRowsOfTable) return;
        Say("table", "",
            Number(rows) + " rows of numbers from line " + Number(first) + " to " + Number(last) +
                " stand above the names and are not stored",
            true);
    }

    void TellTable() {
        TellTableAbove();
        InspectionCounts const& counts = m_found.pass->counts;
        std::uint64_t const odd = m_found.pass->OddLines();
        // Words between blanks are prose.
        bool const isTyped = std::any_of(m_looks.begin(), m_looks.end(),
                                         [](ColumnLook const& look) { return IsTyped(KindOf(look.kind)); });
        bool const isProse = !isTyped && (m_reading.separator == ' ' || m_reading.separator == '\0');
        m_result.isTable = counts.rows > 0 && odd <= counts.rows && !isProse;
        if (m_found.pass->otherTables > 0) {
            Say("table", "", Number(counts.otherTable) + " lines have the width of another table", true);
        } else if (m_found.SuitsBadly()) {
            Say("table", "",
                Number(odd) + " of " + Number(odd + counts.rows) + " lines do not suit the table: this may be no table",
                true);
        }
        if (counts.rows == 0) Say("table", "", "there are no rows of data", true);
        if (counts.namesAgain > 0) {
            Say("table", "",
                "the names come again in line " + Number(m_found.pass->firstNamesAgain) + "; the table goes on there",
                true);
        }
        if (counts.nothingAtEnd > 0)
            Say("table", "", Number(counts.nothingAtEnd) + " rows of empty cells at the end are left out");
    }

    Sample const& m_sample;
    InspectionOptions const& m_options;
    FileReading m_found;
    FileSigns m_signs;
    TextReading& m_reading = m_found.reading;
    std::vector<ColumnLook>& m_looks = m_found.looks;
    HeaderChoice& m_header = m_found.header;
    std::vector<ColumnNaming> m_naming;
    Inspection m_result;
    int m_labelColumn = -1;
    bool m_isLabelNamed = false;
};

}  // namespace

Inspection Conclude(Sample const& sample, InspectionOptions const& options, FileReading&& reading, FileSigns&& signs) {
    return CConclusion(sample, options, std::move(reading), std::move(signs)).Run();
}

}  // namespace norva
