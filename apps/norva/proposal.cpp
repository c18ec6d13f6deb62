#include "proposal.h"

#include "common/command_error.h"
#include "common/names.h"
#include "common/proposed_columns.h"
#include "common/settings_json.h"
#include "norva/exchange.h"

#include <algorithm>
#include <array>
#include <map>
#include <utility>

namespace norva {

namespace {

constexpr std::array<std::pair<char, char const*>, 5> kSeparators = {
    {{',', "comma"}, {';', "semicolon"}, {'\t', "tab"}, {'|', "bar"}, {' ', "blanks"}}};

void Require(Status const& status, std::string const& about) {
    if (!status) throw CommandError(about + ": " + (status.Reason().empty() ? status.Text() : status.Reason()));
}

/// A file's proposal while the options change it.
class CProposal {
public:
    CProposal(ImportOptions const& options, std::string const& input, std::string const& format)
        : m_options(options), m_input(input), m_format(format) {
        TakeOptions();
        if (!m_options.columnTemplate.empty()) TakeTemplate();
        Inspect();
        if (TellColumns()) Inspect();
        if (m_template) ApplyTemplate();
        for (ColumnOption const& option : m_options.columns) {
            for (int const channel : FindChannels(option.column)) Change(channel, option);
        }
    }

    Inspection Take() { return std::move(m_found); }

private:
    void TakeOptions() {
        if (m_options.headerLine) m_told.headerLine = static_cast<std::uint64_t>(*m_options.headerLine);
        if (!m_options.dates.empty()) m_told.dates = m_options.dates;
        m_told.noData = m_options.noData;
        m_told.keep = m_options.keep;
        for (std::string const& word : m_options.markers) {
            if (word == "none") {
                m_told.findsMarkers = false;
            } else {
                m_told.markerWords.push_back(word);
            }
        }
        for (auto const& [separator, name] : kSeparators) {
            if (m_options.separator == name) m_told.separator = separator;
        }
        if (m_options.labelColumn == "none") m_told.labelColumn = -1;
    }

    void TakeTemplate() {
        m_template = ReadTemplate(TemplatePath(m_options.columnTemplate));
        ColumnTextSettings const& settings = m_template->settings;
        for (std::string const& word : settings.reading->markerWords) m_told.markerWords.push_back(word);
        if (settings.reading->separator != '\0' && !m_told.separator) m_told.separator = settings.reading->separator;
        for (std::size_t i = 0; i < settings.columns.size(); ++i) {
            int const source = settings.columnReadings[i].source;
            if (static_cast<int>(i) == settings.labelColumn && !m_told.labelColumn) m_told.labelColumn = source;
            if (TypeOf(settings.columns[i]) == ColumnType::Text) m_told.textColumns.push_back(source);
        }
        if (!m_told.labelColumn) m_told.labelColumn = -1;
    }

    /// The columns of the template, on the lines of this file.
    void ApplyTemplate() {
        ColumnTextSettings const& wanted = m_template->settings;
        ColumnTextSettings& settings = m_found.settings;
        std::string misfits;
        if (wanted.reading->width != settings.reading->width) {
            misfits += "\n  the rows have " + std::to_string(settings.reading->width) + " columns, not " +
                       std::to_string(wanted.reading->width);
        } else if (wanted.reading->headerText != settings.reading->headerText) {
            misfits += "\n  line " + std::to_string(m_found.headerLine) + " is \"" + settings.reading->headerText +
                       "\", not \"" + m_template->headerText + "\"";
        }
        if (!misfits.empty()) throw CommandError("the template does not fit this file" + misfits);
        for (int i = 0; i < static_cast<int>(settings.columns.size()); ++i) {
            Settle(i, [](InspectionFinding const& one) { return !one.option.starts_with("--no-data"); });
        }
        std::vector<NorvaChannelStruct> columns = wanted.columns;
        for (std::size_t i = 0; i < columns.size(); ++i) {
            if (TypeOf(columns[i]) != ColumnType::Text) continue;
            // A text of this file that is longer than those of the template's is not to be cut.
            for (std::size_t j = 0; j < settings.columns.size(); ++j) {
                if (settings.columnReadings[j].source == wanted.columnReadings[i].source) {
                    columns[i].arraySize = std::max(columns[i].arraySize, settings.columns[j].arraySize);
                }
            }
        }
        int const label = settings.labelColumn < 0 ? -1 : SourceOf(settings.labelColumn);
        settings.columns = std::move(columns);
        settings.columnReadings = wanted.columnReadings;
        auto const ofLabel = std::ranges::find(settings.columnReadings, label, &ColumnReading::source);
        bool const hasLabel = label >= 0 && ofLabel != settings.columnReadings.end();
        settings.labelColumn = hasLabel ? static_cast<int>(ofLabel - settings.columnReadings.begin()) : -1;
        NameSubjects();
    }

