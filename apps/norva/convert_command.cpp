#include "commands.h"
#include "common/command_error.h"
#include "common/names.h"
#include "file_jobs.h"
#include "input_file.h"
#include "jobs.h"
#include "reports.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <memory>

namespace norva {

namespace {

namespace fs = std::filesystem;

struct ConvertJob {
    std::vector<std::string> paths;
    std::string extension;  ///< given by --to
    std::string reports;    ///< folder
    std::size_t places = ReportFinding::kUsualPlaces;
    bool quiet = false;
    bool strict = false;
    bool json = false;
    std::size_t jobs = 1;
    ImportOptions import;
    ExportOptions output;
    CLI::App const* command = nullptr;
};

/// What became of one input.
struct Conversion {
    std::string input;
    std::string output;
    std::string failure;  ///< empty when it was converted
    std::uint64_t lines = 0;
    std::uint64_t values = 0;
    std::uint64_t losses = 0;        ///< of the import
    std::uint64_t doubts = 0;        ///< of the proposal
    std::uint64_t exportLosses = 0;  ///< values that do not read back from the output
};

void ConvertOne(Conversion& one, ConvertJob const& job, CScratchFolder const& scratch, CConsole& console) {
    bool const isStream = one.output == kStandardStream;
    if (!isStream) RequireFree(one.output, job.output.force, one.input);
    std::string const report =
        job.reports.empty() ? ""
                            : (fs::path(job.reports) / StemOf(isStream ? one.input : one.output)).string() + ".json";
    if (!report.empty()) RequireReportPath(report, job.output.force, one.input);
    std::string const store = scratch.StorePath(one.input);
    CInputFile const source(one.input);
    ImportTask task{source.Path(), store, job.import, false, !report.empty(), job.places, job.strict};
    task.name = source.Name();
    ImportOutcome const outcome = source.WithName([&] { return RunImport(task, console); });
    TellSummary(outcome.report, job.strict, console);
    std::string const output = isStream ? scratch.StreamPath(job.extension) : one.output;
    ExportReport const written = Naming(output, isStream ? kStandardOutput : output,
                                        [&] { return RunExport(store, output, job.output, console); });
    if (isStream) CopyToStandardOutput(output);
    console.Say(one.output + ": " + StoreSummary(store));
    TellSummary(written, isStream ? kStandardOutput : one.output, job.strict, console);
    if (!report.empty()) WriteReport(report, outcome, ImportOptionWords(*job.command));
    one.lines = outcome.report.lines.size();
    for (ReportChannel const& channel : outcome.report.channels) one.values += channel.values;
    one.losses = outcome.report.LossCount();
    one.doubts = outcome.doubts;
    one.exportLosses = written.LossCount();
    std::error_code error;
    fs::remove(store, error);
}

std::string TableOf(std::vector<Conversion> const& all) {
    std::size_t width = 4;
    for (Conversion const& one : all) width = std::max(width, one.input.size());
    auto const left = [width](std::string text) {
        text.resize(std::max(text.size(), width), ' ');
        return text;
    };
    auto const right = [](std::string const& text) {
        return std::string(text.size() < 12 ? 12 - text.size() : 1, ' ') + text;
    };
    std::string table =
        left("file") + right("lines") + right("values") + right("losses") + right("in output") + "  status";
    for (Conversion const& one : all) {
        bool const isDone = one.failure.empty();
        auto const count = [&](std::uint64_t number) { return right(isDone ? std::to_string(number) : "-"); };
        table += "\n" + left(one.input) + count(one.lines) + count(one.values) + count(one.losses) +
                 count(one.exportLosses) + (isDone ? "  converted" : "  failed");
    }
    return table;
}

void PrintJson(std::vector<Conversion> const& all) {
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (Conversion const& one : all) {
        list.push_back({{"file", one.input},
                        {"output", one.output},
                        {"lines", one.lines},
                        {"values", one.values},
                        {"losses", one.losses},
                        {"doubts", one.doubts},
                        {"losses_of_export", one.exportLosses},
                        {"status", one.failure.empty() ? "converted" : "failed"}});
        if (!one.failure.empty()) list.back()["message"] = one.failure;
    }
    std::cout << list.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) << "\n";
}

/// Goes on after a bad file and sums up at the end.
int RunConvert(ConvertJob const& job) {
    std::string const target = job.paths.back();
    bool const isStream = target == kStandardStream;
    CConsole console(job.quiet || job.json || isStream);
    std::vector<std::string> const inputs = InputsOf({job.paths.begin(), job.paths.end() - 1});
    if (isStream && (inputs.size() > 1 || job.json)) {
        throw CommandError("- as output goes with one input, and without --json", kExitUsage);
    }
    bool const intoFolder = !isStream && (fs::is_directory(target) || inputs.size() > 1 || !job.extension.empty());
    if (intoFolder) MakeFolder(target);
    if (!job.reports.empty()) MakeFolder(job.reports);
    std::string const extension = "." + (job.extension.empty() ? "xyz" : job.extension);

    CScratchFolder const scratch;
    std::vector<Conversion> all(inputs.size());
    COutputs outputs(inputs);
    auto const tryOne = [intoFolder](Conversion& one, auto const& work) {
        try {
            work();
        } catch (CommandError const& error) {
            if (!intoFolder) throw;
            one.failure = error.what();
        }
    };
    for (std::size_t number = 0; number < inputs.size(); ++number) {
        Conversion& one = all[number];
        one.input = inputs[number];
        one.output = isStream     ? target
                     : intoFolder ? (fs::path(target) / StemOf(one.input)).string() + extension
                                  : WrittenPath(target);
        tryOne(one, [&] { outputs.Take(one.output, one.input); });
    }
    RunFiles(all.size(), job.jobs, console, [&](std::size_t number, CConsole& own) {
        Conversion& one = all[number];
        if (one.failure.empty()) tryOne(one, [&] { ConvertOne(one, job, scratch, own); });
        if (!one.failure.empty()) own.Complain(one.failure);
    });
    std::size_t failed = 0;
    std::uint64_t losses = 0;
    for (Conversion const& one : all) {
        failed += one.failure.empty() ? 0 : 1;
        losses += one.losses + one.doubts + one.exportLosses;
    }
    if (job.json) {
        PrintJson(all);
    } else if (intoFolder) {
        console.Say(TableOf(all));
        console.Say(std::to_string(all.size() - failed) + " of " + std::to_string(all.size()) + " files converted");
    }
    if (failed > 0) return kExitFailed;
    return job.strict && losses > 0 ? kExitLoss : kExitDone;
}

}  // namespace

