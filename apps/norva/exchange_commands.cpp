#include "commands.h"
#include "common/command_error.h"
#include "import_settings.h"
#include "input_file.h"
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

void AddExportCommand(CCommands& commands) {
    struct Job {
        std::string store;
        std::string output;
        std::string extension;  ///< given by --to
        bool quiet = false;
        bool strict = false;
        ExportOptions options;
    };
    auto const job = std::make_shared<Job>();
    CLI::App& command = commands.Add(
        "export", "Write a store in another format; the extension of OUTPUT names it (csv, xyz, txt, xls, gbn, nvt)",
        "norva export survey.nvt survey.xyz --lines 1000,1010 --channels X,Y,Mag --no-units\n"
        "  norva export survey.nvt - --to csv | head",
        [job] {
            bool const isStream = job->output == kStandardStream;
            if (!isStream && !job->extension.empty()) {
                throw CommandError("--to goes with -; the extension of " + job->output + " names the format",
                                   kExitUsage);
            }
            CConsole console(job->quiet || isStream);
            if (isStream) {
                CScratchFolder const scratch;
                std::string const file = scratch.StreamPath(job->extension);
                ExportReport const report =
                    Naming(file, kStandardOutput, [&] { return RunExport(job->store, file, job->options, console); });
                CopyToStandardOutput(file);
                TellSummary(report, kStandardOutput, job->strict, console);
                return job->strict && report.LossCount() > 0 ? kExitLoss : kExitDone;
            }
            job->output = WrittenPath(job->output);
            RequireFree(job->output, job->options.force);
            ExportReport const report = RunExport(job->store, job->output, job->options, console);
            console.Say(job->output + ": written");
            TellSummary(report, job->output, job->strict, console);
            return job->strict && report.LossCount() > 0 ? kExitLoss : kExitDone;
        });
    command.add_option("STORE", job->store, "Store to read")->required();
    command.add_option("OUTPUT", job->output, "File to write, - for standard output")->required();
    command.add_option("--to", job->extension, "Extension that names the format of standard output (default: xyz)");
    command.add_flag("--strict", job->strict,
                     "Exit with status " + std::to_string(kExitLoss) +
                         " when a value does not read back from the file; the file is made all the same");
    command.add_flag("--quiet", job->quiet, "Say only what went wrong, losses among it");
    AddExportOptions(command, job->options, true);
}

}  // namespace norva
