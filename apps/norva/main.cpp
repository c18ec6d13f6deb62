#include "commands.h"
#include "common/command_error.h"
#include "common/names.h"
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

namespace {

/// What a person perhaps meant by a word that is no command or no option; empty when nothing is close.
std::string Suggestion(CLI::App const& app, std::string const& word) {
    std::vector<std::string> known;
    if (word.starts_with("-")) {
        for (CLI::Option const* const option : app.get_options()) {
            for (std::string const& name : option->get_lnames()) known.push_back("--" + name);
        }
    } else {
        for (CLI::App const* const command : app.get_subcommands([](CLI::App const*) { return true; })) {
            known.push_back(command->get_name());
        }
    }
    std::string const closest = ClosestWord(word.substr(0, word.find('=')), known);
    return closest.empty() ? "" : "; did you mean " + closest + "?";
}

/// Words that no command or option takes, in a sentence; empty when the error is another.
std::string UnknownWords(CLI::App const& app, int argc, char** argv) {
    if (argc > 1 && argv[1][0] != '-' && app.get_subcommands().empty()) {
        std::string const word = argv[1];
        return "there is no command '" + word + "'" + Suggestion(app, word);
    }
    if (app.get_subcommands().empty()) return {};
    CLI::App const& command = *app.get_subcommands().front();
    for (std::string const& word : command.remaining()) {
        if (!word.starts_with("--")) continue;
        return command.get_name() + " has no option '" + word + "'" + Suggestion(command, word);
    }
    return {};
}

}  // namespace

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
    norva::AddStatsCommand(commands);
    norva::AddMarkCommand(commands);
    norva::AddPlayCommand(commands);
    norva::AddPlotCommands(commands);
    norva::AddTemplateCommand(commands);
    norva::AddVerifyCommand(commands);
    try {
        app.parse(argc, argv);
    } catch (CLI::ParseError const& error) {
        std::string const unknown = error.get_exit_code() == 0 ? "" : norva::UnknownWords(app, argc, argv);
        if (unknown.empty()) return app.exit(error) == 0 ? norva::kExitDone : norva::kExitUsage;
        std::cerr << "norva: " << unknown << "\n";
        return norva::kExitUsage;
    }
    norva::CatchInterrupts();
    try {
        int const status = commands.Run();
        return norva::IsReaderGone() ? norva::kExitReaderGone : status;
    } catch (norva::CommandError const& error) {
        if (norva::IsReaderGone()) return norva::kExitReaderGone;
        std::cerr << "norva: " << error.what() << "\n";
        return error.Status();
    } catch (norva::Interrupted const&) {
        if (norva::IsReaderGone()) return norva::kExitReaderGone;
        std::cerr << "norva: interrupted, nothing is left half written\n";
        return norva::kExitInterrupted;
    } catch (std::exception const& error) {
        std::cerr << "norva: " << error.what() << "\n";
        return norva::kExitFailed;
    }
}
