#include "commands.h"
#include "common/command_error.h"
#include "console.h"
#include "manual.h"
#include "norva/import_export.h"

#include <iostream>

namespace norva {

CLI::App& CCommands::Add(std::string const& name, std::string const& description, std::string const& example,
                         CommandBody body) {
    CLI::App* const command = m_app.add_subcommand(name, description);
    command->footer("Example:\n  " + example);
    m_commands.emplace_back(command, std::move(body));
    return *command;
}

int CCommands::Run() const {
    for (auto const& [command, body] : m_commands) {
        if (command->parsed()) return body();
    }
    return kExitUsage;
}

}  // namespace norva

int main(int argc, char** argv) {
    CLI::App app("Norva Exchange: geophysical survey data into stores, and out again.", "norva");
    app.set_version_flag("--version", std::string("norva ") + norva::GetLibraryVersion());
    app.add_flag_callback(
        "--manual",
        [&app] {
            std::cout << norva::ManualOf(app);
            throw CLI::Success();
        },
        "Print this manual in man(7) format and exit");
    app.require_subcommand(1);
    norva::CCommands commands(app);
    norva::AddFormatsCommand(commands);
    norva::AddImportCommand(commands);
    norva::AddExportCommand(commands);
    norva::AddConvertCommand(commands);
    norva::AddInfoCommand(commands);
    norva::AddShowCommand(commands);
    norva::AddMarkCommand(commands);
    norva::AddPlayCommand(commands);
    norva::AddPlotCommands(commands);
    norva::AddTemplateCommand(commands);
    norva::AddVerifyCommand(commands);
    try {
        app.parse(argc, argv);
    } catch (CLI::ParseError const& error) {
        return app.exit(error) == 0 ? norva::kExitDone : norva::kExitUsage;
    }
    norva::CatchInterrupts();
    try {
        return commands.Run();
    } catch (norva::CommandError const& error) {
        std::cerr << "norva: " << error.what() << "\n";
        return error.Status();
    } catch (norva::Interrupted const&) {
        std::cerr << "norva: interrupted, nothing was changed\n";
        return norva::kExitInterrupted;
    } catch (std::exception const& error) {
        std::cerr << "norva: " << error.what() << "\n";
        return norva::kExitFailed;
    }
}
