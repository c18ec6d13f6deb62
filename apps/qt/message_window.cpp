#include "message_window.h"

#include "control_views.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>

namespace norva {

MessageAnswer ShowMessageWindow(QWidget* parent, MessageRequest const& request) {
    QMessageBox box(parent);
    box.setWindowTitle(ToQString(request.caption));
    box.setTextFormat(Qt::PlainText);
    box.setText(ToQString(request.text));
    switch (request.icon) {
        case MessageIcon::None:
            break;
        case MessageIcon::Information:
            box.setIcon(QMessageBox::Information);
            break;
        case MessageIcon::Question:
            box.setIcon(QMessageBox::Question);
            break;
        case MessageIcon::Exclamation:
            box.setIcon(QMessageBox::Warning);
            break;
    }
    bool const question = request.buttons == MessageButtons::YesNo;
    box.setStandardButtons(question ? QMessageBox::Yes | QMessageBox::No : QMessageBox::Ok);
    box.setDefaultButton(question ? QMessageBox::Yes : QMessageBox::Ok);
    if (question) box.setEscapeButton(QMessageBox::No);
    int const pressed = box.exec();
    if (!question) return MessageAnswer::Ok;
    return pressed == QMessageBox::Yes ? MessageAnswer::Yes : MessageAnswer::No;
}

void PressMessageButton(MessageAnswer answer) {
    auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (box == nullptr) return;
    QMessageBox::StandardButton const button = answer == MessageAnswer::Ok    ? QMessageBox::Ok
                                               : answer == MessageAnswer::Yes ? QMessageBox::Yes
                                                                              : QMessageBox::No;
    if (box->button(button) != nullptr) box->button(button)->click();
}

}  // namespace norva