void AddConvertCommand(CCommands& commands) {
    auto const job = std::make_shared<ConvertJob>();
    CLI::App& command =
        commands.Add("convert", "Import files and write them out in another format, without keeping the store",
                     "norva convert survey.csv survey.xyz\n  norva convert *.gpx folder --to xyz --report folder\n"
                     "  norva convert flights stores --to nvt --jobs 4\n  norva convert survey.gbn - --to csv | head",
                     [job] { return RunConvert(*job); });
    job->command = &command;
    command
        .add_option("PATHS", job->paths,
                    "INPUT OUTPUT, or INPUT... FOLDER; an input that is a folder stands for the files in it, - for "
                    "standard input and output")
        ->required()
        ->expected(2, -1);
    command.add_option("--to", job->extension,
                       "Extension of the files made in FOLDER, which is made if it is missing, or the format of "
                       "standard output (default: xyz)");
    command.add_option("--report", job->reports,
                       "Folder for a report in JSON on every file: what became of every line and value");
    AddPlacesOption(command, job->places);
    AddJobsOption(command, job->jobs);
    command.add_flag(
        "--strict", job->strict,
        "Exit with status " + std::to_string(kExitLoss) +
            " when anything was lost or changed, or a proposal has doubts; the files are made all the same");
    command.add_flag("--json", job->json, "Print what became of every file as JSON");
    command.add_flag("--quiet", job->quiet, "Say only what went wrong, losses among it");
    AddImportOptions(command, job->import);
    AddExportOptions(command, job->output, false);
}

}  // namespace norva