    void NameSubjects() {
        m_subjects.clear();
        for (NorvaChannelStruct const& column : m_found.settings.columns) m_subjects.push_back(column.name);
    }

    void Inspect() {
        if (Status const status = InspectFile(m_input, m_format, m_told, m_found); !status) {
            throw CommandError(status.Text());
        }
        if (m_found.isConverted && (m_told.headerLine || m_told.separator)) {
            throw CommandError(
                std::string(m_told.headerLine ? "--header-line" : "--separator") +
                    " has no meaning here: the file has titles of its own, and no line of names (--as-it-stands takes "
                    "it for the text that the file is converted to)",
                kExitUsage);
        }
        if (!m_found.isTable) {
            throw CommandError(m_input + ": does not read as a table" + FirstDoubt() +
                               " (--as-it-stands imports it by its first rows)");
        }
        NameSubjects();
    }

    std::string FirstDoubt() const {
        for (InspectionFinding const& finding : m_found.findings) {
            if (finding.isDoubt && finding.subject == "table") return ": " + finding.evidence;
        }
        return {};
    }

    /// What the inspection itself has to know of columns, which are found in a first one. False: it knows it.
    bool TellColumns() {
        bool isNew = false;
        if (!m_options.labelColumn.empty() && m_options.labelColumn != "none") {
            int const channel = FindChannels(m_options.labelColumn).front();
            m_told.labelColumn = SourceOf(channel);
            isNew = true;
        }
        for (ColumnOption const& option : m_options.columns) {
            if (option.type != "text") continue;
            for (int const channel : FindChannels(option.column)) {
                if (TypeOf(m_found.settings.columns[static_cast<std::size_t>(channel)]) == ColumnType::Text) continue;
                m_told.textColumns.push_back(SourceOf(channel));
                isNew = true;
            }
        }
        return isNew;
    }

    int SourceOf(int channel) const {
        return m_found.settings.columnReadings[static_cast<std::size_t>(channel)].source;
    }

    std::vector<std::string> Names() const {
        std::vector<std::string> names;
        for (NorvaChannelStruct const& column : m_found.settings.columns) names.push_back(column.name);
        return names;
    }

    /// Channels by "*", by their names or by the number of their column in the file, several separated by commas.
    std::vector<int> FindChannels(std::string const& wanted) const {
        std::vector<std::string> const names = Names();
        std::vector<int> channels;
        if (wanted == "*") {
            for (int i = 0; i < static_cast<int>(names.size()); ++i) channels.push_back(i);
            return channels;
        }
        for (std::string const& one : SplitNames(wanted)) {
            bool const isName =
                std::ranges::any_of(names, [&](std::string const& name) { return EqualIgnoringCase(name, one); });
            bool const isNumber = !one.empty() && one.find_first_not_of("0123456789") == std::string::npos;
            if (isName || !isNumber) {
                channels.push_back(FindNamed(names, one, 1, "column"));
                continue;
            }
            std::size_t const before = channels.size();
            for (int i = 0; i < static_cast<int>(names.size()); ++i) {
                if (std::to_string(SourceOf(i) + 1) == one) channels.push_back(i);
            }
            if (channels.size() == before) {
                throw CommandError("there is no column " + one + "; the file has " +
                                   std::to_string(m_found.settings.reading->width));
            }
        }
        return channels;
    }

