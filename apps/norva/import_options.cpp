#include "import_options.h"

#include "common/command_error.h"
#include "common/names.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace norva {

namespace {

constexpr std::array<std::string_view, 9> kColumnTypes = {"text", "float", "double",     "short", "long",
                                                          "date", "time",  "geographic", "skip"};
constexpr std::array<std::string_view, 4> kRecordFormats = {"int32", "int16", "double", "float"};

template <std::size_t N>
std::string ListOf(std::array<std::string_view, N> const& names) {
    return norva::ListOf(std::vector<std::string>(names.begin(), names.end()));
}

template <std::size_t N>
void RequireOneOf(std::string const& option, std::string const& value, std::array<std::string_view, N> const& names) {
    for (std::string_view const name : names) {
        if (value == name) return;
    }
    throw CLI::ValidationError(option, "'" + value + "' is none of " + ListOf(names));
}

int WholeNumber(std::string const& option, std::string const& value) {
    int number = 0;
    auto const [end, error] = std::from_chars(value.data(), value.data() + value.size(), number);
    if (error != std::errc{} || end != value.data() + value.size() || number < 1) {
        throw CLI::ValidationError(option, "'" + value + "' is not a whole number above 0");
    }
    return number;
}

}  // namespace

std::vector<std::string> SplitNames(std::string const& text) {
    std::vector<std::string> names(1);
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + 1 < text.size() && text[i + 1] == ',') {
            names.back() += text[++i];
        } else if (text[i] == ',') {
            names.emplace_back();
        } else {
            names.back() += text[i];
        }
    }
    return names;
}

ColumnOption ParseColumnOption(std::string const& text) {
    std::size_t const colon = text.find(':');
    if (colon == 0 || colon == std::string::npos) {
        throw CLI::ValidationError("--column", "'" + text + "' is not C:key=value,...");
    }
    ColumnOption option;
    option.column = text.substr(0, colon);
    for (std::string const& setting : SplitNames(text.substr(colon + 1))) {
        std::size_t const equals = setting.find('=');
        std::string const key = setting.substr(0, equals);
        std::string const value = equals == std::string::npos ? "" : setting.substr(equals + 1);
        if (key == "type") {
            RequireOneOf("--column type", value, kColumnTypes);
            option.type = value;
        } else if (key == "name") {
            option.name = value;
        } else if (key == "units") {
            option.units = value;
        } else if (key == "template") {
            option.dateTemplate = value;
        } else if (key == "width") {
            option.width = WholeNumber("--column width", value);
        } else {
            throw CLI::ValidationError("--column", "'" + key + "' is none of type, name, units, template, width");
        }
    }
    return option;
}

std::vector<RecordField> ParseRecordOption(std::string const& text) {
    std::vector<RecordField> fields;
    for (std::string const& part : SplitNames(text)) {
        RecordField field;
        std::size_t const colon = part.find(':');
        if (colon == 0 || colon == std::string::npos) {
            throw CLI::ValidationError("--record", "'" + part + "' is not NAME:FORMAT[>STORED][:UNITS]");
        }
        field.name = part.substr(0, colon);
        std::string formats = part.substr(colon + 1);
        if (std::size_t const units = formats.find(':'); units != std::string::npos) {
            field.units = formats.substr(units + 1);
            formats.resize(units);
        }
        std::size_t const arrow = formats.find('>');
        field.readFormat = formats.substr(0, arrow);
        RequireOneOf("--record", field.readFormat, kRecordFormats);
        if (arrow != std::string::npos) {
            field.writeFormat = formats.substr(arrow + 1);
            RequireOneOf("--record", field.writeFormat, kRecordFormats);
        }
        fields.push_back(std::move(field));
    }
    return fields;
}

