#include "ask.h"

#include "common/command_error.h"
#include "console.h"
#include "proposal.h"

#include <unistd.h>
#include <CLI/CLI.hpp>

#include <algorithm>
#include <iostream>
#include <set>

namespace norva {

namespace {

std::string Answer(std::string const& question) {
    std::cerr << question << std::flush;
    std::string line;
    bool const isLine = static_cast<bool>(std::getline(std::cin, line));
    ThrowIfInterrupted();
    // The end of the input answers everything else as proposed.
    if (!isLine) std::cerr << "\n";
    line.erase(0, line.find_first_not_of(" \t"));
    line.erase(line.find_last_not_of(" \t\r") + 1);
    return line;
}

/// The words that an answer adds to the command line; none to leave it as proposed.
std::vector<std::string> Ask(InspectionFinding const& doubt) {
    Inspection shown;
    shown.findings.push_back(doubt);
    std::cerr << shown.Text();
    std::size_t const blank = doubt.option.find(' ');
    std::string const option = doubt.option.substr(0, blank);
    std::string value = doubt.option.substr(std::min(blank, doubt.option.size() - 1) + 1);
    if (value.size() > 1 && value.front() == '\'' && value.back() == '\'') value = value.substr(1, value.size() - 2);
    bool const isOpen = value == "N" || value.find('|') != std::string::npos;
    if (isOpen) {
        std::string const answer = Answer("  " + option + " " + value + "? [Enter: as proposed] ");
        return answer.empty() ? std::vector<std::string>() : std::vector<std::string>{option + "=" + answer};
    }
    std::string const answer = Answer("  take " + doubt.option + " instead? [y/N] ");
    bool const isYes = answer == "y" || answer == "Y" || answer == "yes";
    return isYes ? std::vector<std::string>{option + "=" + value} : std::vector<std::string>();
}

/// The options with more words; what declared the options stays.
ImportOptions WithWords(ImportOptions const& options, std::vector<std::string> const& words) {
    ImportOptions more = ParseImportOptions(words);
    more.declared = options.declared;
    more.ofProposal = options.ofProposal;
    more.ofFirstRows = options.ofFirstRows;
    return more;
}

}  // namespace

AnsweredOptions AskForDoubts(AnsweredOptions given, std::string const& path, std::string const& format) {
    if (isatty(STDIN_FILENO) != 1 || isatty(STDERR_FILENO) != 1) {
        throw CommandError("--ask needs a terminal to ask at", kExitUsage);
    }
    std::set<std::string> asked;
    while (true) {
        Inspection const proposal = ProposeImport(given.options, path, format);
        auto const doubt = std::ranges::find_if(proposal.findings, [&](InspectionFinding const& finding) {
            return finding.isDoubt && !finding.option.empty() && !asked.contains(finding.subject + finding.option);
        });
        if (doubt == proposal.findings.end()) return given;
        asked.insert(doubt->subject + doubt->option);
        std::vector<std::string> words = given.words;
        std::vector<std::string> const added = Ask(*doubt);
        if (added.empty()) continue;
        words.insert(words.end(), added.begin(), added.end());
        try {
            AnsweredOptions const answered{WithWords(given.options, words), words};
            ProposeImport(answered.options, path, format);
            given = answered;
        } catch (CLI::Error const& error) {
            std::cerr << "  " << error.what() << "\n";
            asked.erase(doubt->subject + doubt->option);
        } catch (CommandError const& error) {
            std::cerr << "  " << error.what() << "\n";
            asked.erase(doubt->subject + doubt->option);
        }
    }
}

}  // namespace norva
