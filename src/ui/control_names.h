#pragma once

#include "norva/dialog.h"

#include <string>
#include <string_view>

/// How controls and dialogs are named in traces and messages.
namespace norva {

/// "static", "edit", ... ; both kinds of list are "list".
std::string_view KindName(ControlKind kind);
/// `button 4021 "Label"`.
std::string NameOf(CControl const& control);
/// `dialog 4003 "Title"`.
std::string NameOf(CDialog const& dialog);
/// A dialog with its title and a line for every control with its state; long lists are cut.
std::string Describe(CDialog const& dialog);
/// The text in double quotes, with quotes, backslashes and control characters escaped.
std::string Quoted(std::string_view text);

}  // namespace norva
