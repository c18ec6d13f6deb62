#pragma once

#include "norva/controls.h"
#include "norva/window.h"

#include <string>
#include <vector>

namespace norva {

/// Numbers of the accepting and the cancelling button of every dialog.
inline constexpr int kButtonOk = 1;
inline constexpr int kButtonCancel = 2;

/// What a person did to a dialog.
struct DialogEvent {
    enum class Kind {
        Click,        ///< button pressed, check box or radio button clicked
        Choice,       ///< combo: `row` chosen
        Edit,         ///< edit: `text` typed and the box left
        Select,       ///< list, report: `row` clicked
        SelectColumn, ///< grid: `column` clicked
        DoubleClick,  ///< list, report: `row` double-clicked
        EditCell,     ///< report: `text` typed into `row`, `column`
        Tick,         ///< report: tick box of `row` set to `on`
        Close,        ///< the window's close box
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

    /// Access for changes; every call counts as one (the control's revision grows). The number must exist.
    CControl& Change(int id);
    CControl const& Get(int id) const;
    void SetText(int id, std::string text);
    void Enable(int id, bool enabled);
    void SetCheck(int id, bool checked);
    /// Checks one radio button and clears the others of its group; `id` 0 clears the group that holds `groupOf`.
    void CheckRadio(int groupOf, int id);
    /// Replaces the entries of a list or combo box; nothing is selected then.
    void SetItems(int id, std::vector<std::string> items);
    /// Selects one row (caret and anchor go there); -1 for none.
    void SelectRow(int id, int row);

private:
    bool PerformSelection(CControl& control, DialogEvent const& event, std::string& why);

    DialogTemplate const* m_template;
    std::string m_title;
    std::vector<CControl> m_controls;
    bool m_ended = false;
    int m_result = 0;

    friend class CModelessDialog;
};

/// A window that stays open while its creator works on: the progress window.
class NORVA_API CModelessDialog : public CDialog {
public:
    using CDialog::CDialog;
    ~CModelessDialog() override;

    void Create();
    void SetWindowTitle(std::string title);
    void ShowWindow();
    void DestroyWindow();
    bool IsCreated() const { return m_created; }

protected:
    /// Repaints at once.
    void UpdateWindow();

private:
    bool m_created = false;
};

}  // namespace norva
