#include "command_error.h"
#include "commands.h"
#include "common/script_json.h"
#include "norva/import_export.h"
#include "norva/trace.h"

#include <fstream>
#include <iostream>
#include <memory>
#include <sstream>

namespace norva {

namespace {

struct PlayJob {
    std::string script;
    std::vector<std::string> settings;
    std::string trace;
    bool traceBytes = false;
    bool defaults = false;
    std::string helpFile;
};

std::string ReadWhole(std::string const& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    if (!file) throw CommandError(path + ": cannot be read", kExitUsage);
    return text.str();
}

Script LoadScript(PlayJob const& job) {
    std::map<std::string, std::string> settings;
    for (std::string const& setting : job.settings) {
        std::size_t const equals = setting.find('=');
        if (equals == 0 || equals == std::string::npos) {
            throw CommandError("--set " + setting + ": is not NAME=VALUE", kExitUsage);
        }
        settings[setting.substr(0, equals)] = setting.substr(equals + 1);
    }
    std::string const text = ReadWhole(job.script);
    try {
        return ParseScript(text, settings);
    } catch (std::exception const& error) {
        throw CommandError(job.script + ": " + error.what(), kExitUsage);
    }
}

int RunPlay(PlayJob const& job) {
    Script const script = LoadScript(job);
    std::ofstream file;
    std::unique_ptr<CTrace> trace;
    if (!job.trace.empty()) {
        file.open(job.trace, std::ios::binary | std::ios::trunc);
        if (!file) throw CommandError(job.trace + ": cannot be written", kExitUsage);
        trace = std::make_unique<CTrace>(
            [&file](std::string_view line) { file.write(line.data(), static_cast<std::streamsize>(line.size())); },
            job.traceBytes);
    }
    if (!job.helpFile.empty()) SetHelpFilePath(job.helpFile);
    CScriptedToolkit toolkit(script.answers, job.defaults, trace.get());
    CToolkit* const before = SetToolkit(&toolkit);
    CWindow owner;
    PlayResult const played = RunOperation(script, toolkit, trace.get(), &owner);
    SetToolkit(before);
    if (file.is_open()) {
        file.close();
        if (!file) throw CommandError(job.trace + ": cannot be written");
    }
    std::string failure = played.failure;
    if (failure.empty()) failure = toolkit.Failure();
    if (!failure.empty()) throw CommandError(job.script + ": " + failure, kExitMismatch);
    if (played.value != 1) {
        std::string const reason = GetLastErrorText();
        if (!reason.empty()) std::cerr << "norva: " << reason << "\n";
    }
    return played.value == 1 ? kExitDone : kExitFailed;
}

}  // namespace

void AddPlayCommand(CCommands& commands) {
    auto const job = std::make_shared<PlayJob>();
    CLI::App& command =
        commands.Add("play", "Run a script that answers every window",
                     "norva play import.json --set input=survey.csv --set output=survey.nvt --trace trace.jsonl",
                     [job] { return RunPlay(*job); });
    command.add_option("SCRIPT", job->script, "Script in JSON")->required();
    command.add_option("--set", job->settings, "NAME=VALUE replaces {NAME} in the script (repeatable)")
        ->expected(1)
        ->take_all();
    command.add_option("--trace", job->trace, "Write what happened, one JSON object a line");
    command.add_flag("--trace-bytes", job->traceBytes, "Also write the bytes handed to the store");
    command.add_flag("--defaults", job->defaults, "Answer by defaults what the script does not fit");
    command.add_option("--help-file", job->helpFile, "Path of the host's help file");
}

}  // namespace norva
