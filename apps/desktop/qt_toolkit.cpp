#include "qt_toolkit.h"

#include "help_window.h"
#include "norva/scripted_toolkit.h"

#include <QApplication>
#include <QFileInfo>
#include <QMessageBox>
#include <QPushButton>
#include <QRegularExpression>

#include <algorithm>
#include <utility>

namespace norva {

namespace {

constexpr int kFormatDialog = 4063;

}  // namespace

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

std::string ExtensionOfQtFilter(QString const& filter) {
    static QRegularExpression const pattern("\\(\\*\\.([A-Za-z0-9]+)");
    return pattern.match(filter).captured(1).toStdString();
}

CQtToolkit::CQtToolkit(QWidget* mainWindow) : m_mainWindow(mainWindow) {}
CQtToolkit::~CQtToolkit() = default;

QWidget* CQtToolkit::Parent() const {
    QWidget* const active = QApplication::activeModalWidget();
    return active != nullptr ? active : m_mainWindow;
}

bool CQtToolkit::ChoosePresetFormat(CDialog& dialog) {
    if (!m_nextFormat || dialog.TemplateNumber() != kFormatDialog) return false;
    std::string const format = *std::exchange(m_nextFormat, std::nullopt);
    std::string why;
    CControl const* const list = ResolveControl(dialog, "Formats", why);
    if (list == nullptr) return false;
    auto const found = std::find(list->items.begin(), list->items.end(), format);
    if (found == list->items.end()) return false;
    DialogEvent choose;
    choose.kind = DialogEvent::Kind::DoubleClick;
    choose.control = list->id;
    choose.row = static_cast<int>(found - list->items.begin());
    return dialog.Perform(choose, why) && dialog.IsEnded();
}

int CQtToolkit::RunModal(CDialog& dialog) {
    dialog.Open();
    if (dialog.IsEnded() || ChoosePresetFormat(dialog)) return dialog.Result();
    CQtDialog window(dialog, Parent());
    window.exec();
    return dialog.Result();
}

MessageAnswer CQtToolkit::ShowMessage(MessageRequest const& request) {
    QMessageBox box(Parent());
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

bool CQtToolkit::ChooseFileToOpen(FileRequest const& request, std::string& path) {
    if (m_nextOpen) {
        path = *m_nextOpen;
        m_nextOpen.reset();
        return true;
    }
    QString const chosen = QFileDialog::getOpenFileName(Parent(), ToQString(request.title), ToQString(request.initial),
                                                        QtFilters(request.filter).join(";;"));
    if (chosen.isEmpty()) return false;
    path = QFileInfo(chosen).absoluteFilePath().toStdString();
    return true;
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
    m_windows[&window] = std::move(view);
    WindowChanged(window, true);
}

void CQtToolkit::WindowTitled(CModelessDialog& window) {
    WindowChanged(window, true);
}

void CQtToolkit::WindowShown(CModelessDialog& window) {
    auto const found = m_windows.find(&window);
    if (found != m_windows.end()) found->second->show();
}

void CQtToolkit::WindowChanged(CModelessDialog& window, bool now) {
    auto const found = m_windows.find(&window);
    if (found == m_windows.end()) return;
    found->second->RefreshAll();
    if (now) found->second->repaint();
    // The work runs on this thread: let the window be painted, but take no clicks or keys.
    QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void CQtToolkit::WindowDestroyed(CModelessDialog& window) {
    m_windows.erase(&window);
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

void CQtToolkit::ShowHelp(std::string const& topic) {
    ShowHelpPage(Parent(), ToQString(topic));
}

}  // namespace norva
