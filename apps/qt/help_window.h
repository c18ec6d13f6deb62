#pragma once

#include <QString>
#include <QWidget>

namespace norva {

/// Shows a page of the help folder in a window of its own; `topic` is "folder::/html/page.htm".
void ShowHelpPage(QWidget* parent, QString const& topic);

}  // namespace norva
