#pragma once

#include <QString>

class QWidget;

namespace norva {

/// Ask for a file, in the folder that was used last; empty when nothing was chosen. `filter` is as Qt's dialogs take
/// it; a name to save under gets the extension of the filter when it has none.
QString AskFileToOpen(QWidget* parent, QString const& title, QString const& filter);
QString AskFileToSave(QWidget* parent, QString const& title, QString const& filter, QString const& proposed = {});

QString LastFolder();
void RememberFolderOf(QString const& path);

}  // namespace norva
