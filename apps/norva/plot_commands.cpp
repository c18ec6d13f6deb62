#include "commands.h"
#include "common/command_error.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace norva {

namespace {

namespace fs = std::filesystem;

/// Becomes norva-plot, the program beside this one or in PATH; this program itself stays free of windows.
[[noreturn]] void BecomePlot(std::vector<std::string> arguments) {
    std::error_code error;
    fs::path const beside = fs::read_symlink("/proc/self/exe", error).parent_path() / "norva-plot";
    std::string const program = fs::exists(beside, error) ? beside.string() : "norva-plot";
    arguments.insert(arguments.begin(), program);
    std::vector<char*> raw;
    for (std::string& argument : arguments) raw.push_back(argument.data());
    raw.push_back(nullptr);
    execvp(program.c_str(), raw.data());
    throw CommandError("norva-plot, which draws the pictures, cannot be run: " + std::string(std::strerror(errno)) +
                       " (it comes with norva-desktop)");
}

/// What a picture is drawn from, as the options of norva-plot.
struct PlotJob {
    std::string store;
    std::string output;
    std::vector<std::string> options;

    void Add(CLI::App& command, std::string const& name, std::string const& help) {
        command
            .add_option_function<std::vector<std::string>>(
                name,
                [this, name](std::vector<std::string> const& values) {
                    for (std::string const& value : values) options.insert(options.end(), {name, value});
                },
                help)
            ->expected(1)
            ->take_all();
    }
    int Run(std::string const& what) const {
        std::string const file = output.empty() ? fs::path(store).replace_extension("png").string() : output;
        std::vector<std::string> arguments = {what, store, "-o", file};
        arguments.insert(arguments.end(), options.begin(), options.end());
        BecomePlot(std::move(arguments));
    }
};

CLI::App& AddPicture(CCommands& commands, std::shared_ptr<PlotJob> const& job, std::string const& name,
                     std::string const& what, std::string const& description, std::string const& example) {
    CLI::App& command = commands.Add(name, description, example, [job, what] { return job->Run(what); });
    command.add_option("STORE", job->store, "Store to read")->required();
    command.add_option("-o,--output", job->output,
                       "Picture to write: png, svg or pdf (default: the store's name, png)");
    return command;
}

}  // namespace

void AddPlotCommands(CCommands& commands) {
    auto const profile = std::make_shared<PlotJob>();
    CLI::App& plot = AddPicture(commands, profile, "plot", "profile", "Draw channels along a line",
                                "norva plot survey.nvt --line 1020 --channel Mag --against X -o line-1020.svg");
    profile->Add(plot, "--line", "Line: name or number from 0 (default: the first)");
    profile->Add(plot, "--channel", "Channel to draw (repeatable)");
    profile->Add(plot, "--against", "Channel of the horizontal axis (default: the location number)");

    auto const places = std::make_shared<PlotJob>();
    CLI::App& map = AddPicture(commands, places, "map", "map", "Draw the positions of all lines",
                               "norva map survey.nvt --x X --y Y --channel Mag -o map.png");
    places->Add(map, "--x", "Channel with the eastings (default: X)");
    places->Add(map, "--y", "Channel with the northings (default: Y)");
    places->Add(map, "--channel", "Channel that colours the points");
}

}  // namespace norva
