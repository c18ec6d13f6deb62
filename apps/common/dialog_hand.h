#pragma once

#include "norva/scripted_toolkit.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace norva {

/// What a program does to a dialog that is open: the acts of a person, refused as a person's would be.
class CDialogHand {
public:
    /// `messages` receives what the library says; a message in answer to an act means that the act was refused.
    CDialogHand(CDialog& dialog, std::vector<std::string> const& messages) : m_dialog(dialog), m_messages(messages) {}

    CDialog const& Dialog() const { return m_dialog; }
    CControl const& Control(ControlName const& name) const;

    void Click(ControlName const& control);
    /// Sets a check box only when it stands otherwise.
    void Check(ControlName const& control, bool on);
    void Set(ControlName const& control, std::string const& text);
    void Choose(ControlName const& control, int index);
    void SelectRow(ControlName const& control, int row);
    void SelectColumn(ControlName const& control, int column);
    void DoubleClick(ControlName const& control, int row);
    void EditCell(ControlName const& control, int row, int column, std::string const& text);
    void Tick(ControlName const& control, int row, bool on);

    /// Told of every act before the dialog takes it (a recorder).
    std::function<void(DialogEvent const& event)> onEvent;

private:
    void Do(ScriptAction const& action);

    CDialog& m_dialog;
    std::vector<std::string> const& m_messages;
};

bool EqualIgnoringCase(std::string_view first, std::string_view second);

/// Position of a name (in any case when there is none in its own), or of a number counted from `first`, in a list;
/// throws CommandError when there is none.
int FindNamed(std::vector<std::string> const& names, std::string const& wanted, int first, std::string const& what);

}  // namespace norva
