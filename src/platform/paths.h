#pragma once

#include <string>
#include <string_view>

/// Paths: both "/" and "\" separate.
namespace norva {

/// What follows the last separator.
std::string_view FileNameOf(std::string_view path);
/// What stands before and with the last separator; empty for none.
std::string_view FolderOf(std::string_view path);
/// Base of the column files "%s.%d": the path up to its last "." when that is not its first character, else whole.
std::string_view WithoutExtension(std::string_view path);
/// Extension of the file name without its dot; empty for none.
std::string_view ExtensionOf(std::string_view path);
/// Absolute path, not resolved further; the text itself when that fails.
std::string FullPath(std::string_view path);

}  // namespace norva
