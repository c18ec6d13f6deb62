#include "commands.h"
#include "common/command_error.h"
#include "jobs.h"
#include "norva/formats.h"
#include "reports.h"
#include "scratch_folder.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <memory>
#include <set>

namespace norva {

namespace {

namespace fs = std::filesystem;

/// The export options that "export" and "convert" share.
void AddExportOptions(CLI::App& command, ExportOptions& options, bool withSelection) {
    if (withSelection) {
        command.add_option_function<std::string>(
            "--lines", [&options](std::string const& names) { options.lines = SplitNames(names); },
            "Lines to write, in this order: names or numbers from 0, separated by commas (default: all)");
        command.add_option_function<std::string>(
            "--channels", [&options](std::string const& names) { options.channels = SplitNames(names); },
            "Channels to write, in this order: names or numbers from 0 (default: all)");
    }
    command.add_flag("--label-as-channel", options.labelAsChannel, "Write the line's name in a column of its own");
    command.add_flag("--point-id", options.pointId, "Write a point number in a column of its own");
    command.add_flag("--force", options.force, "Replace existing files; write sheets too large for their readers");
    command.add_flag("--units,!--no-units", options.units, "Keep the units in the column titles (default)");
}

struct ConvertJob {
    std::vector<std::string> paths;
    std::string extension;  ///< given by --to
    bool quiet = false;
    ImportOptions import;
    ExportOptions output;
};

void ConvertOne(std::string const& input, std::string const& output, ConvertJob const& job,
                CScratchFolder const& scratch, CConsole& console) {
    RequireFree(output, job.output.force);
    std::string const store = scratch.StorePath(input);
    RunImport(input, store, job.import, console);
    RunExport(store, output, job.output, console);
    console.Say(output + ": " + StoreSummary(store));
    std::error_code error;
    fs::remove(store, error);
}

/// Goes on after a bad file and sums up at the end.
int RunConvert(ConvertJob const& job) {
    CConsole console(job.quiet);
    std::vector<std::string> inputs = job.paths;
    std::string const target = inputs.back();
    inputs.pop_back();
    bool const intoFolder = fs::is_directory(target) || inputs.size() > 1 || !job.extension.empty();
    std::error_code error;
    if (intoFolder && !fs::is_directory(target) && !fs::create_directory(target, error)) {
        throw CommandError(target + ": " + (error ? error.message() : "is no folder"), kExitUsage);
    }
    std::string const extension = "." + (job.extension.empty() ? "xyz" : job.extension);

    CScratchFolder const scratch;
    std::vector<std::string> failed;
    std::set<std::string> outputs;
    for (std::string const& input : inputs) {
        std::string const output =
            intoFolder ? (fs::path(target) / fs::path(input).stem()).string() + extension : WrittenPath(target);
        try {
            if (!outputs.insert(output).second) throw CommandError(input + ": another file became " + output);
            ConvertOne(input, output, job, scratch, console);
        } catch (CommandError const& error) {
            if (!intoFolder || error.Status() == kExitUsage) throw;
            console.Complain(error.what());
            failed.push_back(input);
        }
    }
    if (intoFolder) {
        std::string summary =
            std::to_string(inputs.size() - failed.size()) + " of " + std::to_string(inputs.size()) + " files converted";
        for (std::string const& input : failed) summary += "\n  failed: " + input;
        console.Say(summary);
    }
    return failed.empty() ? kExitDone : kExitFailed;
}

}  // namespace

void AddFormatsCommand(CCommands& commands) {
    auto const json = std::make_shared<bool>(false);
    CLI::App& command =
        commands.Add("formats", "List the formats that can be read and written", "norva formats", [json] {
            nlohmann::ordered_json imports = nlohmann::ordered_json::array();
            nlohmann::ordered_json exports = nlohmann::ordered_json::array();
            std::string text = "Read:\n";
            auto const add = [&text](std::string label, std::string const& files) {
                label.resize(std::max<std::size_t>(label.size(), 28), ' ');
                text += "  " + label + files + "\n";
            };
            for (ImportFormatInfo const& format : ListImportFormats(kHighestLevel)) {
                imports.push_back({{"code", format.code}, {"label", format.label}, {"filter", format.filter}});
                add(format.label, format.filter.substr(0, format.filter.find('|')));
            }
            text += "Written:\n";
            for (ExportFormatInfo const& format : ListExportFormats()) {
                exports.push_back({{"label", format.label}, {"extensions", format.extensions}});
                std::string files;
                for (std::string const& extension : format.extensions)
                    files += (files.empty() ? "*." : "; *.") + extension;
                add(format.label, files);
            }
            nlohmann::ordered_json const list = {{"import", std::move(imports)}, {"export", std::move(exports)}};
            std::cout << (*json ? list.dump() + "\n" : text);
            return kExitDone;
        });
    command.add_flag("--json", *json, "Print JSON");
}

void AddImportCommand(CCommands& commands) {
    struct Job {
        std::string input;
        std::string store;
        bool force = false;
        bool quiet = false;
        std::string saveTemplate;
        std::string report;
        bool strict = false;
        ImportOptions options;
        CLI::App const* command = nullptr;
    };
    auto const job = std::make_shared<Job>();
    CLI::App& command = commands.Add(
        "import", "Import a file into a new store",
        "norva import survey.csv -o survey.nvt --header-line 1 --label-column Line --column Mag:type=double,units=nT",
        [job] {
            CConsole console(job->quiet);
            if (job->store.empty()) job->store = fs::path(job->input).replace_extension("nvt").string();
            job->store = WrittenPath(job->store);
            RequireFree(job->store, job->force);
            std::string const templatePath = job->saveTemplate.empty() ? "" : TemplatePath(job->saveTemplate);
            if (!templatePath.empty()) RequireFree(templatePath, job->force);
            if (!job->report.empty()) RequireReportPath(job->report, job->force);
            ColumnTemplate chosen;
            RunImport(job->input, job->store, job->options, console, &chosen);
            console.Say(job->store + ": " + StoreSummary(job->store));
            if (!templatePath.empty()) {
                if (chosen.columns.empty()) throw CommandError(templatePath + ": this format has no column template");
                WriteTemplate(templatePath, chosen);
                console.Say(templatePath + ": written");
            }
            return TellReport({job->report, job->strict, ImportOptionWords(*job->command)}, chosen, console);
        });
    job->command = &command;
    command.add_option("INPUT", job->input, "File to import")->required();
    command.add_option("-o,--output", job->store, "Store to make (default: the input with the extension .nvt)");
    command.add_flag("--force", job->force, "Replace an existing store or template");
    command.add_flag("--quiet", job->quiet, "Say only what went wrong");
    command.add_option("--report", job->report, "Write what became of every line and value (.json or .html)");
    command.add_flag("--strict", job->strict,
                     "Exit with status " + std::to_string(kExitLoss) +
                         " when anything was lost or changed; the store is made all the same");
    AddImportOptions(command, job->options);
    command
        .add_option("--save-template", job->saveTemplate,
                    "Keep the choices for the columns as a template (a name or a .json file)")
        ->group("Column text");
}

void AddExportCommand(CCommands& commands) {
    struct Job {
        std::string store;
        std::string output;
        bool quiet = false;
        ExportOptions options;
    };
    auto const job = std::make_shared<Job>();
    CLI::App& command = commands.Add(
        "export", "Write a store in another format; the extension of OUTPUT names it (xyz, txt, xls, gbn, nvt)",
        "norva export survey.nvt survey.xyz --lines 1000,1010 --channels X,Y,Mag --no-units", [job] {
            CConsole console(job->quiet);
            job->output = WrittenPath(job->output);
            RequireFree(job->output, job->options.force);
            RunExport(job->store, job->output, job->options, console);
            console.Say(job->output + ": written");
            return kExitDone;
        });
    command.add_option("STORE", job->store, "Store to read")->required();
    command.add_option("OUTPUT", job->output, "File to write")->required();
    command.add_flag("--quiet", job->quiet, "Say only what went wrong");
    AddExportOptions(command, job->options, true);
}

void AddConvertCommand(CCommands& commands) {
    auto const job = std::make_shared<ConvertJob>();
    CLI::App& command =
        commands.Add("convert", "Import files and write them out in another format, without keeping the store",
                     "norva convert survey.csv survey.xyz\n  norva convert *.gpx folder --to xyz",
                     [job] { return RunConvert(*job); });
    command.add_option("PATHS", job->paths, "INPUT OUTPUT, or INPUT... FOLDER")->required()->expected(2, -1);
    command.add_option("--to", job->extension,
                       "Extension of the files made in FOLDER, which is made if it is missing (default: xyz)");
    command.add_flag("--quiet", job->quiet, "Say only what went wrong");
    AddImportOptions(command, job->import);
    AddExportOptions(command, job->output, false);
}

}  // namespace norva
