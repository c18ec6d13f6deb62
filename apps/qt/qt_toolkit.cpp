#include "norva/qt_toolkit.h"

#include "help_window.h"
#include "message_window.h"
#include "qt_dialog.h"

#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QRegularExpression>

#include <map>

namespace norva {

struct CQtToolkit::Windows {
    std::map<CModelessDialog*, std::unique_ptr<CQtDialog>> open;
};

namespace {

/// The filter of a file dialog as Qt writes it: "Text (*.xyz *.txt)".
QStringList QtFilters(std::string_view filter) {
    QStringList const parts = ToQString(filter).split('|');
    QStringList filters;
    for (qsizetype i = 0; i + 1 < parts.size() && !parts[i].isEmpty(); i += 2) {
        QString description = parts[i];
        description.remove(QRegularExpression("\\s*\\(.*\\)\\s*$"));
        QStringList patterns;
        for (QString const& pattern : parts[i + 1].split(';', Qt::SkipEmptyParts)) {
            QString const one = pattern.trimmed();
            if (one == "*.*") {
                patterns << "*";
                continue;
            }
            patterns << one;
            if (one.toUpper() != one) patterns << one.toUpper();
        }
        filters << description + " (" + patterns.join(' ') + ")";
    }
    return filters;
}

/// Extension of the first pattern of a Qt filter; empty for none.
std::string ExtensionOfQtFilter(QString const& filter) {
    static QRegularExpression const pattern("\\(\\*\\.([A-Za-z0-9]+)");
    return pattern.match(filter).captured(1).toStdString();
}

}  // namespace

CQtToolkit::CQtToolkit(QWidget* mainWindow) : m_mainWindow(mainWindow), m_windows(std::make_unique<Windows>()) {}
CQtToolkit::~CQtToolkit() = default;

QWidget* CQtToolkit::Parent() const {
    QWidget* const active = QApplication::activeModalWidget();
    return active != nullptr ? active : m_mainWindow;
}

int CQtToolkit::RunModal(CDialog& dialog) {
    dialog.Open();
    if (!dialog.IsEnded()) CQtDialog(dialog, Parent()).exec();
    return dialog.Result();
}

MessageAnswer CQtToolkit::ShowMessage(MessageRequest const& request) {
    return ShowMessageWindow(Parent(), request);
}

bool CQtToolkit::ChooseFileToOpen(FileRequest const& request, std::string& path) {
    QString const chosen = QFileDialog::getOpenFileName(Parent(), ToQString(request.title), ToQString(request.initial),
                                                        QtFilters(request.filter).join(";;"));
    if (!chosen.isEmpty()) path = QFileInfo(chosen).absoluteFilePath().toStdString();
    return !chosen.isEmpty();
}

bool CQtToolkit::ChooseFileToSave(FileRequest const& request, std::string& path, std::string& extension) {
    QFileDialog dialog(Parent(), ToQString(request.title));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    QStringList const filters = QtFilters(request.filter);
    dialog.setNameFilters(filters);
    QFileInfo const initial(ToQString(request.initial));
    if (!request.initial.empty()) {
        dialog.setDirectory(initial.absolutePath());
        dialog.selectFile(initial.fileName());
        for (QString const& filter : filters) {
            if (ToQString(ExtensionOfQtFilter(filter)).compare(initial.suffix(), Qt::CaseInsensitive) == 0) {
                dialog.selectNameFilter(filter);
            }
        }
    }
    // A name without extension gets that of the filter, so that the question about overwriting names the right file.
    auto const follow = [&dialog](QString const& filter) {
        dialog.setDefaultSuffix(ToQString(ExtensionOfQtFilter(filter)));
    };
    follow(dialog.selectedNameFilter());
    QObject::connect(&dialog, &QFileDialog::filterSelected, follow);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return false;
    path = QFileInfo(dialog.selectedFiles().front()).absoluteFilePath().toStdString();
    extension = ReportedExtension(path, ExtensionOfQtFilter(dialog.selectedNameFilter()), request.filter);
    return true;
}

void CQtToolkit::WindowCreated(CModelessDialog& window) {
    auto view = std::make_unique<CQtDialog>(window, m_mainWindow);
    view->setWindowFlag(Qt::WindowCloseButtonHint, false);
    view->setWindowModality(Qt::ApplicationModal);  // nothing else is started while the work runs
    view->setMinimumWidth(420);
    view->show();
    m_windows->open[&window] = std::move(view);
    WindowChanged(window, true);
}

void CQtToolkit::WindowTitled(CModelessDialog& window) {
    WindowChanged(window, true);
}

void CQtToolkit::WindowShown(CModelessDialog& window) {
    auto const found = m_windows->open.find(&window);
    if (found != m_windows->open.end()) found->second->show();
}

void CQtToolkit::WindowChanged(CModelessDialog& window, bool now) {
    auto const found = m_windows->open.find(&window);
    if (found == m_windows->open.end()) return;
    if (!found->second->RefreshProgress(now)) return;
    // The work runs on this thread: let the window be painted, but take no clicks or keys.
    QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void CQtToolkit::WindowDestroyed(CModelessDialog& window) {
    m_windows->open.erase(&window);
}

void CQtToolkit::SetCursor(CursorShape shape) {
    bool const wait = shape == CursorShape::Wait;
    if (wait == m_waiting) return;
    m_waiting = wait;
    if (wait) {
        QApplication::setOverrideCursor(Qt::WaitCursor);
    } else {
        QApplication::restoreOverrideCursor();
    }
}

void CQtToolkit::CallEnded() {
    SetCursor(CursorShape::Arrow);
}

void CQtToolkit::ShowHelp(std::string const& topic) {
    ShowHelpPage(Parent(), ToQString(topic));
}

}  // namespace norva
