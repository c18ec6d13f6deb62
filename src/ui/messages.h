#pragma once

#include "norva/status.h"
#include "norva/toolkit.h"

#include <string>

namespace norva {

/// Caption of messages that name none of their own.
inline constexpr char const* kMessageCaption = "Norva Exchange";

/// A message box with an OK button and the exclamation icon. The text is also kept as the last error.
void ShowMessage(std::string const& text);
/// Shows a failure where its window belongs. What is handed on is silent and keeps all that it says; `text`, if given,
/// is what the box has in place of it.
Status ShowFailure(Status status, std::string const& text = {});
/// A question with Yes and No; true for Yes.
bool AskYesNo(std::string const& text);
/// "Error" box with the system's text for an error number and the information icon.
void ShowSystemError(int error);

/// Opens the help topic that `format` makes of the host's help file path ("%s::/html/page.htm"); nothing happens when
/// that path, upper-cased, does not contain "NORVATOOL.CHM".
void ShowHelpTopic(std::string const& format);

/// Shows the wait cursor from construction to destruction.
class CWaitCursor {
public:
    CWaitCursor();
    CWaitCursor(CWaitCursor const&) = delete;
    CWaitCursor& operator=(CWaitCursor const&) = delete;
    ~CWaitCursor();
};

/// Sends the owner notice 0x411 with its two texts; `owner` may be null.
void SendOwnerNotice(CWindow* owner, std::string const& first, std::string const& second);

}  // namespace norva
