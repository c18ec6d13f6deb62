#include "commands.h"
#include "common/command_error.h"
#include "import_settings.h"
#include "input_file.h"
#include "jobs.h"
#include "norva/file_description.h"
#include "norva/file_util.h"
#include "norva/formats.h"
#include "norva/import_export.h"
#include "proposal.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <memory>
#include <optional>

namespace norva {

namespace {

nlohmann::ordered_json StoreJson(CNorvaFileUtil& store) {
    nlohmann::ordered_json lines = nlohmann::ordered_json::array();
    for (int profile = 0; profile < store.ProfileCount; ++profile) {
        std::string name;
        long locations = 0;
        int flag = 0;
        store.GetProfileInfo(profile, name, locations, flag);
        lines.push_back({{"name", name},
                         {"locations", locations},
                         {"deleted", locations - store.GetProfileLocationNum(profile, 1)},
                         {"flag", flag}});
    }
    nlohmann::ordered_json channels = nlohmann::ordered_json::array();
    for (int n = 0; n < store.ChannelCount; ++n) {
        int const index = store.GetFileChanIndex(n);
        channels.push_back({{"name", store.GetChannelName(index)},
                            {"units", store.GetChannelUnits(index)},
                            {"data_type", store.GetChannelDataType(index)},
                            {"record_type", store.GetChannelRecordType(index)},
                            {"array_size", store.GetChannelArraySize(index)},
                            {"display_format", store.GetChannelDisplayFormat(index)},
                            {"decimals", store.GetChannelNumDecPlaces(index)},
                            {"template", store.GetChannelTemplateFormat(index)}});
    }
    return {{"lines", std::move(lines)}, {"channels", std::move(channels)}};
}

void PrintStore(CNorvaFileUtil& store) {
    std::cout << store.ProfileCount << " lines\n";
    for (int profile = 0; profile < store.ProfileCount; ++profile) {
        std::string name;
        long locations = 0;
        int flag = 0;
        store.GetProfileInfo(profile, name, locations, flag);
        long const deleted = locations - store.GetProfileLocationNum(profile, 1);
        std::cout << "  " << std::left << std::setw(20) << name << std::right << std::setw(12) << locations
                  << " locations";
        if (deleted > 0) std::cout << ", " << deleted << " deleted";
        if (flag != 0) std::cout << ", hidden (flag " << flag << ")";
        std::cout << "\n";
    }
    std::cout << store.ChannelCount << " channels\n";
    for (int n = 0; n < store.ChannelCount; ++n) {
        int const index = store.GetFileChanIndex(n);
        NorvaChannelStruct channel;
        channel.dataType = store.GetChannelDataType(index);
        channel.displayFormat = store.GetChannelDisplayFormat(index);
        channel.arraySize = store.GetChannelArraySize(index);
        std::cout << "  " << std::left << std::setw(20) << store.GetChannelFullName(index) << "  "
                  << ValueTypeText(channel) << "\n";
    }
}

/// Whether the file is a store by its name or its first line; a damaged store is then called so.
bool IsStore(std::string const& path) {
    if (path.ends_with(".nvt") || path.ends_with(".NVT") || path.ends_with(".eet") || path.ends_with(".EET")) {
        return true;
    }
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) return false;  // looking into a pipe may take for ever
    constexpr std::string_view start = "PROFILES START";
    std::string bytes(start.size(), ' ');
    return std::ifstream(path, std::ios::binary).read(bytes.data(), static_cast<std::streamsize>(bytes.size())) &&
           bytes == start;
}

std::string KeyOf(std::string name) {
    std::replace(name.begin(), name.end(), ' ', '_');
    return name;
}

nlohmann::ordered_json JsonOf(FileDescription::Value const& value) {
    return std::visit([](auto const& held) { return nlohmann::ordered_json(held); }, value);
}

nlohmann::ordered_json DescriptionJson(FileDescription const& description) {
    nlohmann::ordered_json json = {{"format", description.format}};
    for (auto const& [name, value] : description.facts) json[KeyOf(name)] = JsonOf(value);
    for (FileDescription::Table const& table : description.tables) {
        nlohmann::ordered_json rows = nlohmann::ordered_json::array();
        for (std::vector<FileDescription::Value> const& row : table.rows) {
            nlohmann::ordered_json object = nlohmann::ordered_json::object();
            for (std::size_t i = 0; i < row.size(); ++i) object[KeyOf(table.columns[i])] = JsonOf(row[i]);
            rows.push_back(std::move(object));
        }
        json[KeyOf(table.name)] = std::move(rows);
    }
    if (!description.problem.empty()) json["problem"] = description.problem;
    return json;
}

/// Text of a file as a terminal may get it: a blank for a control character.
std::string TextOf(FileDescription::Value const& value) {
    if (auto const* const count = std::get_if<std::int64_t>(&value)) return std::to_string(*count);
    if (auto const* const number = std::get_if<double>(&value)) return nlohmann::json(*number).dump();
    std::string text = std::get<std::string>(value);
    std::replace_if(
        text.begin(), text.end(), [](unsigned char c) { return c < ' ' || c == 0x7F; }, ' ');
    return text;
}

void PrintTable(FileDescription::Table const& table) {
    std::cout << table.rows.size() << " " << table.name << "\n";
    if (table.rows.empty()) return;
    std::vector<std::size_t> widths;
    for (std::string const& title : table.columns) widths.push_back(title.size());
    for (std::vector<FileDescription::Value> const& row : table.rows) {
        for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], TextOf(row[i]).size());
    }
    std::string line;
    auto const add = [&](std::size_t column, std::string const& text, bool isNumber) {
        std::string const blanks(widths[column] - std::min(widths[column], text.size()), ' ');
        line += "  " + (isNumber ? blanks + text : text + blanks);
    };
    auto const print = [&line] {
        std::cout << line.substr(0, line.find_last_not_of(' ') + 1) << "\n";
        line.clear();
    };
    auto const isNumber = [](FileDescription::Value const& value) {
        return !std::holds_alternative<std::string>(value);
    };
    for (std::size_t i = 0; i < widths.size(); ++i) add(i, table.columns[i], isNumber(table.rows.front()[i]));
    print();
    for (std::vector<FileDescription::Value> const& row : table.rows) {
        for (std::size_t i = 0; i < row.size(); ++i) add(i, TextOf(row[i]), isNumber(row[i]));
        print();
    }
}

