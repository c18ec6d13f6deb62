#include "norva/inspection.h"

#include "inspection/column_looks.h"
#include "inspection/conclusion.h"
#include "inspection/label_column.h"
#include "inspection/line_kind.h"
#include "inspection/source_lines.h"
#include "inspection/table_reader.h"
#include "platform/text.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

namespace norva {

namespace {

/// Every column has facts of its own: a line of millions of parts is taken for no table.
constexpr std::size_t kMostColumns = 32767;

/// The columns that their names call latitude and longitude.
std::optional<std::pair<std::size_t, std::size_t>> FindPosition(std::vector<std::string> const& names) {
    auto const find = [&names](std::initializer_list<std::string_view> words) {
        return std::ranges::find_if(names,
                                    [&](std::string const& name) {
                                        std::string const upper = ToUpper(name.substr(0, name.find_first_of(" _([")));
                                        return std::ranges::find(words, upper) != words.end();
                                    }) -
               names.begin();
    };
    auto const latitude = static_cast<std::size_t>(find({"LAT", "LATITUDE"}));
    auto const longitude = static_cast<std::size_t>(find({"LON", "LONG", "LONGITUDE"}));
    if (latitude == names.size() || longitude == names.size()) return {};
    return std::pair(latitude, longitude);
}

class CInspector {
public:
    CInspector(std::string const& path, InspectionOptions options) : m_path(path), m_options(std::move(options)) {}

    Status Run(Inspection& result) {
        if (Status status = m_source.Open(m_path); !status) return status;
        m_reading.encoding = m_source.Encoding();
        if (!TakeSample(m_source, m_sample)) return m_source.Result(m_path);
        if (m_sample.lines.empty()) return Status::Failure("There is no text in the file", m_path);
        FindLineMarks();
        if (Status status = FindDefinition(m_path, m_signs.definition); !status) return status;
        std::vector<std::string_view> voters = Voters();
        if (Status status = Attempt(voters); !status) return status;
        if (m_now.SuitsBadly()) {
            if (Status status = LookAgain(); !status) return status;
        }
        result = Conclude(m_sample, m_options, std::move(m_now), std::move(m_signs));
        return {};
    }

private:
    /// Comment marks, words of markers, quotes: what does not hang on the separator.
    void FindLineMarks() {
        m_reading.commentMarks = FindCommentMarks(m_sample, m_signs.doubtfulMarks);
        if (m_options.findsMarkers) {
            for (std::string_view const word : UsualMarkerWords()) m_reading.markerWords.emplace_back(word);
        }
        for (std::string const& word : m_options.markerWords) m_reading.markerWords.push_back(ToUpper(word));
        m_quote = FindQuote(m_sample);
        m_reading.quote = m_quote.quote;
        m_reading.backslashQuote = m_quote.backslash;
    }

    std::vector<std::string_view> Voters() const {
        std::vector<std::string_view> voters;
        std::string_view label;
        for (SampleLine const& line : m_sample.lines) {
            std::string_view const text = line.text;
            bool const isOther = Trim(text).empty() || IsComment(text, m_reading.commentMarks) || IsRule(text) ||
                                 IsMarker(text, m_reading.markerWords, label);
            if (!isOther) voters.push_back(text);
        }
        return voters;
    }

    /// Splits, looks for the header and passes over the file, with the lines that vote for the separator.
    Status Attempt(std::vector<std::string_view> const& voters) {
        m_now.separators = ScoreSeparators(voters, m_quote);
        std::size_t width = m_now.separators.Best().parts;
        m_reading.separator = m_now.separators.Best().separator;
        if (m_options.separator) {
            m_reading.separator = *m_options.separator;
            for (SeparatorScore const& score : m_now.separators.scores) {
                if (score.separator == m_reading.separator) width = score.parts;
            }
        }
        if (width < 2) {
            // Nothing separates: one column. A character that no text holds keeps its blanks together.
            width = 1;
            m_reading.separator = '\0';
        }
        if (width > kMostColumns) {
            return Status::Failure("Couldn't read the file", m_path,
                                   "Its lines have more than " + std::to_string(kMostColumns) + " columns.");
        }
        FindOtherMarkers(width);
        m_looks =
            FindColumnLooks(voters, SplitRuleOf(m_reading), CellRulesOf(m_reading), width, m_reading.quotesEveryRow);
        m_now.header = FindHeader(m_sample, m_reading, m_looks, m_options.headerLine);
        if (!m_now.header.problem.empty()) {
            return Status::Failure("Line " + std::to_string(*m_options.headerLine) + " cannot name the columns", m_path,
                                   m_now.header.problem);
        }
        TakeDefinition();
        m_reading.trailingSeparator = m_now.header.trailingSeparator;
        m_reading.firstDataLine = m_now.header.firstDataLine;
        m_reading.firstMarkerLine = m_now.header.firstMarkerLine;
        m_reading.headerText = m_now.header.headerText;
        m_reading.width = static_cast<int>(m_looks.size());
        return Pass();
    }

