#pragma once

#include <string>

namespace norva {

/// Writes a text file, which takes its name only once it is whole; throws CommandError.
void WriteTextFile(std::string const& path, std::string const& text);

}  // namespace norva
