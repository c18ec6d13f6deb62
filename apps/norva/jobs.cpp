#include "jobs.h"

#include "common/command_error.h"
#include "common/names.h"
#include "common/report_text.h"
#include "import_settings.h"
#include "norva/formats.h"
#include "norva/import_export.h"
#include "proposal.h"

#include <unistd.h>

#include <cstdio>
#include <filesystem>

namespace norva {

namespace {

std::string FullPathOf(std::string const& path) {
    std::error_code error;
    std::filesystem::path const full = std::filesystem::absolute(path, error);
    return error ? path : full.string();
}

/// A text of the library about the file at `path`, for a person who calls it `name`.
std::string Named(std::string text, std::string const& path, std::string const& name) {
    std::string const full = FullPathOf(path);
    if (std::size_t const at = text.find(full); full != name && at != std::string::npos) {
        text.replace(at, full.size(), name);
    }
    return text.find(name) == std::string::npos ? name + ": " + text : text;
}

/// Ends the command with a failure; what else the library said is shown before it.
void Conclude(Status const& status, std::vector<std::string> const& messages, std::string const& path,
              std::string const& name, CConsole& console) {
    if (status.IsCancelled()) ThrowIfInterrupted();
    std::string const failure = status.Text();
    for (std::string const& text : messages) {
        if (status || failure.find(text) == std::string::npos) console.Complain(Named(text, path, name));
    }
    if (!status) throw CommandError(Named(failure, path, name));
}

ProgressCallback ProgressOf(CConsole& console) {
    return [&console](ExchangeProgress const& progress) {
        console.JobPercent(progress.percent);
        return !WasInterrupted();
    };
}

std::string const& NameOf(ImportTask const& task) {
    return task.name.empty() ? task.input : task.name;
}

ImportFormatInfo FormatOf(ImportTask const& task, CConsole& console) {
    if (!task.options.format.empty()) return FindFormat(task.options.format);
    RecognizedFormat const format = RecognizeImportFormat(task.input);
    if (format.code == 0) throw CommandError(NameOf(task) + ": " + format.reason);
    console.Say(NameOf(task) + ": read as " + format.label + ", because " + format.reason);
    return FindFormat(format.label);
}

/// What becomes of coordinates that a log has interpolated, where no option says it.
bool AskForInterpolated(std::string const& input, CConsole& console) {
    if (isatty(STDIN_FILENO) != 1 || isatty(STDERR_FILENO) != 1 || console.Quiet() || console.IsHeld()) {
        console.Say(input + ": interpolated coordinates are left out (--interpolated yes keeps them)");
        return false;
    }
    console.Complain("import interpolated coordinates if there are any? [y/N]");
    int const answer = std::getchar();
    return answer == 'y' || answer == 'Y';
}

/// What the proposal chose and doubts; all of it is told by 'norva info'.
void TellProposal(Inspection const& proposal, ImportTask const& task, CConsole& console) {
    std::size_t const doubts = proposal.Doubts();
    std::string const count =
        doubts == 0 ? "" : Counted(doubts, "doubt") + ": see 'norva info " + NameOf(task) + "' for the evidence";
    if (doubts > 0 && (console.Quiet() || task.isStrict)) {
        console.Complain(NameOf(task) + ": " + count + (task.isStrict ? "\n" + ShortText(proposal) : ""));
        return;
    }
    console.Say(ShortText(proposal));
    if (doubts > 0) console.Say(count);
}

}  // namespace

ImportOutcome RunImport(ImportTask const& task, CConsole& console) {
    ImportFormatInfo const format = FormatOf(task, console);
    std::optional<Inspection> proposal;
    ChosenSettings chosen;
    if (GoesByProposal(task.options, format)) {
        RequireApplicable(task.options, format.settings, format.label);
        proposal = ProposeImport(task.options, task.input, format.label);
        chosen = {proposal->settings, TemplateOf(*proposal)};
        TellProposal(*proposal, task, console);
    } else {
        chosen = SettingsFrom(task.options, format, task.input, task.keepsColumns);
    }
    if (auto const* const dump = std::get_if<Cg3Settings>(&chosen.settings);
        dump != nullptr && task.options.dateFormat.empty()) {
        ValueTemplates const& dates = DateTemplates();
        int const place = dates.IndexOf(dump->dateFormat);
        if (place >= 0) console.Say("  dates  " + dates.names[static_cast<std::size_t>(place)] + "  (--date-format)");
    }
    if (chosen.mayInterpolate) {
        std::get<SeaSpySettings>(chosen.settings).interpolated = AskForInterpolated(NameOf(task), console);
    }
    ImportRequest request{.inputPath = task.input, .storePath = FullPathOf(task.store)};
    request.format = format.label;
    request.settings = std::move(chosen.settings);
    request.checksum = task.hashesSource;
    request.places = task.places;
    ImportOutcome outcome = RunImport(std::move(request), NameOf(task), console);
    if (NameOf(task) != task.input) {
        bool const isFile = std::filesystem::exists(task.name);
        outcome.report.sourcePath = isFile ? FullPathOf(task.name) : task.name;
    }
    outcome.columns = std::move(chosen.columns);
    if (proposal) outcome.doubts = proposal->Doubts();
    if (auto const* const text = std::get_if<ColumnTextSettings>(&outcome.settings); text != nullptr && !proposal) {
        int const skip = BetterSkip(outcome.report, *text, format, task.input);
        if (skip > 0) {
            console.Complain(task.input + ": most rows have more values than the first one; try --skip " +
                             std::to_string(skip));
        }
    }
    return outcome;
}

ImportOutcome RunImport(ImportRequest request, std::string const& name, CConsole& console) {
    request.replace = true;  // what may not be replaced was refused before
    request.progress = ProgressOf(console);
    ImportResult result;
    console.BeginJob("Importing " + name);
    Status const status = ImportFile(request, result);
    console.EndJob();
    Conclude(status, result.messages, request.inputPath, name, console);
    return {std::move(result.report), std::move(result.settings)};
}

ExportReport RunExport(std::string const& store, std::string const& output, ExportOptions const& options,
                       CConsole& console) {
    ExportRequest request{.storePath = store, .outputPath = FullPathOf(output)};
    request.settings.labelAsChannel = options.labelAsChannel;
    request.settings.pointId = options.pointId;
    request.settings.units = options.units;
    request.settings.unitRow = options.unitRow;
    request.settings.fullDigits = options.fullDigits;
    request.settings.writeOversized = options.force;
    {
        CNorvaFileUtil source;
        OpenStore(source, store);
        if (!options.lines.empty()) {
            request.settings.lines = FindListed(LineNames(source), options.lines, 0, "line");
        }
        if (!options.channels.empty()) {
            request.settings.channels = FindListed(ChannelNames(source), options.channels, 0, "channel");
        }
    }
    request.replace = true;
    request.progress = ProgressOf(console);
    ExportResult result;
    console.BeginJob("Writing " + output);
    Status const status = ExportStore(request, result);
    console.EndJob();
    Conclude(status, result.messages, output, output, console);
    return std::move(result.report);
}

void OpenStore(CNorvaFileUtil& store, std::string const& path) {
    if (store.SetFileName(path, kReopenStore, nullptr) == 0) throw CommandError(path + ": " + GetLastErrorText());
}

std::vector<std::string> LineNames(CNorvaFileUtil& store) {
    std::vector<std::string> names;
    for (int profile = 0; profile < store.ProfileCount; ++profile) {
        long locations = 0;
        int flag = 0;
        store.GetProfileInfo(profile, names.emplace_back(), locations, flag);
    }
    return names;
}

std::vector<std::string> ChannelNames(CNorvaFileUtil& store) {
    std::vector<std::string> names;
    for (int n = 0; n < store.ChannelCount; ++n) names.push_back(store.GetChannelName(store.GetFileChanIndex(n)));
    return names;
}

std::string StoreSummary(std::string const& store) {
    CNorvaFileUtil file;
    OpenStore(file, store);
    std::uint64_t locations = 0;
    for (int profile = 0; profile < file.ProfileCount; ++profile) {
        locations += static_cast<std::uint64_t>(file.GetProfileLocationNum(profile, 0));
    }
    return Counted(static_cast<std::uint64_t>(file.ProfileCount), "line") + ", " +
           Counted(static_cast<std::uint64_t>(file.ChannelCount), "channel") + ", " + Counted(locations, "location");
}

std::string WrittenPath(std::string const& path) {
    std::error_code error;
    bool const isWhole = std::filesystem::is_directory(path, error) || FullPathOf(path).find('.') != std::string::npos;
    return isWhole ? path : path + ".nvt";
}

void RequireFree(std::string const& path, bool force, std::string const& source) {
    std::error_code error;
    if (std::filesystem::is_directory(path, error)) throw CommandError(path + ": is a folder");
    if (!source.empty() && std::filesystem::equivalent(path, source, error)) {
        throw CommandError(path + ": is the input itself, which is not replaced");
    }
    if (!force && std::filesystem::exists(path, error)) {
        throw CommandError(path + ": exists already (--force replaces it)");
    }
}

}  // namespace norva
