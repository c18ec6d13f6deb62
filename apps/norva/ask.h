#pragma once

#include "import_options.h"

#include <string>
#include <vector>

namespace norva {

/// Options of an import, and the words of a command line that say the same.
struct AnsweredOptions {
    ImportOptions options;
    std::vector<std::string> words;
};

/// Asks a person at a terminal about every doubt of the proposal for the file at `path` that an option settles, until
/// none is left; what is answered is added to the options. Throws CommandError where there is no terminal.
AnsweredOptions AskForDoubts(AnsweredOptions given, std::string const& path, std::string const& format);

}  // namespace norva
