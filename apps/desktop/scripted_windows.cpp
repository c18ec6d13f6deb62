#include "scripted_windows.h"

#include "message_window.h"
#include "widget_hand.h"

#include <qtestsupport_widgets.h>
#include <QApplication>
#include <QComboBox>
#include <QFocusEvent>
#include <QLineEdit>
#include <QTimer>
#include <QTreeView>

namespace norva {

namespace {

Qt::KeyboardModifier ModifierOf(DialogEvent const& event) {
    switch (event.modifier) {
        case DialogEvent::Modifier::Shift:
            return Qt::ShiftModifier;
        case DialogEvent::Modifier::Ctrl:
            return Qt::ControlModifier;
        default:
            return Qt::NoModifier;
    }
}

/// A list's check boxes stand in its first column: a row is clicked beside them.
int ColumnToClick(CControl const& control) {
    return control.node->checkBoxes ? 1 : 0;
}

void TypeText(QLineEdit& edit, QString const& text) {
    edit.setFocus();
    edit.selectAll();
    PressKey(edit, Qt::Key_Delete);
    TypeInto(edit, text);
    edit.setModified(true);  // typing the same text again counts as well
}

void ChooseEntry(QComboBox& combo, int row) {
    combo.setFocus();
    combo.showPopup();
    combo.view()->setCurrentIndex(combo.model()->index(row, 0));
    PressKey(*combo.view(), Qt::Key_Return);
}

void EditInPlace(QTreeView& rows, DialogEvent const& event) {
    QModelIndex const index = rows.model()->index(event.row, event.column);
    rows.edit(index);
    // The editor of the cell before may still wait for its end; the newest is the last.
    QList<QLineEdit*> const editors = rows.findChildren<QLineEdit*>();
    if (!editors.isEmpty()) {
        TypeText(*editors.last(), QString::fromStdString(event.text));
        PressKey(*editors.last(), Qt::Key_Return);
        QApplication::processEvents();  // the cell takes its text only after the key was handled
    }
}

void TickRow(QTreeView& rows, int row) {
    QRect const cell = rows.visualRect(rows.model()->index(row, 0));
    ClickWidget(*rows.viewport(), cell.topLeft() + QPoint(8, cell.height() / 2));
}

/// The person's act on the widgets of one control.
void ActOnWidgets(CControlView& view, CControl const& control, DialogEvent const& event) {
    QWidget* const widget = view.Widget();
    if (!widget->isEnabled() || !widget->isVisible()) return;
    switch (event.kind) {
        case DialogEvent::Kind::Click:
            widget->setFocus(Qt::MouseFocusReason);
            ClickWidget(*widget, QPoint(10, widget->height() / 2));
            break;
        case DialogEvent::Kind::Choice:
            if (auto* const combo = qobject_cast<QComboBox*>(widget)) ChooseEntry(*combo, event.row);
            break;
        case DialogEvent::Kind::Edit:
            if (auto* const edit = qobject_cast<QLineEdit*>(widget); edit != nullptr && !edit->isReadOnly()) {
                TypeText(*edit, QString::fromStdString(event.text));
                // A window without the keyboard focus has no box to leave: leave this one all the same.
                QFocusEvent leave(QEvent::FocusOut, Qt::TabFocusReason);
                QApplication::sendEvent(edit, &leave);
            }
            break;
        case DialogEvent::Kind::Select:
            ClickWidget(*view.Target(), view.RowPoint(event.row, ColumnToClick(control)), ModifierOf(event));
            break;
        case DialogEvent::Kind::SelectColumn:
            ClickWidget(*view.Target(), view.RowPoint(0, event.column));
            break;
        case DialogEvent::Kind::DoubleClick:
            DoubleClickWidget(*view.Target(), view.RowPoint(event.row, ColumnToClick(control)));
            break;
        case DialogEvent::Kind::EditCell:
            if (auto* const rows = qobject_cast<QTreeView*>(widget)) EditInPlace(*rows, event);
            break;
        case DialogEvent::Kind::Tick:
            if (auto* const rows = qobject_cast<QTreeView*>(widget)) TickRow(*rows, event.row);
            break;
        case DialogEvent::Kind::Close:
            break;
    }
}

}  // namespace

CScriptedWindows::CScriptedWindows(std::vector<ScriptAnswer> answers, bool defaults, CTrace* trace)
    : CScriptedToolkit(std::move(answers), defaults, trace) {}

CScriptedWindows::~CScriptedWindows() = default;

MessageAnswer CScriptedWindows::ShowMessage(MessageRequest const& request) {
    MessageAnswer const answer = CScriptedToolkit::ShowMessage(request);
    QTimer::singleShot(0, [answer] { PressMessageButton(answer); });
    ShowMessageWindow(QApplication::activeModalWidget(), request);
    return answer;
}

void CScriptedWindows::WindowCreated(CModelessDialog& window) {
    CScriptedToolkit::WindowCreated(window);
    auto view = std::make_unique<CQtDialog>(window);
    view->show();
    m_windows[&window] = std::move(view);
}

void CScriptedWindows::WindowChanged(CModelessDialog& window, bool now) {
    auto const found = m_windows.find(&window);
    if (found != m_windows.end()) found->second->RefreshProgress(now);
}

void CScriptedWindows::WindowDestroyed(CModelessDialog& window) {
    m_windows.erase(&window);
    CScriptedToolkit::WindowDestroyed(window);
}

void CScriptedWindows::DialogShown(CDialog& dialog) {
    auto window = std::make_unique<CQtDialog>(dialog);
    window->setModal(true);
    window->show();
    static_cast<void>(QTest::qWaitForWindowExposed(window.get()));
    m_windows[&dialog] = std::move(window);
}

bool CScriptedWindows::Act(CDialog& dialog, DialogEvent const& event, std::string& why) {
    CQtDialog& window = *m_windows.at(&dialog);
    bool heard = false;
    window.onEvent = [&heard, &event](DialogEvent const& taken) {
        heard = heard || (taken.kind == event.kind && taken.control == event.control);
    };
    if (event.kind == DialogEvent::Kind::Close) {
        window.close();
    } else if (CControlView* const view = window.View(event.control)) {
        CControl const& control = *dialog.FindControl(event.control);
        bool const possible = event.row < 0 || control.kind == ControlKind::Combo || event.row < control.RowCount();
        if (possible) ActOnWidgets(*view, control, event);
    }
    window.onEvent = {};
    if (heard) return true;
    // The dialog itself knows best why a person could not do it.
    if (dialog.Perform(event, why)) why = "the window did not take it";
    return false;
}

void CScriptedWindows::DialogGone(CDialog& dialog) {
    m_windows.erase(&dialog);
}

}  // namespace norva