void PrintDescription(FileDescription const& description) {
    std::cout << "format: " << description.format << "\n";
    for (auto const& [name, value] : description.facts) std::cout << name << ": " << TextOf(value) << "\n";
    for (FileDescription::Table const& table : description.tables) PrintTable(table);
    if (!description.problem.empty()) std::cout << "problem: " << description.problem << "\n";
}

struct InfoJob {
    std::string argument;
    std::string path;  ///< where it is read
    bool json = false;
    DescriptionSettings settings;
};

/// How 'norva import' would read a text; none, with the reason, where it does not read as a table.
std::optional<Inspection> FindProposal(InfoJob const& job, std::string const& label, std::string& problem) {
    ImportOptions options;
    if (!job.settings.format.empty()) options.format = label;
    try {
        return ProposeImport(options, job.path, label);
    } catch (CommandError const& error) {
        problem = error.what();
        return {};
    }
}

/// What the first rows alone say of rows, columns and lines would stand against the proposal.
void Correct(FileDescription& description, Inspection const& proposal, bool keepsTables) {
    if (!keepsTables) description.tables.resize(std::min<std::size_t>(description.tables.size(), 1));
    if (proposal.isConverted) return;
    auto const rows = static_cast<std::int64_t>(proposal.counts.rows);
    for (auto& [name, value] : description.facts) {
        if (name == "rows") value = rows;
    }
}

int PrintInfo(InfoJob const& job) {
    nlohmann::ordered_json json;
    if (job.settings.format.empty() && job.settings.record.empty() && IsStore(job.path)) {
        CNorvaFileUtil store;
        OpenStore(store, job.path);
        if (!job.json) PrintStore(store);
        if (job.json) json = StoreJson(store);
    } else {
        DescriptionSettings settings = job.settings;
        if (!settings.format.empty()) settings.format = FindFormat(settings.format).label;
        FileDescription description;
        if (DescribeFile(job.path, settings, description) == 0) {
            // A text that the first rows alone do not read may have a proposal all the same.
            std::string const failure = GetLastErrorText();
            description = {};
            description.format = settings.format.empty() ? RecognizeImportFormat(job.path).label : settings.format;
            bool const mayBeText = job.settings.record.empty() && !description.format.empty();
            if (!mayBeText || !IsProposed(FindFormat(description.format))) throw CommandError(failure);
            description.problem = failure;
        }
        bool const isText = job.settings.record.empty() && IsProposed(FindFormat(description.format));
        std::string problem;
        std::optional<Inspection> const proposal =
            isText ? FindProposal(job, description.format, problem) : std::optional<Inspection>();
        if (isText && !proposal && !description.problem.empty()) throw CommandError(description.problem);
        if (proposal) {
            description.problem.clear();
            Correct(description, *proposal, job.json);
        }
        ImportOptions options;
        if (!job.settings.format.empty()) options.format = description.format;
        std::string const command = proposal ? CommandLineOf(*proposal, options, job.argument) : std::string();
        if (job.json) {
            json = DescriptionJson(description);
            if (proposal) json["proposal"] = ProposalJson(*proposal, command);
            if (!problem.empty()) json["proposal"] = {{"problem", problem}};
        } else {
            PrintDescription(description);
            if (!problem.empty()) std::cout << "proposal: none, " << problem << "\n";
            if (proposal) {
                std::cout << "proposal for the import, from the whole file (? stands before a doubt)\n"
                          << proposal->Text() << "the import that makes these choices\n  " << command << "\n";
            }
        }
    }
    if (job.json) std::cout << json.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) << "\n";
    return kExitDone;
}

int RunInfo(InfoJob job) {
    CInputFile const input(job.argument);
    job.path = input.Path();
    return input.WithName([&job] { return PrintInfo(job); });
}

}  // namespace

void AddInfoCommand(CCommands& commands) {
    auto const job = std::make_shared<InfoJob>();
    CLI::App& command = commands.Add("info", "Say what is in a store, or in a file that can be imported",
                                     "norva info survey.nvt --json\n  norva info survey.gbn\n"
                                     "  norva info run.bin --record \"X:double,Mag:float:nT\"",
                                     [job] { return RunInfo(*job); });
    command.add_option("FILE", job->argument, "File to look at, - for standard input")->required();
    command.add_flag("--json", job->json, "Print JSON");
    command.add_option("--format", job->settings.format,
                       "Format: a label of 'norva formats' or a word of it (default: recognised from the file)");
    command.add_option_function<std::string>(
        "--record",
        [job](std::string const& layout) {
            if (job->settings.format.empty()) job->settings.format = "Binary XYZ";
            for (RecordField const& field : ParseRecordOption(layout)) {
                job->settings.record.push_back({field.name, field.readFormat, field.units});
            }
        },
        "Layout of binary records, as 'norva import' takes it");
}

}  // namespace norva
