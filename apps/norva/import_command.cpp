#include "ask.h"
#include "commands.h"
#include "common/command_error.h"
#include "file_jobs.h"
#include "import_settings.h"
#include "input_file.h"
#include "jobs.h"
#include "norva/formats.h"
#include "proposal.h"
#include "reports.h"

#include <algorithm>
#include <filesystem>
#include <memory>

namespace norva {

namespace {

namespace fs = std::filesystem;

struct ImportCommand {
    std::vector<std::string> paths;
    std::string store;  ///< may hold "{stem}"
    std::string folder;
    bool force = false;
    bool quiet = false;
    std::string saveTemplate;
    std::string report;  ///< may hold "{stem}"
    std::size_t places = ReportFinding::kUsualPlaces;
    bool strict = false;
    bool asks = false;
    std::size_t jobs = 1;
    ImportOptions options;
    CLI::App const* command = nullptr;
};

std::string StoreOf(ImportCommand const& job, std::string const& input) {
    if (!job.folder.empty()) return (fs::path(job.folder) / (StemOf(input) + ".nvt")).string();
    if (!job.store.empty()) return WrittenPath(WithStem(job.store, input));
    if (input == kStandardStream) throw CommandError("import - needs -o STORE or --into FOLDER", kExitUsage);
    return WrittenPath(fs::path(input).replace_filename(StemOf(input) + ".nvt").string());
}

AnsweredOptions Ask(ImportCommand const& job, std::string const& path, AnsweredOptions given) {
    std::string const label = job.options.format.empty() ? RecognizeImportFormat(path).label : job.options.format;
    if (label.empty()) return given;  // the import says why
    ImportFormatInfo const format = FindFormat(label);
    if (!GoesByProposal(job.options, format)) return given;
    return AskForDoubts(std::move(given), path, format.label);
}

/// True when something was lost or doubted.
bool ImportOne(ImportCommand const& job, std::string const& input, std::string const& store, CConsole& console) {
    RequireFree(store, job.force, input);
    std::string const templatePath = job.saveTemplate.empty() ? "" : TemplatePath(job.saveTemplate);
    if (!templatePath.empty()) RequireFree(templatePath, job.force, input);
    std::string const report = WithStem(job.report, input);
    if (!report.empty()) RequireReportPath(report, job.force, input);
    CInputFile const source(input);
    AnsweredOptions answered{job.options, ImportOptionWords(*job.command)};
    if (job.asks) answered = source.WithName([&] { return Ask(job, source.Path(), std::move(answered)); });
    ImportTask task{source.Path(),   store,      answered.options, !templatePath.empty(),
                    !report.empty(), job.places, job.strict};
    task.name = source.Name();
    ImportOutcome const outcome = source.WithName([&] { return RunImport(task, console); });
    console.Say(store + ": " + StoreSummary(store));
    if (!templatePath.empty()) {
        if (!outcome.columns) throw CommandError(templatePath + ": this format has no column template");
        WriteTemplate(templatePath, *outcome.columns);
        console.Say(templatePath + ": written");
    }
    TellSummary(outcome.report, job.strict, console);
    if (!report.empty()) {
        WriteReport(report, outcome, answered.words);
        console.Say(report + ": written");
    }
    return HasLoss(outcome.report) || outcome.doubts > 0;
}

void RequireOneOfEach(ImportCommand const& job, std::size_t inputs) {
    if (!job.store.empty() && !job.folder.empty()) throw CommandError("-o and --into exclude each other", kExitUsage);
    if (job.asks && job.jobs > 1) throw CommandError("--ask and --jobs exclude each other", kExitUsage);
    if (inputs < 2) return;
    auto const isOne = [](std::string const& path) {
        return !path.empty() && path.find("{stem}") == std::string::npos;
    };
    std::string const files = " is one file for " + std::to_string(inputs) + " inputs: ";
    if (isOne(job.store)) throw CommandError("-o " + job.store + files + "put {stem} into it", kExitUsage);
    if (isOne(job.report)) throw CommandError("--report " + job.report + files + "put {stem} into it", kExitUsage);
    if (!job.saveTemplate.empty()) throw CommandError("--save-template goes with one input", kExitUsage);
}

/// Goes on after a bad file of several.
int RunImportCommand(ImportCommand const& job) {
    CConsole console(job.quiet);
    std::vector<std::string> const inputs = InputsOf(job.paths);
    RequireOneOfEach(job, inputs.size());
    if (!job.folder.empty()) MakeFolder(job.folder);
    bool const isOne = inputs.size() == 1;
    COutputs outputs(inputs);
    std::vector<std::string> stores(inputs.size());
    std::vector<std::string> failures(inputs.size());
    std::vector<char> hasLoss(inputs.size());
    auto const tryOne = [&](std::size_t number, auto const& work) {
        try {
            work();
        } catch (CommandError const& error) {
            if (isOne) throw;
            failures[number] = error.what();
        }
    };
    for (std::size_t number = 0; number < inputs.size(); ++number) {
        tryOne(number, [&] {
            stores[number] = StoreOf(job, inputs[number]);
            outputs.Take(stores[number], inputs[number]);
        });
    }
    RunFiles(inputs.size(), job.jobs, console, [&](std::size_t number, CConsole& own) {
        if (failures[number].empty()) {
            tryOne(number, [&] { hasLoss[number] = ImportOne(job, inputs[number], stores[number], own) ? 1 : 0; });
        }
        if (!failures[number].empty()) own.Complain(failures[number]);
    });
    auto const imported = std::ranges::count_if(failures, [](std::string const& text) { return text.empty(); });
    if (!isOne) console.Say(std::to_string(imported) + " of " + std::to_string(inputs.size()) + " files imported");
    if (static_cast<std::size_t>(imported) < inputs.size()) return kExitFailed;
    return job.strict && std::ranges::count(hasLoss, 1) > 0 ? kExitLoss : kExitDone;
}

}  // namespace

void AddImportCommand(CCommands& commands) {
    auto const job = std::make_shared<ImportCommand>();
    CLI::App& command = commands.Add(
        "import", "Import files into new stores",
        "norva import survey.csv\n  norva import survey.csv -o survey.nvt --column Mag:units=nT --dates dmy\n"
        "  norva import flights --into stores --jobs 4\n  zcat survey.xyz.gz | norva import - -o survey.nvt",
        [job] { return RunImportCommand(*job); });
    job->command = &command;
    command
        .add_option("INPUT", job->paths, "Files to import; a folder stands for the files in it, - for standard input")
        ->required();
    command.add_option("-o,--output", job->store,
                       "Store to make, with {stem} for the input's name (default: the input with the extension .nvt)");
    command.add_option("--into", job->folder, "Folder for the stores, which is made if it is missing");
    AddJobsOption(command, job->jobs);
    command.add_flag("--force", job->force, "Replace an existing store or template");
    command.add_flag("--quiet", job->quiet, "Say only what went wrong, losses among it");
    command.add_option("--report", job->report,
                       "Write what became of every line and value (.json or .html), with {stem} for the input's name");
    AddPlacesOption(command, job->places);
    command.add_flag(
        "--strict", job->strict,
        "Exit with status " + std::to_string(kExitLoss) +
            " when anything was lost or changed, or the proposal has doubts; the store is made all the same");
    command.add_flag("--ask", job->asks, "Ask about every doubt of the proposal, at a terminal");
    AddImportOptions(command, job->options);
    command
        .add_option("--save-template", job->saveTemplate,
                    "Keep the choices for the columns as a template (a name or a .json file)")
        ->group("Column text");
}

}  // namespace norva
