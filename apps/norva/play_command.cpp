#include "commands.h"
#include "common/play_script.h"

#include <memory>

namespace norva {

void AddPlayCommand(CCommands& commands) {
    auto const job = std::make_shared<PlayJob>();
    CLI::App& command = commands.Add(
        "play", "Run a script that answers every window",
        "norva play import.json --set input=survey.csv --set output=survey.nvt --trace trace.jsonl", [job] {
            return PlayScript(*job, [](std::vector<ScriptAnswer> answers, bool defaults, CTrace* trace) {
                return std::make_unique<CScriptedToolkit>(std::move(answers), defaults, trace);
            });
        });
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
