#include "qt_toolkit.h"

#include "common/set_channels_dialog.h"
#include "help_window.h"
#include "message_window.h"
#include "norva/scripted_toolkit.h"
#include "template_buttons.h"

#include <QApplication>
#include <QFileInfo>
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
    if (m_recorder != nullptr) m_recorder->Act(m_recorder->BeginDialog(dialog), dialog, choose);
    return dialog.Perform(choose, why) && dialog.IsEnded();
}

int CQtToolkit::RunModal(CDialog& dialog) {
    dialog.Open();
    if (dialog.IsEnded() || ChoosePresetFormat(dialog)) return dialog.Result();
    CQtDialog window(dialog, Parent());
    std::size_t const entry = m_recorder != nullptr ? m_recorder->BeginDialog(dialog) : 0;
    if (m_recorder != nullptr) {
        window.onEvent = [this, &dialog, entry](DialogEvent const& event) { m_recorder->Act(entry, dialog, event); };
    }
    if (dialog.TemplateNumber() == set_channels::kTemplate) AddTemplateButtons(window);
    window.exec();
    return dialog.Result();
}

MessageAnswer CQtToolkit::ShowMessage(MessageRequest const& request) {
    MessageAnswer const answer = ShowMessageWindow(Parent(), request);
    if (m_recorder != nullptr) m_recorder->Message(request, answer);
    return answer;
}

bool CQtToolkit::ChooseFileToOpen(FileRequest const& request, std::string& path) {
    if (m_nextOpen) {
        path = *m_nextOpen;
        m_nextOpen.reset();
        if (m_recorder != nullptr) m_recorder->Open(&path);
        return true;
    }
    QString const chosen = QFileDialog::getOpenFileName(Parent(), ToQString(request.title), ToQString(request.initial),
                                                        QtFilters(request.filter).join(";;"));
    if (!chosen.isEmpty()) path = QFileInfo(chosen).absoluteFilePath().toStdString();
    if (m_recorder != nullptr) m_recorder->Open(chosen.isEmpty() ? nullptr : &path);
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
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) {
        if (m_recorder != nullptr) m_recorder->Save(nullptr, {});
        return false;
    }
    path = QFileInfo(dialog.selectedFiles().front()).absoluteFilePath().toStdString();
    extension = ReportedExtension(path, ExtensionOfQtFilter(dialog.selectedNameFilter()), request.filter);
    if (m_recorder != nullptr) m_recorder->Save(&path, extension);
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
    if (!found->second->RefreshProgress(now)) return;
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