    void Change(int channel, ColumnOption const& option) {
        ColumnTextSettings& settings = m_found.settings;
        NorvaChannelStruct& column = settings.columns[static_cast<std::size_t>(channel)];
        std::string const about = "--column " + option.column;
        if (!option.type.empty()) {
            Require(SetProposedType(settings, channel, FindColumnType(option.type).value()), about);
            Settle(channel, [](InspectionFinding const& one) { return !one.option.starts_with("--no-data"); });
        }
        if (option.dateTemplate) {
            bool const isTime = TypeOf(column) == ColumnType::Time;
            ValueTemplates const& templates = isTime ? TimeTemplates() : DateTemplates();
            int const place = FindNamed(templates.names, *option.dateTemplate, 0, "template");
            Require(SetProposedTemplate(settings, channel, templates.codes[static_cast<std::size_t>(place)]), about);
        }
        ColumnReading const& reading = settings.columnReadings[static_cast<std::size_t>(channel)];
        bool const needsOrder = TypeOf(column) == ColumnType::Date && reading.order.empty();
        if (needsOrder) throw CommandError(about + ": which order? Say it with template=DD/MM/YYYY");
        if (option.width) {
            if (TypeOf(column) != ColumnType::Text) throw CommandError(about + ": a width goes with the type text");
            column.arraySize = *option.width;
        }
        if (option.name) {
            column.name = *option.name;
            Settle(channel, [](InspectionFinding const& one) { return one.choice.empty() && one.option.empty(); });
        }
        if (option.units) column.units = *option.units;
    }

    /// A person said it: what was in doubt about the column is so no more.
    template <typename Which>
    void Settle(int channel, Which which) {
        std::string const& subject = m_subjects[static_cast<std::size_t>(channel)];
        for (InspectionFinding& finding : m_found.findings) {
            bool const isPart = subject == finding.subject + "_date" || subject == finding.subject + "_time";
            if (!finding.isDoubt || (subject != finding.subject && !isPart) || !which(finding)) continue;
            finding.isDoubt = false;
            finding.option.clear();
            finding.evidence += "; as told";
        }
    }

