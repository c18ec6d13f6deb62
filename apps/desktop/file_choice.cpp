#include "file_choice.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSettings>

namespace norva {

namespace {

char const* const kFolderKey = "folder";

QString SuffixOf(QString const& filter) {
    static QRegularExpression const pattern("\\*\\.([A-Za-z0-9]+)");
    return pattern.match(filter).captured(1);
}

}  // namespace

QString LastFolder() {
    QString const folder = QSettings().value(kFolderKey).toString();
    return QFileInfo(folder).isDir() ? folder : QDir::currentPath();
}

void RememberFolderOf(QString const& path) {
    QSettings().setValue(kFolderKey, QFileInfo(path).absolutePath());
}

QString AskFileToOpen(QWidget* parent, QString const& title, QString const& filter) {
    QString const path = QFileDialog::getOpenFileName(parent, title, LastFolder(), filter);
    if (!path.isEmpty()) RememberFolderOf(path);
    return path;
}

QString AskFileToSave(QWidget* parent, QString const& title, QString const& filter, QString const& proposed) {
    QFileDialog dialog(parent, title, LastFolder());
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setNameFilters(filter.split(";;"));
    if (!proposed.isEmpty()) dialog.selectFile(proposed);
    auto const follow = [&dialog](QString const& chosen) { dialog.setDefaultSuffix(SuffixOf(chosen)); };
    follow(dialog.selectedNameFilter());
    QObject::connect(&dialog, &QFileDialog::filterSelected, follow);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
    QString const path = dialog.selectedFiles().front();
    RememberFolderOf(path);
    return path;
}

}  // namespace norva
