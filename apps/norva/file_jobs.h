#pragma once

#include "console.h"

#include <CLI/CLI.hpp>

#include <cstddef>
#include <functional>
#include <set>
#include <string>
#include <vector>

/// Work on many files in one command. Everything throws CommandError.
namespace norva {

/// The files that arguments name. A folder stands for the files in it, by name; hidden ones, stores and folders in it
/// are left out.
std::vector<std::string> InputsOf(std::vector<std::string> const& arguments);

/// Name of a file without folder and extension; "stdin" of standard input.
std::string StemOf(std::string const& input);
/// The pattern with every "{stem}" replaced by the stem of the input.
std::string WithStem(std::string pattern, std::string const& input);

/// Refuses an output that is one of the inputs, or that another input has become before.
class COutputs {
public:
    explicit COutputs(std::vector<std::string> const& inputs) : m_inputs(inputs) {}
    void Take(std::string const& output, std::string const& input);

private:
    std::vector<std::string> const& m_inputs;
    std::set<std::string> m_taken;
};

void MakeFolder(std::string const& path);

/// Declares --jobs.
void AddJobsOption(CLI::App& command, std::size_t& jobs);

/// Calls `work` with every number below `count`. With several jobs, that many threads each work on one at a time, with
/// consoles of their own, which are printed in the order of the numbers. What is thrown ends the rest.
void RunFiles(std::size_t count, std::size_t jobs, CConsole& console,
              std::function<void(std::size_t number, CConsole& console)> const& work);

}  // namespace norva