    ImportOptions const& m_options;
    std::string const& m_input;
    std::string const& m_format;
    InspectionOptions m_told;
    std::optional<ColumnTemplate> m_template;
    Inspection m_found;
    std::vector<std::string> m_subjects;  ///< what the findings call the channels
};

/// A word as a shell takes it.
std::string Quoted(std::string const& word) {
    bool const isPlain = !word.empty() && std::ranges::all_of(word, [](char c) {
        auto const byte = static_cast<unsigned char>(c);
        return std::isalnum(byte) != 0 || std::string_view("-_./:,=+@%").find(c) != std::string_view::npos;
    });
    if (isPlain) return word;
    std::string quoted = "'";
    for (char const c : word) {
        if (c == '\'') {
            quoted += "'\\''";
        } else {
            quoted += c;
        }
    }
    return quoted + "'";
}

std::string WithCommas(std::string const& text) {
    std::string escaped;
    for (char const c : text) {
        if (c == ',') escaped += '\\';
        escaped += c;
    }
    return escaped;
}

/// "--column 3:name=Mag,type=double,units=nT"; empty for a channel that no option can name.
std::string ColumnWord(ColumnTextSettings const& settings, std::size_t channel) {
    NorvaChannelStruct const& column = settings.columns[channel];
    int const source = settings.columnReadings[channel].source;
    bool const isAlone = 1 == std::ranges::count_if(settings.columnReadings, [&](ColumnReading const& reading) {
                             return reading.source == source;
                         });
    if (!isAlone && column.name.find(':') != std::string::npos) return {};
    ColumnType const type = TypeOf(column);
    std::string word =
        isAlone ? std::to_string(source + 1) + ":name=" + WithCommas(column.name) + "," : WithCommas(column.name) + ":";
    word += "type=" + std::string(ColumnTypeName(type));
    if (!column.units.empty()) word += ",units=" + WithCommas(column.units);
    if (type == ColumnType::Text) word += ",width=" + std::to_string(column.arraySize);
    bool const isDate = type == ColumnType::Date;
    if (isDate || type == ColumnType::Time) {
        ValueTemplates const& templates = isDate ? DateTemplates() : TimeTemplates();
        int const place = templates.IndexOf(column.templateFormat);
        if (place >= 0) word += ",template=" + templates.names[static_cast<std::size_t>(place)];
    }
    return word;
}

char const* NameOf(InspectedLine::What what) {
    switch (what) {
        case InspectedLine::What::Mended:
            return "mended";
        case InspectedLine::What::LeftOut:
            return "left out";
        case InspectedLine::What::OtherTable:
            return "another table";
        default:
            return "spoilt cell";
    }
}

}  // namespace

bool IsProposed(ImportFormatInfo const& format) {
    return HasProposal(format.label);
}

bool GoesByProposal(ImportOptions const& options, ImportFormatInfo const& format) {
    bool isOpen = IsProposed(format) && !options.asItStands;
    if (isOpen && !options.columnTemplate.empty()) {
        isOpen = ReadTemplate(TemplatePath(options.columnTemplate)).settings.reading.has_value();
    }
    for (CLI::Option const* const option : isOpen ? options.ofFirstRows : options.ofProposal) {
        if (option->count() == 0) continue;
        if (isOpen) {
            throw CommandError(
                option->get_name() + " belongs to the import by the first rows: give --as-it-stands " + "with it",
                kExitUsage);
        }
        throw CommandError(
            option->get_name() + (IsProposed(format) ? " belongs to a proposal from the whole file, "
                                                       "not to --as-it-stands or a template"
                                                     : " has no meaning for the format \"" + format.label + "\""),
            kExitUsage);
    }
    return isOpen;
}

Inspection ProposeImport(ImportOptions const& options, std::string const& input, std::string const& format) {
    try {
        return CProposal(options, input, format).Take();
    } catch (CommandError const& error) {
        std::string const text = error.what();
        throw CommandError(text.find(input) == std::string::npos ? input + ": " + text : text, error.Status());
    }
}

std::string ShortText(Inspection const& proposal) {
    Inspection told;
    for (InspectionFinding const& finding : proposal.findings) {
        bool const isMain =
            finding.subject == "separator" || finding.subject == "header line" || finding.subject == "lines";
        if (isMain || finding.isDoubt) told.findings.push_back(finding);
    }
    std::string text = told.Text();
    if (!text.empty()) text.pop_back();
    return text;
}

std::string CommandLineOf(Inspection const& proposal, ImportOptions const& options, std::string const& input) {
    ColumnTextSettings const& settings = proposal.settings;
    std::vector<std::string> words = {"norva", "import", input};
    auto const add = [&words](std::string const& option, std::string const& value) {
        words.push_back(option);
        words.push_back(value);
    };
    if (!options.format.empty()) add("--format", options.format);
    for (auto const& [separator, name] : kSeparators) {
        if (settings.reading->separator == separator && !proposal.isConverted) add("--separator", name);
    }
    if (!proposal.isConverted) add("--header-line", std::to_string(proposal.headerLine));
    if (settings.labelColumn >= 0) {
        int const source = settings.columnReadings[static_cast<std::size_t>(settings.labelColumn)].source;
        add("--label-column", std::to_string(source + 1));
    } else if (proposal.counts.markers == 0) {
        add("--label-column", "none");
    }
    if (!options.dates.empty()) add("--dates", options.dates);
    auto const addNumbers = [&](std::string const& option, std::vector<double> const& numbers) {
        for (double const number : numbers) words.push_back(option + "=" + nlohmann::json(number).dump());
    };
    addNumbers("--no-data", options.noData);
    addNumbers("--keep", options.keep);
    for (std::string const& word : options.markers) add("--marker", word);
    for (std::size_t i = 0; i < settings.columns.size(); ++i) {
        if (std::string const word = ColumnWord(settings, i); !word.empty()) add("--column", word);
    }
    std::string line;
    for (std::string const& word : words) line += (line.empty() ? "" : " ") + Quoted(word);
    return line;
}

nlohmann::ordered_json ProposalJson(Inspection const& proposal, std::string const& command) {
    nlohmann::ordered_json findings = nlohmann::ordered_json::array();
    for (InspectionFinding const& finding : proposal.findings) {
        findings.push_back({{"subject", finding.subject},
                            {"choice", finding.choice},
                            {"evidence", finding.evidence},
                            {"doubt", finding.isDoubt}});
        if (!finding.option.empty()) findings.back()["option"] = finding.option;
    }
    nlohmann::ordered_json lines = nlohmann::ordered_json::array();
    for (InspectedLine const& line : proposal.lines) {
        lines.push_back({{"line", line.line},
                         {"last", line.last},
                         {"what", NameOf(line.what)},
                         {"text", line.text},
                         {"reason", line.reason}});
    }
    return {{"header_line", proposal.headerLine},
            {"unit_line", proposal.unitLine},
            {"rows", proposal.counts.rows},
            {"doubts", proposal.Doubts()},
            {"findings", std::move(findings)},
            {"odd_lines", std::move(lines)},
            {"survey_lines", proposal.surveyLines},
            {"command", command},
            {"settings", SettingsJson(proposal.settings)}};
}

ColumnTemplate TemplateOf(Inspection const& proposal) {
    return {proposal.settings, static_cast<int>(proposal.headerLine), proposal.settings.reading->headerText};
}

}  // namespace norva
