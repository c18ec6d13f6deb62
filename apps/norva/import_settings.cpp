#include "import_settings.h"

#include "common/command_error.h"
#include "common/known_kind.h"
#include "common/names.h"
#include "norva/contents.h"
#include "norva/exchange.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <map>

namespace norva {

namespace {

/// Ends the command for a setting that the file refuses.
void Require(Status const& status, std::string const& about) {
    if (!status) throw CommandError(about + ": " + (status.Reason().empty() ? status.Text() : status.Reason()));
}

std::string_view WithoutUnits(std::string_view title) {
    std::string_view name = title.substr(0, title.find_first_of(":("));
    while (!name.empty() && name.back() == ' ') name.remove_suffix(1);
    return name;
}

/// A column by its title, by the name in its title, or by its number from 1.
int FindColumn(CColumnTextDraft const& draft, std::string const& wanted) {
    std::vector<std::string> const& titles = draft.Titles();
    std::vector<std::string> names;
    for (std::string const& title : titles) {
        bool const isTitle = EqualIgnoringCase(title, wanted);
        names.emplace_back(isTitle ? title : std::string(WithoutUnits(title)));
    }
    return FindNamed(names, wanted, 1, "column");
}

HeaderDelimiters DelimitersOf(std::string const& characters) {
    HeaderDelimiters delimiters;
    for (char const character : characters) {
        switch (character) {
            case ',':
                delimiters.comma = true;
                break;
            case '\t':
                delimiters.tab = true;
                break;
            case ';':
                delimiters.semicolon = true;
                break;
            case ' ':
                delimiters.space = true;
                break;
            default:
                if (delimiters.other) {
                    throw CommandError("--delimiters: only one character besides , ; tab and space", kExitUsage);
                }
                delimiters.other = true;
                delimiters.otherText = character;
        }
    }
    return delimiters;
}

/// The first number of lines to skip after which the rows have the columns that the header line names; 0 for none.
int SkipThatFits(CColumnTextDraft const& draft, int line, HeaderDelimiters const& delimiters) {
    for (int skip = std::max(line, draft.FirstSkip()); skip <= draft.LastSkip(); ++skip) {
        CColumnTextDraft trial = draft;
        if (trial.SetSkip(skip) && trial.TakeHeaderLine(line - 1, delimiters)) return skip;
    }
    return 0;
}

/// Place of a line of the file, from 1, among those with text, from 1.
int TextLine(CColumnTextDraft const& draft, int number) {
    std::vector<PreviewLine> const& lines = draft.Preview().lines;
    auto const found = std::ranges::find(lines, static_cast<std::uint64_t>(number), &PreviewLine::number);
    if (found != lines.end()) return static_cast<int>(found - lines.begin()) + 1;
    throw CommandError("--header-line " + std::to_string(number) + ": There is no text in line " +
                       std::to_string(number) + ", or it is not among the first " + std::to_string(lines.size()) +
                       " lines with text");
}

void TakeHeaderLine(CColumnTextDraft& draft, int number, ImportOptions const& options) {
    std::string const option = "--header-line " + std::to_string(number);
    int const line = TextLine(draft, number);
    bool const isAmongRows = line > draft.HeaderCount() && line <= draft.LastSkip();
    if (isAmongRows) Require(draft.SetSkip(std::max(line, draft.FirstSkip())), option);
    HeaderDelimiters const delimiters =
        options.delimiters.empty() ? draft.UsualDelimiters() : DelimitersOf(options.delimiters);
    Status const status = draft.TakeHeaderLine(line - 1, delimiters);
    if (status) return;
    int const skip = SkipThatFits(draft, line, delimiters);
    bool const helps = skip > 0 && skip != draft.Settings().skip;
    Require(status, option + (helps ? " (try --skip " + std::to_string(skip) + ")" : ""));
}

/// Place of a template named by its text or its code.
int TemplateCode(ValueTemplates const& templates, std::string const& wanted, std::string const& what) {
    return templates.codes[static_cast<std::size_t>(FindNamed(templates.names, wanted, 0, what))];
}

void SetColumn(CColumnTextDraft& draft, ColumnOption const& option) {
    int const column = FindColumn(draft, option.column);
    std::string const about = "--column " + option.column;
    if (!option.type.empty()) Require(draft.SetType(column, FindColumnType(option.type).value()), about);
    if (option.width) Require(draft.SetTextSize(column, *option.width), about);
    if (option.dateTemplate) {
        ColumnType const type = TypeOf(draft.Settings().columns[static_cast<std::size_t>(column)]);
        if (type != ColumnType::Date && type != ColumnType::Time) {
            throw CommandError(about + ": a template goes with the types date and time");
        }
        ValueTemplates const& templates = type == ColumnType::Date ? DateTemplates() : TimeTemplates();
        Require(draft.SetTemplate(column, TemplateCode(templates, *option.dateTemplate, "template")), about);
    }
    if (option.name) draft.SetName(column, *option.name);
    if (option.units) draft.SetUnits(column, *option.units);
}

bool SaysColumns(ImportOptions const& options) {
    return !options.columnTemplate.empty() || options.skip || options.headerLine || !options.columns.empty() ||
           !options.labelColumn.empty() || !options.delimiters.empty();
}

ChosenSettings ColumnsFrom(ImportOptions const& options, ImportFormatInfo const& format, std::string const& input,
                           bool needsColumns) {
    bool const isLog = format.settings == SettingsKind::SeaSpy;
    if (!isLog && !needsColumns && !SaysColumns(options)) return {};
    TextPreview preview;
    if (Status const status = ReadTextPreview(input, format.label, preview); !status) throw CommandError(status.Text());
    bool const mayInterpolate = preview.hasCoordinates && !options.interpolated;
    CColumnTextDraft draft(std::move(preview));
    if (!options.columnTemplate.empty()) ApplyTemplate(ReadTemplate(TemplatePath(options.columnTemplate)), draft);
    if (options.skip) Require(draft.SetSkip(*options.skip), "--skip " + std::to_string(*options.skip));
    if (options.headerLine) TakeHeaderLine(draft, *options.headerLine, options);
    for (ColumnOption const& column : options.columns) SetColumn(draft, column);
    if (!options.labelColumn.empty() && options.labelColumn != "none")
        draft.SetLabelColumn(FindColumn(draft, options.labelColumn));
    ChosenSettings chosen;
    chosen.columns = TemplateOf(draft);
    chosen.mayInterpolate = mayInterpolate;
    if (isLog) {
        chosen.settings = SeaSpySettings{draft.Settings().columns, options.interpolated.value_or(false)};
    } else {
        chosen.settings = draft.Settings();
    }
    return chosen;
}

RecordSettings RecordsFrom(ImportOptions const& options, std::string const& input) {
    std::map<RecordChannel::Format, int> const stored = {{RecordChannel::Format::Int32, DataType::kLong},
                                                         {RecordChannel::Format::Int16, DataType::kShort},
                                                         {RecordChannel::Format::Double, DataType::kDouble},
                                                         {RecordChannel::Format::Float, DataType::kFloat}};
    if (options.record.empty()) {
        std::string start(16, '\0');
        std::ifstream(input, std::ios::binary).read(start.data(), static_cast<std::streamsize>(start.size()));
        if (std::string_view const kind = KnownKind(start); !kind.empty()) {
            throw CommandError("it is " + std::string(kind));
        }
        throw CommandError("a file of binary records needs --record, for example --record \"X:double,Mag:float\"",
                           kExitUsage);
    }
    RecordSettings settings;
    std::uintmax_t size = 0;
    for (RecordField const& field : options.record) {
        RecordChannel channel{field.name, field.units};
        channel.format = FindRecordFormat(field.readFormat).value();
        auto const write = field.writeFormat.empty() ? channel.format : FindRecordFormat(field.writeFormat).value();
        channel.dataType = stored.at(write);
        size += RecordFormatWidth(channel.format);
        settings.channels.push_back(std::move(channel));
    }
    std::error_code error;
    std::uintmax_t const length = std::filesystem::file_size(input, error);
    if (!error && size != 0 && length % size != 0 && !options.records) {
        throw CommandError(std::to_string(length) + " bytes are no whole number of records of " + std::to_string(size) +
                           " bytes (" + std::to_string(length / size) + " records and " +
                           std::to_string(length % size) + " bytes more); give --records to import it all the same");
    }
    settings.records = options.records;
    settings.pointsPerLine = options.pointsPerLine;
    settings.fiducial = options.fiducial;
    settings.frequency = options.frequency.value_or(settings.frequency);
    return settings;
}

GbnSettings GbnFrom(ImportOptions const& options, std::string const& input) {
    std::map<std::string, int> const types = {{"float", DataType::kFloat},
                                              {"short", DataType::kShort},
                                              {"double", DataType::kDouble},
                                              {"long", DataType::kLong},
                                              {"text", DataType::kText}};
    GbnSettings settings;
    settings.fiducial = options.fiducial;
    if (options.keepLines.empty() && options.keepChannels.empty() && options.columns.empty()) return settings;
    GbnListing listing;
    if (Status const status = ListGbnFile(input, listing); !status) throw CommandError(status.Text());
    std::vector<std::string> lines;
    std::vector<std::string> channels;
    for (GbnListing::Line const& line : listing.lines) lines.push_back(line.name);
    for (NorvaChannelStruct const& channel : listing.channels) channels.push_back(channel.name);
    // The store takes them in the order of the file.
    auto const choose = [](std::vector<std::string> const& names, std::vector<std::string> const& wanted,
                           std::string const& what) {
        std::vector<int> places = FindListed(names, wanted, 1, what);
        std::ranges::sort(places);
        return places;
    };
    if (!options.keepLines.empty()) settings.lines = choose(lines, options.keepLines, "line");
    if (!options.keepChannels.empty()) settings.channels = choose(channels, options.keepChannels, "channel");
    for (ColumnOption const& option : options.columns) {
        if (option.width || option.dateTemplate) {
            throw CommandError("--column " + option.column + ": a GBN channel has no width and no template",
                               kExitUsage);
        }
        GbnSettings::Channel change;
        change.number = FindNamed(channels, option.column, 1, "channel");
        if (!option.type.empty()) {
            auto const type = types.find(option.type);
            if (type == types.end()) {
                throw CommandError("--column " + option.column + ": a GBN channel cannot be made '" + option.type +
                                   "'");
            }
            change.dataType = type->second;
        }
        change.name = option.name;
        change.units = option.units;
        settings.changes.push_back(std::move(change));
    }
    return settings;
}

Cg3Settings Cg3From(ImportOptions const& options, ImportFormatInfo const& format, std::string const& input) {
    ImportSettings proposed;
    if (!options.asItStands) {
        if (Status const status = ProposeSettings(input, format.label, proposed); !status) {
            throw CommandError(status.Text());
        }
    }
    Cg3Settings settings = options.asItStands ? Cg3Settings() : std::get<Cg3Settings>(proposed);
    if (!options.dumpColumns.empty()) {
        Cg3Listing listing;
        if (Status const status = ListCg3File(input, listing); !status) throw CommandError(status.Text());
        settings.columns = FindListed(listing.columns, options.dumpColumns, 1, "column");
    }
    if (!options.dateFormat.empty()) {
        settings.dateFormat = TemplateCode(DateTemplates(), options.dateFormat, "date format");
    }
    if (!options.timeFormat.empty()) {
        settings.timeFormat = TemplateCode(TimeTemplates(), options.timeFormat, "time format");
    }
    settings.sortByTime = options.sortByTime;
    return settings;
}

/// The letters and digits of a text, in lower case.
std::string Letters(std::string_view text) {
    std::string letters;
    for (char const character : text) {
        auto const byte = static_cast<unsigned char>(character);
        if (std::isalnum(byte) != 0) letters += static_cast<char>(std::tolower(byte));
    }
    return letters;
}

/// Whether one of the words of a label is `wanted`, both as Letters gives them.
bool HoldsWord(std::string const& label, std::string const& wanted) {
    for (std::size_t start = 0; start < label.size();) {
        std::size_t const end = std::min(label.find_first_of(" (", start), label.size());
        if (Letters(std::string_view(label).substr(start, end - start)) == wanted) return true;
        start = end + 1;
    }
    return false;
}

}  // namespace

ImportFormatInfo FindFormat(std::string const& wanted) {
    std::vector<ImportFormatInfo> const formats = ListImportFormats(kEveryFormat);
    std::vector<std::string> labels;
    for (ImportFormatInfo const& format : formats) labels.push_back(format.label);
    auto const ofLabel = [&](std::string const& label) {
        return std::ranges::find_if(labels, [&](std::string const& one) { return EqualIgnoringCase(one, label); });
    };
    auto found = ofLabel(wanted);
    if (found == labels.end()) found = ofLabel("ASCII " + wanted);
    std::string const word = Letters(wanted);
    if (found == labels.end()) {
        found = std::ranges::find_if(labels, [&](std::string const& label) { return HoldsWord(label, word); });
        bool const isOther =
            found != labels.end() &&
            std::any_of(found + 1, labels.end(), [&](std::string const& label) { return HoldsWord(label, word); });
        if (isOther) found = labels.end();
    }
    if (found != labels.end()) return formats[static_cast<std::size_t>(found - labels.begin())];
    return formats[static_cast<std::size_t>(FindNamed(labels, wanted, 1, "format"))];
}

ChosenSettings SettingsFrom(ImportOptions const& options, ImportFormatInfo const& format, std::string const& input,
                            bool needsColumns) {
    RequireApplicable(options, format.settings, format.label);
    try {
        switch (format.settings) {
            case SettingsKind::ColumnText:
            case SettingsKind::SeaSpy:
                return ColumnsFrom(options, format, input, needsColumns);
            case SettingsKind::Cg3:
                return {Cg3From(options, format, input)};
            case SettingsKind::Records:
                return {RecordsFrom(options, input)};
            case SettingsKind::Gbn:
                return {GbnFrom(options, input)};
            case SettingsKind::None:
                break;
        }
    } catch (CommandError const& error) {
        std::string const text = error.what();
        throw CommandError(text.find(input) == std::string::npos ? input + ": " + text : text, error.Status());
    }
    return {};
}

int BetterSkip(ImportReport const& report, ColumnTextSettings const& settings, ImportFormatInfo const& format,
               std::string const& input) {
    TextPreview preview;
    bool const isMost = report.moreValues.count > report.LocationCount() / 2;
    if (!isMost || !ReadTextPreview(input, format.label, preview)) return 0;
    CColumnTextDraft draft(std::move(preview));
    for (int skip = settings.skip + 1; skip <= draft.LastSkip(); ++skip) {
        if (draft.SetSkip(skip) && draft.Settings().columns.size() > settings.columns.size()) return skip;
    }
    return 0;
}

}  // namespace norva
