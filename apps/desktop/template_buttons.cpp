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

void UseTemplate(CQtDialog& window, CColumnTextDialog& dialog, std::string const& nameOrPath) {
    std::string why;
    try {
        CColumnTextDraft draft = dialog.Draft();
        ApplyTemplate(ReadTemplate(TemplatePath(nameOrPath)), draft);
        why = dialog.TakeSettings(draft.Settings(), window.onEvent).Text();
    } catch (CommandError const& error) {
        why = error.what();
    }
    if (!why.empty()) QMessageBox::warning(&window, QObject::tr("Use template"), ToQString(why));
    window.RefreshAll();
}

void SaveTemplate(CQtDialog& window, CColumnTextDialog const& dialog) {
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
    try {
        WriteTemplate(path, TemplateOf(dialog.Draft()));
    } catch (CommandError const& error) {
        QMessageBox::warning(&window, title, ToQString(error.what()));
    }
}

}  // namespace

void AddTemplateButtons(CQtDialog& window, CColumnTextDialog& dialog) {
    auto* const use = new QPushButton(window.WithMnemonic("Use template"));
    auto* const save = new QPushButton(window.WithMnemonic("Save as template..."));
    for (QPushButton* const button : {use, save}) button->setAutoDefault(false);
    auto* const menu = new QMenu(use);
    use->setMenu(menu);
    QObject::connect(menu, &QMenu::aboutToShow, menu, [&window, &dialog, menu] {
        menu->clear();
        for (std::string const& name : TemplateNames()) {
            menu->addAction(ToQString(name), [&window, &dialog, name] { UseTemplate(window, dialog, name); });
        }
        if (!menu->isEmpty()) menu->addSeparator();
        menu->addAction(QObject::tr("From a file..."), [&window, &dialog] {
            QString const path = QFileDialog::getOpenFileName(&window, QObject::tr("Use template"), {},
                                                              QObject::tr("Column templates (*.json)"));
            if (!path.isEmpty()) UseTemplate(window, dialog, path.toStdString());
        });
    });
    QObject::connect(save, &QPushButton::clicked, &window, [&window, &dialog] { SaveTemplate(window, dialog); });
    auto* const row = new QHBoxLayout;
    row->addWidget(use);
    row->addWidget(save);
    row->addStretch(1);
    static_cast<QBoxLayout*>(window.layout())->insertLayout(0, row);
}

}  // namespace norva
