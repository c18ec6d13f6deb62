#include "widget_hand.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWidget>

namespace norva {

namespace {

void SendMouse(QWidget& widget, QEvent::Type type, QPoint place, Qt::KeyboardModifiers modifiers) {
    Qt::MouseButtons const held = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(type, place, widget.mapToGlobal(place), Qt::LeftButton, held, modifiers);
    QApplication::sendEvent(&widget, &event);
}

/// Only events of the window system move the focus by themselves.
void FocusAt(QWidget& widget) {
    for (QWidget* here = &widget; here != nullptr; here = here->parentWidget()) {
        if ((here->focusPolicy() & Qt::ClickFocus) == Qt::ClickFocus) {
            here->setFocus(Qt::MouseFocusReason);
            return;
        }
        if (here->isWindow()) return;
    }
}

}  // namespace

void ClickWidget(QWidget& widget, QPoint place, Qt::KeyboardModifiers modifiers) {
    FocusAt(widget);
    SendMouse(widget, QEvent::MouseButtonPress, place, modifiers);
    SendMouse(widget, QEvent::MouseButtonRelease, place, modifiers);
}

void DoubleClickWidget(QWidget& widget, QPoint place) {
    ClickWidget(widget, place);
    SendMouse(widget, QEvent::MouseButtonDblClick, place, {});
    SendMouse(widget, QEvent::MouseButtonRelease, place, {});
}

void PressKey(QWidget& widget, int key, QString const& text, Qt::KeyboardModifiers modifiers) {
    QKeyEvent press(QEvent::KeyPress, key, modifiers, text);
    QApplication::sendEvent(&widget, &press);
    QKeyEvent release(QEvent::KeyRelease, key, modifiers, text);
    QApplication::sendEvent(&widget, &release);
}

void TypeInto(QWidget& widget, QString const& text) {
    for (QChar const letter : text) PressKey(widget, letter.toUpper().unicode(), letter);
}

}  // namespace norva
