#pragma once

#include <string>
#include <string_view>

namespace norva {

/// Keeps why the running operation fails, for GetLastErrorText(); the first reason of a call is kept until cleared.
void SetLastErrorText(std::string text);
void ClearLastErrorText();
/// The system's text for an error number.
std::string SystemErrorText(int error);

}  // namespace norva
