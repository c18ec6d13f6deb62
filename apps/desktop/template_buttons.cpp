#include "template_buttons.h"

#include "common/column_template.h"
#include "common/command_error.h"

#include <QBoxLayout>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>

namespace norva {

namespace {

std::vector<std::string> const kNoMessages;

void UseTemplate(CQtDialog& window, std::string const& nameOrPath) {
    CDialogHand hand(window.Dialog(), kNoMessages);
    hand.onEvent = window.onEvent;
    try {
        ApplyTemplate(ReadTemplate(TemplatePath(nameOrPath)), hand);
    } catch (CommandError const& error) {
        QMessageBox::warning(&window, QObject::tr("Use template"), ToQString(error.what()));
    }
    window.RefreshAll();
}

void SaveTemplate(CQtDialog& window) {
    QString const title = QObject::tr("Save as template");
    bool accepted = false;
    QString const name =
        QInputDialog::getText(&window, title, QObject::tr("Name of the template:"), QLineEdit::Normal, {}, &accepted)
            .trimmed();
    if (!accepted || name.isEmpty()) return;
    std::string const path = TemplatePath(name.toStdString());
    if (QFileInfo::exists(ToQString(path)) &&
        QMessageBox::question(&window, title, QObject::tr("Replace the template %1?").arg(name)) != QMessageBox::Yes) {
        return;
    }
    CDialogHand hand(window.Dialog(), kNoMessages);
    try {
        WriteTemplate(path, CaptureTemplate(hand));
    } catch (CommandError const& error) {
        QMessageBox::warning(&window, title, ToQString(error.what()));
    }
    window.RefreshAll();
}

}  // namespace

void AddTemplateButtons(CQtDialog& window) {
    auto* const use = new QPushButton(window.WithMnemonic("Use template"));
    auto* const save = new QPushButton(window.WithMnemonic("Save as template..."));
    for (QPushButton* const button : {use, save}) button->setAutoDefault(false);
    auto* const menu = new QMenu(use);
    use->setMenu(menu);
    QObject::connect(menu, &QMenu::aboutToShow, menu, [&window, menu] {
        menu->clear();
        for (std::string const& name : TemplateNames()) {
            menu->addAction(ToQString(name), [&window, name] { UseTemplate(window, name); });
        }
        if (!menu->isEmpty()) menu->addSeparator();
        menu->addAction(QObject::tr("From a file..."), [&window] {
            QString const path = QFileDialog::getOpenFileName(&window, QObject::tr("Use template"), {},
                                                              QObject::tr("Column templates (*.json)"));
            if (!path.isEmpty()) UseTemplate(window, path.toStdString());
        });
    });
    QObject::connect(save, &QPushButton::clicked, &window, [&window] { SaveTemplate(window); });
    auto* const row = new QHBoxLayout;
    row->addWidget(use);
    row->addWidget(save);
    row->addStretch(1);
    static_cast<QBoxLayout*>(window.layout())->insertLayout(0, row);
}

}  // namespace norva
