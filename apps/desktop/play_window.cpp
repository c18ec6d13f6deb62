#include "play_window.h"

#include "common/command_error.h"
#include "scripted_windows.h"

#include <iostream>

namespace norva {

int PlayOnWindows(PlayJob const& job) {
    try {
        return PlayScript(job, [](std::vector<ScriptAnswer> answers, bool defaults, CTrace* trace) {
            return std::make_unique<CScriptedWindows>(std::move(answers), defaults, trace);
        });
    } catch (CommandError const& error) {
        std::cerr << "norva-desktop: " << error.what() << "\n";
        return error.Status();
    } catch (std::exception const& error) {
        std::cerr << "norva-desktop: " << error.what() << "\n";
        return kExitUsage;
    }
}

}  // namespace norva