void AddImportOptions(CLI::App& command, ImportOptions& options) {
    using Kinds = std::vector<SettingsKind>;
    Kinds const columns = {SettingsKind::ColumnText};
    Kinds const fields = {SettingsKind::ColumnText, SettingsKind::SeaSpy};
    Kinds const gbn = {SettingsKind::Gbn};
    Kinds const records = {SettingsKind::Records};
    Kinds const dumps = {SettingsKind::Cg3};
    std::string group;
    auto const declare = [&](CLI::Option* option, Kinds const& kinds) {
        option->group(group);
        options.declared.push_back({option, kinds});
        return option;
    };
    auto const names = [&](char const* name, std::vector<std::string>& list, char const* help, Kinds const& kinds) {
        declare(command.add_option_function<std::string>(
                    name, [&list](std::string const& text) { list = SplitNames(text); }, help),
                kinds);
    };
    command.add_option("--format", options.format,
                       "Format: a label of 'norva formats' or a word of it, such as csv (default: recognised from the "
                       "file)");

    group = "Column text (XYZ, CSV, GEM, CG5, IPR_12, GPX; templates and --column for SeaSPY too)";
    declare(command.add_option(
                "--template", options.columnTemplate,
                "Column template (a name, see 'norva template', or a .json file); the other options come after it"),
            fields);
    declare(command
                .add_option("--header-line", options.headerLine,
                            "Line of the file that names the columns, as an editor counts; 0 for none")
                ->check(CLI::NonNegativeNumber),
            columns);
    declare(command.add_option("--label-column", options.labelColumn,
                               "Column (name, or number from 1) whose changes start a new line; 'none' for no column"),
            columns);
    declare(command
                .add_option_function<std::vector<std::string>>(
                    "--column",
                    [&options](std::vector<std::string> const& texts) {
                        for (std::string const& one : texts) options.columns.push_back(ParseColumnOption(one));
                    },
                    "C:type=double,name=Mag,units=nT with C a name, or a number from 1; type: " + ListOf(kColumnTypes) +
                        "; also template=DD/MM/YYYY and width=8 (repeatable; also GBN). By a proposal: C may be "
                        "several, Mag,Alt, or '*'")
                ->expected(1)
                ->take_all(),
            {SettingsKind::ColumnText, SettingsKind::SeaSpy, SettingsKind::Gbn});

    group =
        "Proposal from the whole file (XYZ, CSV, GEM, CG5, IPR_12, GPX): each option settles one choice and leaves the "
        "others";
    auto const ofProposal = [&](CLI::Option* option) { options.ofProposal.push_back(declare(option, columns)); };
    declare(command.add_flag("--as-it-stands", options.asItStands,
                             "No proposal: guess from the first rows alone, as the dialog of the import does"),
            columns);
    ofProposal(command.add_option("--separator", options.separator, "Separator of the cells")
                   ->check(CLI::IsMember({"comma", "semicolon", "tab", "bar", "blanks"})));
    ofProposal(command.add_option("--dates", options.dates, "Order of dates where they allow several")
                   ->check(CLI::IsMember({"dmy", "mdy", "ymd"})));
    ofProposal(command.add_option("--no-data", options.noData, "Number that stands for a missing value (repeatable)")
                   ->expected(1)
                   ->take_all());
    ofProposal(command.add_option("--keep", options.keep, "Number that does not, though it looks so (repeatable)")
                   ->expected(1)
                   ->take_all());
    ofProposal(command
                   .add_option("--marker", options.markers,
                               "Further word that starts a line of the survey (repeatable); 'none': no word does")
                   ->expected(1)
                   ->take_all());

    group = "First rows alone (with --as-it-stands or a template of it)";
    auto const ofFirstRows = [&](CLI::Option* option) { options.ofFirstRows.push_back(declare(option, columns)); };
    ofFirstRows(command.add_option("--skip", options.skip, "Lines with text to skip at the top")
                    ->check(CLI::NonNegativeNumber));
    ofFirstRows(command.add_option_function<std::string>(
        "--delimiters",
        [&options](std::string const& text) {
            options.delimiters = text;
            std::size_t const tab = text.find("\\t");  // a tab is hard to type
            if (tab != std::string::npos) options.delimiters.replace(tab, 2, "\t");
        },
        "Characters that separate the names of the header line, e.g. ';' or ',\\t'"));

    group = "GBN";
    names("--lines", options.keepLines, "Lines to keep: names, or numbers from 1, separated by commas", gbn);
    names("--channels", options.keepChannels, "Channels to keep: names, or numbers from 1, separated by commas", gbn);

    group = "Fixed binary records";
    declare(command.add_option_function<std::string>(
                "--record", [&options](std::string const& layout) { options.record = ParseRecordOption(layout); },
                "Layout: \"X:double,Mag:float>double:nT\" (name, read format, stored format, units); formats: " +
                    ListOf(kRecordFormats)),
            records);
    declare(command.add_option("--points-per-line", options.pointsPerLine, "Records of one line (default: all)")
                ->check(CLI::PositiveNumber),
            records);
    declare(command.add_option("--records", options.records, "Records to import (default: all)")
                ->check(CLI::PositiveNumber),
            records);
    declare(command.add_flag("!--no-fiducial", options.fiducial, "Leave the fiducial channel out (also GBN)"),
            {SettingsKind::Records, SettingsKind::Gbn});
    declare(command.add_option("--frequency", options.frequency, "Sampling frequency of the fiducial channel in Hz")
                ->check(CLI::PositiveNumber),
            records);

    group = "Instrument dumps";
    names("--columns", options.dumpColumns, "CG3: columns to import: titles, or numbers from 1, separated by commas",
          dumps);
    declare(command.add_option("--date-format", options.dateFormat, "CG3: date format, e.g. YY/MM/DD"), dumps);
    declare(command.add_option("--time-format", options.timeFormat, "CG3: time format, e.g. HH:MM:SS"), dumps);
    declare(command.add_flag("--sort,!--no-sort", options.sortByTime, "CG3: sort by the time channel (default)"),
            dumps);
    declare(command
                .add_option_function<std::string>(
                    "--interpolated", [&options](std::string const& answer) { options.interpolated = answer == "yes"; },
                    "SeaSPY: import interpolated coordinates")
                ->check(CLI::IsMember({"yes", "no"})),
            {SettingsKind::SeaSpy});
}

