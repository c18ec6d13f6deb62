#include "help_window.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QTextBrowser>
#include <QVBoxLayout>

namespace norva {

void ShowHelpPage(QWidget* parent, QString const& topic) {
    QString const page = topic.section("::", 0, 0) + topic.section("::", 1);
    auto* const window = new QDialog(parent);
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->setWindowTitle(QObject::tr("Help"));
    auto* const browser = new QTextBrowser;
    browser->setSearchPaths({QFileInfo(page).absolutePath()});
    if (QFileInfo::exists(page)) {
        browser->setSource(QUrl::fromLocalFile(page));
    } else {
        browser->setPlainText(QObject::tr("The help page is missing:\n%1").arg(page));
    }
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    QObject::connect(buttons, &QDialogButtonBox::rejected, window, &QDialog::close);
    auto* const layout = new QVBoxLayout(window);
    layout->addWidget(browser);
    layout->addWidget(buttons);
    window->resize(640, 560);
    // A modal dialog may be open: its help must still take clicks.
    window->setWindowModality(parent != nullptr && parent->isModal() ? Qt::WindowModal : Qt::NonModal);
    window->show();
}

}  // namespace norva
