#pragma once

#include <string>
#include <string_view>

namespace norva {

/// Keeps why the running operation fails, for GetLastErrorText(); the first reason of a call is kept until cleared.
void SetLastErrorText(std::string text);
void ClearLastErrorText();
/// The system's text for an error number.
std::string SystemErrorText(int error);
/// "Couldn't read the file : PATH", on the next line the system's text; `act` is "read", "write", "create" or "open".
std::string FileErrorText(std::string_view act, std::string_view path, int error);

}  // namespace norva
