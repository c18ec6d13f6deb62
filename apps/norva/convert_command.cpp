#include "commands.h"
#include "common/command_error.h"
#include "common/names.h"
#include "jobs.h"
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

struct ConvertJob {
    std::vector<std::string> paths;
    std::string extension;  ///< given by --to
    std::string reports;    ///< folder
    std::size_t places = ReportFinding::kUsualPlaces;
    bool quiet = false;
    bool strict = false;
    bool json = false;
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
    RequireFree(one.output, job.output.force, one.input);
    for (auto other = job.paths.begin(); other + 1 != job.paths.end(); ++other) {
        std::error_code error;
        if (fs::equivalent(one.output, *other, error)) {
            throw CommandError(one.output + ": is one of the files to convert, which is not replaced");
        }
    }
    std::string const report =
        job.reports.empty() ? "" : (fs::path(job.reports) / fs::path(one.output).stem()).string() + ".json";
    if (!report.empty()) RequireReportPath(report, job.output.force, one.input);
    std::string const store = scratch.StorePath(one.input);
    ImportOutcome const outcome =
        RunImport({one.input, store, job.import, false, !report.empty(), job.places, job.strict}, console);
    TellSummary(outcome.report, job.strict, console);
    ExportReport const written = RunExport(store, one.output, job.output, console);
    console.Say(one.output + ": " + StoreSummary(store));
    TellSummary(written, one.output, job.strict, console);
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

void MakeFolder(std::string const& path) {
    std::error_code error;
    if (!fs::is_directory(path) && !fs::create_directory(path, error)) {
        throw CommandError(path + ": " + (error ? error.message() : "is no folder"), kExitUsage);
    }
}

/// Goes on after a bad file and sums up at the end.
int RunConvert(ConvertJob const& job) {
    CConsole console(job.quiet || job.json);
    std::vector<std::string> inputs = job.paths;
    std::string const target = inputs.back();
    inputs.pop_back();
    bool const intoFolder = fs::is_directory(target) || inputs.size() > 1 || !job.extension.empty();
    if (intoFolder) MakeFolder(target);
    if (!job.reports.empty()) MakeFolder(job.reports);
    std::string const extension = "." + (job.extension.empty() ? "xyz" : job.extension);

    CScratchFolder const scratch;
    std::vector<Conversion> all;
    std::set<std::string> outputs;
    std::size_t failed = 0;
    std::uint64_t losses = 0;
    for (std::string const& input : inputs) {
        Conversion& one = all.emplace_back();
        one.input = input;
        one.output =
            intoFolder ? (fs::path(target) / fs::path(input).stem()).string() + extension : WrittenPath(target);
        try {
            if (!outputs.insert(one.output).second) throw CommandError(input + ": another file became " + one.output);
            ConvertOne(one, job, scratch, console);
            losses += one.losses + one.doubts + one.exportLosses;
        } catch (CommandError const& error) {
            if (!intoFolder) throw;
            console.Complain(error.what());
            one.failure = error.what();
            ++failed;
        }
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
                     "norva convert survey.csv survey.xyz\n  norva convert *.gpx folder --to xyz --report folder",
                     [job] { return RunConvert(*job); });
    job->command = &command;
    command.add_option("PATHS", job->paths, "INPUT OUTPUT, or INPUT... FOLDER")->required()->expected(2, -1);
    command.add_option("--to", job->extension,
                       "Extension of the files made in FOLDER, which is made if it is missing (default: xyz)");
    command.add_option("--report", job->reports,
                       "Folder for a report in JSON on every file: what became of every line and value");
    AddPlacesOption(command, job->places);
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
