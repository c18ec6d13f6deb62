#pragma once

#include <CLI/CLI.hpp>

#include <functional>
#include <list>

namespace norva {

/// A command's work; the result is the exit status.
using CommandBody = std::function<int()>;

/// Subcommands register what they do here; main runs the one that was parsed.
class CCommands {
public:
    explicit CCommands(CLI::App& app) : m_app(app) {}
    CLI::App& App() { return m_app; }
    /// The footer shows an example.
    CLI::App& Add(std::string const& name, std::string const& description, std::string const& example,
                  CommandBody body);
    int Run() const;

private:
    CLI::App& m_app;
    std::list<std::pair<CLI::App*, CommandBody>> m_commands;
};

struct ExportOptions;
/// The options that "export" and "convert" share.
void AddExportOptions(CLI::App& command, ExportOptions& options, bool withSelection);

void AddImportCommand(CCommands& commands);
void AddExportCommand(CCommands& commands);
void AddConvertCommand(CCommands& commands);
void AddFormatsCommand(CCommands& commands);
void AddInfoCommand(CCommands& commands);
void AddShowCommand(CCommands& commands);
void AddMarkCommand(CCommands& commands);
void AddPlayCommand(CCommands& commands);
void AddPlotCommands(CCommands& commands);
void AddStatsCommand(CCommands& commands);
void AddTemplateCommand(CCommands& commands);
void AddVerifyCommand(CCommands& commands);

}  // namespace norva