    /// Names, units and missing values of a definition that has as many fields as the file has columns.
    void TakeDefinition() {
        std::vector<DefinedField> const& fields = m_signs.definition.fields;
        m_now.isDefined = !fields.empty() && fields.size() == m_looks.size() && !m_options.headerLine;
        for (std::size_t i = 0; m_now.isDefined && i < fields.size(); ++i) {
            m_now.header.names[i] = fields[i].name;
            m_now.header.units[i] = fields[i].unit;
            if (fields[i].isText) m_options.textColumns.push_back(static_cast<int>(i));
            if (fields[i].null) m_options.noData.push_back(*fields[i].null);
        }
    }

    /// Words that nobody told of, which come twice or more with a label, alone in lines that are no rows.
    void FindOtherMarkers(std::size_t width) {
        if (!m_options.findsMarkers) return;
        std::map<std::string, std::size_t> words;
        std::map<std::string, std::set<std::string>> labels;
        std::vector<CellPart> parts;
        std::string_view word;
        std::string_view label;
        for (SampleLine const& line : m_sample.lines) {
            if (IsComment(line.text, m_reading.commentMarks) || IsMarker(line.text, m_reading.markerWords, label))
                continue;
            if (!LooksLikeMarker(line.text, word, label)) continue;
            SplitLine(line.text, SplitRuleOf(m_reading), parts);
            if (parts.size() == width) continue;
            ++words[ToUpper(word)];
            labels[ToUpper(word)].emplace(label);
        }
        for (auto const& [text, count] : words) {
            if (count < 2 || labels[text].size() < 2) continue;
            m_reading.markerWords.push_back(text);
            m_now.otherMarkers.push_back(text);
        }
    }

    Status Pass() {
        m_now.pass = std::make_unique<CFilePass>(m_looks.size(), m_options);
        for (std::size_t const candidate : FindLabelCandidates(m_now.header.names))
            m_now.pass->columns[candidate].TrackLabels();
        if (m_options.labelColumn && *m_options.labelColumn >= 0 &&
            static_cast<std::size_t>(*m_options.labelColumn) < m_now.pass->columns.size()) {
            m_now.pass->columns[static_cast<std::size_t>(*m_options.labelColumn)].TrackLabels();
        }
        m_now.pass->position = FindPosition(m_now.header.names);
        CTableReader reader(m_reading, m_looks, RowsFor::Facts, *m_now.pass);
        m_source.Rewind();
        m_signs.nulLine = 0;
        std::string_view line;
        while (m_source.Next(line)) {
            if (!IsPlainAscii(line)) NoteBytes(line);
            reader.Feed(line, m_source.Number());
        }
        reader.Finish();
        m_now.pass->Settle();
        m_now.pass->counts.lines = m_source.Number();
        return m_source.Result(m_path);
    }

    void NoteBytes(std::string_view line) {
        if (!m_signs.noUtf8.IsSet()) {
            if (std::size_t const at = FindNoUtf8(line); at != std::string_view::npos) {
                m_signs.noUtf8.Set(m_source.Number(), line.substr(at, 1));
            }
        }
        if (m_signs.nulLine == 0 && line.find('\0') != std::string_view::npos) m_signs.nulLine = m_source.Number();
    }

    /// Many lines do not agree: once more, with those as the ones that say how the file is read; in a short file also
    /// with its last lines alone, since a long preamble may have outvoted the rows. The best is kept.
    Status LookAgain() {
        std::vector<std::string> const odd = m_now.pass->oddTexts;
        std::vector<std::string_view> const all = Voters();
        std::vector<std::vector<std::string_view>> looks = {{odd.begin(), odd.end()}};
        if (m_sample.isWhole)
            looks.emplace_back(all.end() - static_cast<std::ptrdiff_t>(std::max<std::size_t>(1, all.size() / 10)),
                               all.end());
        FileReading best = std::move(m_now);
        TextReading const marks = best.reading;
        std::vector<std::string> const otherMarkers = best.otherMarkers;
        for (std::vector<std::string_view> const& voters : looks) {
            m_now = {};
            m_reading = marks;
            m_now.otherMarkers = otherMarkers;
            if (Status status = Attempt(voters); !status) return status;
            if (m_looks.size() < 2 || m_now.Worth() <= best.Worth()) continue;
            best = std::move(m_now);
            m_signs.isSecondLook = true;
        }
        m_now = std::move(best);
        return {};
    }

    std::string const& m_path;
    InspectionOptions m_options;
    CSourceLines m_source;
    Sample m_sample;
    QuoteChoice m_quote;
    FileReading m_now;
    FileSigns m_signs;
    TextReading& m_reading = m_now.reading;
    std::vector<ColumnLook>& m_looks = m_now.looks;
};

}  // namespace

Status InspectTextFile(std::string const& path, InspectionOptions const& options, Inspection& inspection) {
    inspection = {};
    Inspection found;
    if (Status status = CInspector(path, options).Run(found); !status) return status;
    inspection = std::move(found);
    return {};
}

}  // namespace norva
