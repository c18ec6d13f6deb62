#pragma once

#include <QPoint>
#include <QString>
#include <Qt>

class QKeySequence;
class QWidget;

namespace norva {

/// What a person's hand does to a widget, as events that it takes for the real ones.
void ClickWidget(QWidget& widget, QPoint place, Qt::KeyboardModifiers modifiers = {});
void DoubleClickWidget(QWidget& widget, QPoint place);
void PressKey(QWidget& widget, int key, QString const& text = {}, Qt::KeyboardModifiers modifiers = {});
/// Types a text, a key for every letter.
void TypeInto(QWidget& widget, QString const& text);

}  // namespace norva