void RequireApplicable(ImportOptions const& options, SettingsKind kind, std::string const& format) {
    for (ImportOptions::Declared const& one : options.declared) {
        if (one.option->count() == 0 || std::ranges::find(one.kinds, kind) != one.kinds.end()) continue;
        throw CommandError(one.option->get_name() + " has no meaning for the format \"" + format + "\"", kExitUsage);
    }
}

std::vector<std::string> ImportOptionWords(CLI::App const& command) {
    CLI::App known;
    ImportOptions unused;
    AddImportOptions(known, unused);
    std::vector<std::string> words;
    for (CLI::Option const* const option : known.get_options()) {
        CLI::Option const* const given = command.get_option_no_throw(option->get_name());
        if (given == nullptr || given == command.get_help_ptr()) continue;
        for (std::string const& value : given->results()) {
            bool const isFlag = given->get_items_expected_max() == 0;
            bool const isNo = isFlag && value == "false";
            words.push_back("--" + (isNo ? given->get_fnames() : given->get_lnames()).front());
            if (!isFlag) words.back() += "=" + value;
        }
    }
    return words;
}

ImportOptions ParseImportOptions(std::vector<std::string> words) {
    CLI::App command;
    ImportOptions options;
    AddImportOptions(command, options);
    std::ranges::reverse(words);  // as the parser takes them
    command.parse(std::move(words));
    options.declared.clear();  // they go with the command
    options.ofProposal.clear();
    options.ofFirstRows.clear();
    return options;
}

}  // namespace norva
