#pragma once

#include <CLI/CLI.hpp>

#include <string>

namespace norva {

/// The manual page norva(1) in man(7) format: every command and option as the parser knows them.
std::string ManualOf(CLI::App const& app);

}  // namespace norva
