#include "jobs.h"

#include "common/command_error.h"
#include "common/report_text.h"
#include "norva/formats.h"
#include "norva/import_export.h"

#include <unistd.h>
#include <filesystem>

namespace norva {

namespace {

/// What the operation said last, or why it failed in silence.
[[noreturn]] void Fail(CCommandToolkit const& toolkit, std::string const& what) {
    ThrowIfInterrupted();
    if (!toolkit.WhyFailed().empty()) throw CommandError(what + ": " + toolkit.WhyFailed());
    std::string const reason = GetLastErrorText();
    bool const said = !toolkit.Messages().empty() && (reason.empty() || toolkit.Messages().back() == reason);
    throw CommandError(what + ": " + (said || reason.empty() ? "failed" : reason));
}

std::string FullPathOf(std::string const& path) {
    std::error_code error;
    std::filesystem::path const full = std::filesystem::absolute(path, error);
    return error ? path : full.string();
}

std::string FormatOf(std::string const& input, ImportOptions const& options, CConsole& console) {
    if (!options.format.empty()) return FormatLabel(options.format);
    RecognizedFormat const format = RecognizeImportFormat(input);
    if (format.code == 0) throw CommandError(input + ": " + format.reason);
    console.Say(input + ": read as " + format.label + ", because " + format.reason);
    return format.label;
}

}  // namespace

std::string FormatLabel(std::string const& wanted) {
    std::vector<std::string> labels;
    for (ImportFormatInfo const& format : ListImportFormats(kHighestLevel)) labels.push_back(format.label);
    return labels[static_cast<std::size_t>(FindNamed(labels, wanted, 1, "format"))];
}

void RunImport(std::string const& input, std::string const& store, ImportOptions const& options, CConsole& console,
               ColumnTemplate* chosen) {
    CCommandToolkit toolkit(console, input);
    std::string const format = FormatOf(input, options, console);
    toolkit.SetOpenPath(FullPathOf(input));
    toolkit.SetSavePath(FullPathOf(store));
    toolkit.OnDialog(4063, [&](CDialogHand& hand) { ChooseFormat(hand, format); });
    toolkit.OnDialog(4003, [&](CDialogHand& hand) { SetColumns(hand, options, chosen); });
    toolkit.OnDialog(4060, [&](CDialogHand& hand) { SetDelimiters(hand, options.delimiters); });
    toolkit.OnDialog(4004, [&](CDialogHand& hand) { SetRecordLayout(hand, options, input); });
    toolkit.OnDialog(4059, [&](CDialogHand& hand) { ChooseGbnContents(hand, options); });
    toolkit.OnDialog(4062, [&](CDialogHand& hand) { ChooseDumpColumns(hand, options); });
    toolkit.OnQuestion("Do you want to change the column labels?", true);
    bool interpolated = options.interpolated.value_or(false);
    if (!options.interpolated && format.starts_with("SeaSPY")) {
        if (isatty(STDIN_FILENO) == 1 && isatty(STDERR_FILENO) == 1 && !console.Quiet()) {
            console.Complain("import interpolated coordinates if there are any? [y/N]");
            int const answer = std::getchar();
            interpolated = answer == 'y' || answer == 'Y';
        } else {
            console.Say(input + ": interpolated coordinates are left out (--interpolated yes keeps them)");
        }
    }
    toolkit.OnQuestion("interpolated coordinates", interpolated);

    CNorvaFileUtil target;
    std::string name;
    CWindow owner;
    int result = 0;
    {
        CToolkitScope const scope(toolkit);
        console.BeginJob("Importing " + input);
        result = Import_Data_File(&target, name, &owner, kHighestLevel);
        console.EndJob();
    }
    if (result != 1 || !toolkit.WhyFailed().empty()) Fail(toolkit, input);
}

void RunExport(std::string const& store, std::string const& output, ExportOptions const& options, CConsole& console) {
    CNorvaFileUtil source;
    if (source.SetFileName(store, kReopenStore, nullptr) == 0) {
        throw CommandError(store + ": " + GetLastErrorText());
    }
    CCommandToolkit toolkit(console, output);
    toolkit.SetSavePath(FullPathOf(output));
    toolkit.OnDialog(4000, [&](CDialogHand& hand) { ChooseExport(hand, options); });
    toolkit.OnQuestion("Do you want to write it?", options.force);
    std::string newName;
    CWindow owner;
    int result = 0;
    {
        CToolkitScope const scope(toolkit);
        console.BeginJob("Writing " + output);
        result = Export_Data_File(&source, FullPathOf(output), newName, &owner);
        console.EndJob();
    }
    if (result != 1 || !toolkit.WhyFailed().empty()) Fail(toolkit, output);
}

std::string StoreSummary(std::string const& store) {
    CNorvaFileUtil file;
    if (file.SetFileName(store, kReopenStore, nullptr) == 0) throw CommandError(store + ": " + GetLastErrorText());
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

void RequireFree(std::string const& path, bool force) {
    std::error_code error;
    if (std::filesystem::is_directory(path, error)) throw CommandError(path + ": is a folder");
    if (!force && std::filesystem::exists(path, error)) {
        throw CommandError(path + ": exists already (--force replaces it)");
    }
}

}  // namespace norva
