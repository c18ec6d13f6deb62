// A Qt program as an outsider would write it: it shows the library's dialogs. A timer sits in front of them as the
// person would.

#include <norva/import_export.h>
#include <norva/qt_toolkit.h>

#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

#include <cstdlib>
#include <iostream>

namespace {

void PressDefaultButton(QDialog& dialog) {
    for (QPushButton* const button : dialog.findChildren<QPushButton*>()) {
        if (button->isDefault()) return button->click();
    }
    dialog.reject();
}

}  // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    if (argc != 3) return 2;
    QWidget mainWindow;
    mainWindow.show();
    QStringList titles;
    QTimer person;
    QObject::connect(&person, &QTimer::timeout, [&] {
        auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (dialog == nullptr) return;
        if (titles.isEmpty() || titles.back() != dialog->windowTitle()) titles << dialog->windowTitle();
        auto* const chooser = qobject_cast<QFileDialog*>(dialog);
        if (chooser == nullptr) return PressDefaultButton(*dialog);
        // As typed, which needs no list of the folder.
        bool const opens = chooser->acceptMode() == QFileDialog::AcceptOpen;
        chooser->findChild<QLineEdit*>()->setText(opens ? argv[1] : argv[2]);
        QMetaObject::invokeMethod(chooser, "accept");
    });
    person.start(20);
    QTimer::singleShot(60'000, [&] {
        std::cerr << "stuck after " << titles.join(", ").toStdString() << "\n";
        std::_Exit(1);
    });

    norva::CQtToolkit toolkit(&mainWindow);
    norva::CToolkitScope const scope(toolkit);
    norva::CNorvaFileUtil store;
    std::string name;
    int const result = Import_Data_File(&store, name, nullptr, 0);
    std::cout << result << " " << name << " after " << titles.join(", ").toStdString() << "\n";
    return result == 1 && name == argv[2] && titles.size() >= 4 ? 0 : 1;
}
