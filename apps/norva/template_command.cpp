#include "commands.h"
#include "common/column_template.h"
#include "common/command_error.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>

namespace norva {

void AddTemplateCommand(CCommands& commands) {
    struct Job {
        std::string what;
        std::string name;
    };
    auto const job = std::make_shared<Job>();
    CLI::App& command =
        commands.Add("template", "List, show or remove the templates that 'norva import --save-template' kept",
                     "norva template list\n  norva template show survey", [job] {
                         if (job->what == "list") {
                             for (std::string const& name : TemplateNames()) std::cout << name << "\n";
                             return kExitDone;
                         }
                         if (job->name.empty())
                             throw CommandError("which template? norva template " + job->what + " NAME", kExitUsage);
                         std::string const path = TemplatePath(job->name);
                         ReadTemplate(path);
                         if (job->what == "show") {
                             std::cout << std::ifstream(path, std::ios::binary).rdbuf();
                             return kExitDone;
                         }
                         std::error_code error;
                         if (!std::filesystem::remove(path, error)) throw CommandError(path + ": " + error.message());
                         return kExitDone;
                     });
    command.add_option("WHAT", job->what, "list, show or remove")
        ->required()
        ->check(CLI::IsMember({"list", "show", "remove"}));
    command.add_option("NAME", job->name, "Template: a name or a .json file");
}

}  // namespace norva
