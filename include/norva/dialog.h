#pragma once

#include "norva/controls.h"
#include "norva/window.h"

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace norva {

/// Numbers of the accepting and the cancelling button of every dialog.
inline constexpr int kButtonOk = 1;
inline constexpr int kButtonCancel = 2;

/// What a person did to a dialog.
struct DialogEvent {
    enum class Kind {
        Click,         ///< button pressed, check box or radio button clicked
        Choice,        ///< combo: `row` chosen
        Edit,          ///< edit: `text` typed and the box left
        Select,        ///< list, report: `row` clicked
        SelectColumn,  ///< grid: `column` clicked
        DoubleClick,   ///< list, report: `row` double-clicked
        EditCell,      ///< report: `text` typed into `row`, `column`
        Tick,          ///< report: tick box of `row` set to `on`
        Close,         ///< the window's close box
    };
    enum class Modifier { None, Shift, Ctrl };

    Kind kind = Kind::Click;
    int control = 0;
    int row = -1;
    int column = -1;
    std::string text{};
    bool on = false;
    Modifier modifier = Modifier::None;
};

/// Base of every dialog: the controls of one template and what happens to them. Knows no toolkit.
///
/// A skin calls Open() once, then Perform() for each act of the person, until IsEnded(); after every call it shows
/// the controls whose revision has grown.
class NORVA_API CDialog : public CWindow {
public:
    /// Throws std::invalid_argument when no template has that number.
    explicit CDialog(int templateNumber);
    ~CDialog() override;

    /// Runs the dialog modally in the current toolkit; the result is the number of the button that ended it.
    int DoModal();

    int TemplateNumber() const { return m_template->number; }
    DialogTemplate const& Template() const { return *m_template; }
    std::string const& Title() const { return m_title; }

    /// Controls in template order.
    std::vector<CControl> const& Controls() const { return m_controls; }
    /// The control of that number, or null.
    CControl const* FindControl(int id) const;

    /// Fills the controls (OnInitDialog). Called by the skin before the dialog is shown.
    void Open();
    /// Does what the person did, if a person could: false, with the reason in `why`, for a control that is not
    /// there, disabled or hidden, a row that does not exist, an edit that is read-only.
    bool Perform(DialogEvent const& event, std::string& why);
    /// Ends the dialog with Cancel, whatever it says to that.
    void Abandon();
    bool IsEnded() const { return m_ended; }
    int Result() const { return m_result; }

protected:
    /// Fills the controls before the dialog shows.
    virtual void OnInitDialog();
    /// Reacts to an act; the control's state already shows it. The base ends the dialog for buttons 1 and 2 and
    /// for Close.
    virtual void OnEvent(DialogEvent const& event);

    void EndDialog(int result);
    void SetTitle(std::string title);

    /// Access for changes; every call counts as one (the control's revision grows). Throws std::out_of_range for a
    /// number that the template does not have.
    CControl& Change(int id);
    CControl const& Get(int id) const;
    void SetText(int id, std::string text);
    void Enable(int id, bool enabled);
    void SetCheck(int id, bool checked);
    /// Checks one radio button and clears the others of its group; `id` 0 clears the group that holds `groupOf`.
    void CheckRadio(int groupOf, int id);
    /// The checked radio button of the group that holds `groupOf`; 0 for none.
    int CheckedRadio(int groupOf) const;
    /// Replaces the entries of a list or combo box; nothing is selected then.
    void SetItems(int id, std::vector<std::string> items);
    /// Replaces the rows of a report or grid; no row is selected or ticked then. A grid keeps its column while it
    /// has that many.
    void SetRows(int id, std::vector<std::vector<std::string>> rows);
    void SetColumns(int id, std::vector<std::string> titles);
    void SetCell(int id, int row, int column, std::string text);
    void SetTick(int id, int row, bool on);
    /// Selects one row (caret and anchor go there); -1 for none. The person's last choice stays what it was.
    void SelectRow(int id, int row);
    void SelectAllRows(int id);
    /// The selected entry of a combo box or the first selected row of a list; -1 for none.
    int SelectedRow(int id) const;
    void SelectColumn(int id, int column);

private:
    CControl* Find(int id);
    /// First and one-past-last position of the radio group around a position of m_controls.
    std::pair<std::size_t, std::size_t> RadioGroup(int id) const;
    /// Shows the act in the control's state: false, with the reason, when a person could not do it. `quiet` says
    /// that nothing came of it.
    bool Apply(CControl& control, DialogEvent const& event, std::string& why, bool& quiet);

    DialogTemplate const* m_template;
    std::string m_title;
    std::vector<CControl> m_controls;
    bool m_ended = false;
    int m_result = 0;
};

class CToolkit;

/// A window that stays open while its creator works on: the progress window.
class NORVA_API CModelessDialog : public CDialog {
public:
    using CDialog::CDialog;
    ~CModelessDialog() override;

    /// Opens the window; it stays until DestroyWindow() or the end of this object.
    void Create();
    void SetWindowTitle(std::string title);
    void ShowWindow();
    void DestroyWindow();
    bool IsCreated() const { return m_toolkit != nullptr; }

protected:
    /// The one that was current at Create(), which has to outlive the window; null while there is none.
    CToolkit* Toolkit() const { return m_toolkit; }
    /// Tells the toolkit that controls have changed; nothing happens before Create().
    void Changed();
    /// The same, and repaints before it returns.
    void UpdateWindow();

private:
    CToolkit* m_toolkit = nullptr;
};

}  // namespace norva
