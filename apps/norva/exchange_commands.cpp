#include "commands.h"
#include "common/command_error.h"
#include "import_settings.h"
#include "jobs.h"
#include "norva/formats.h"
#include "reports.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <memory>

namespace norva {

namespace fs = std::filesystem;

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
    command.add_flag("--full-digits", options.fullDigits,
                     "Write as many digits as a number needs to read back the same (XYZ text and worksheets)");
    command.add_flag("--force", options.force, "Replace existing files; write sheets too large for their readers");
    command.add_flag("--units,!--no-units", options.units, "Keep the units in the column titles (default)");
    command.add_flag("--unit-row", options.unitRow, "Write the units into a row of their own below the titles (CSV)");
}

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
            for (ImportFormatInfo const& format : ListImportFormats(kEveryFormat)) {
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
        std::size_t places = ReportFinding::kUsualPlaces;
        bool strict = false;
        ImportOptions options;
        CLI::App const* command = nullptr;
    };
    auto const job = std::make_shared<Job>();
    CLI::App& command = commands.Add(
        "import", "Import a file into a new store",
        "norva import survey.csv\n  norva import survey.csv -o survey.nvt --column Mag:units=nT --dates dmy", [job] {
            CConsole console(job->quiet);
            if (job->store.empty()) job->store = fs::path(job->input).replace_extension("nvt").string();
            job->store = WrittenPath(job->store);
            RequireFree(job->store, job->force, job->input);
            std::string const templatePath = job->saveTemplate.empty() ? "" : TemplatePath(job->saveTemplate);
            if (!templatePath.empty()) RequireFree(templatePath, job->force, job->input);
            if (!job->report.empty()) RequireReportPath(job->report, job->force, job->input);
            ImportOutcome const outcome = RunImport({job->input, job->store, job->options, !templatePath.empty(),
                                                     !job->report.empty(), job->places, job->strict},
                                                    console);
            console.Say(job->store + ": " + StoreSummary(job->store));
            if (!templatePath.empty()) {
                if (!outcome.columns) throw CommandError(templatePath + ": this format has no column template");
                WriteTemplate(templatePath, *outcome.columns);
                console.Say(templatePath + ": written");
            }
            TellSummary(outcome.report, job->strict, console);
            if (!job->report.empty()) {
                WriteReport(job->report, outcome, ImportOptionWords(*job->command));
                console.Say(job->report + ": written");
            }
            return job->strict && (HasLoss(outcome.report) || outcome.doubts > 0) ? kExitLoss : kExitDone;
        });
    job->command = &command;
    command.add_option("INPUT", job->input, "File to import")->required();
    command.add_option("-o,--output", job->store, "Store to make (default: the input with the extension .nvt)");
    command.add_flag("--force", job->force, "Replace an existing store or template");
    command.add_flag("--quiet", job->quiet, "Say only what went wrong, losses among it");
    command.add_option("--report", job->report, "Write what became of every line and value (.json or .html)");
    AddPlacesOption(command, job->places);
    command.add_flag(
        "--strict", job->strict,
        "Exit with status " + std::to_string(kExitLoss) +
            " when anything was lost or changed, or the proposal has doubts; the store is made all the same");
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
        bool strict = false;
        ExportOptions options;
    };
    auto const job = std::make_shared<Job>();
    CLI::App& command = commands.Add(
        "export", "Write a store in another format; the extension of OUTPUT names it (xyz, txt, xls, gbn, nvt)",
        "norva export survey.nvt survey.xyz --lines 1000,1010 --channels X,Y,Mag --no-units", [job] {
            CConsole console(job->quiet);
            job->output = WrittenPath(job->output);
            RequireFree(job->output, job->options.force);
            ExportReport const report = RunExport(job->store, job->output, job->options, console);
            console.Say(job->output + ": written");
            TellSummary(report, job->output, job->strict, console);
            return job->strict && report.LossCount() > 0 ? kExitLoss : kExitDone;
        });
    command.add_option("STORE", job->store, "Store to read")->required();
    command.add_option("OUTPUT", job->output, "File to write")->required();
    command.add_flag("--strict", job->strict,
                     "Exit with status " + std::to_string(kExitLoss) +
                         " when a value does not read back from the file; the file is made all the same");
    command.add_flag("--quiet", job->quiet, "Say only what went wrong, losses among it");
    AddExportOptions(command, job->options, true);
}

}  // namespace norva
