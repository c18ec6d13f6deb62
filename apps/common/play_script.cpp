#include "common/play_script.h"

#include "common/command_error.h"
#include "common/script_json.h"
#include "norva/import_export.h"
#include "norva/trace.h"

#include <fstream>
#include <iostream>
#include <sstream>

namespace norva {

namespace {

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

}  // namespace

int PlayScript(PlayJob const& job, ToolkitMaker const& makeToolkit) {
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
    std::unique_ptr<CScriptedToolkit> const toolkit = makeToolkit(script.answers, job.defaults, trace.get());
    CWindow owner;
    PlayResult const played = RunOperation(script, *toolkit, trace.get(), &owner);
    if (file.is_open()) {
        file.close();
        if (!file) throw CommandError(job.trace + ": cannot be written");
    }
    if (!played.failure.empty()) throw CommandError(job.script + ": " + played.failure, kExitMismatch);
    if (played.value != 1) {
        std::string const reason = GetLastErrorText();
        if (!reason.empty()) std::cerr << "norva: " << reason << "\n";
    }
    return played.value == 1 ? kExitDone : kExitFailed;
}

}  // namespace norva
