#include "main_window.h"

#include "control_views.h"
#include "file_choice.h"
#include "norva/import_export.h"
#include "picture_dialog.h"
#include "plot_style.h"
#include "quality_page.h"
#include "report_window.h"
#include "start_page.h"

#include <QFileInfo>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QSettings>
#include <QSplitter>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTabWidget>
#include <QTimer>

#include <algorithm>
#include <utility>

namespace norva {

namespace {

constexpr int kRecentFiles = 8;
constexpr int kMapTab = 1;
constexpr int kLookEvery = 1500;  ///< milliseconds between two looks whether another program changed the store
char const* const kRecentKey = "recent";

}  // namespace

CMainWindow::CMainWindow()
    : m_toolkit(std::make_unique<CDesktopToolkit>(this)),
      m_job(*m_toolkit, this),
      m_owner(std::make_unique<CWindow>()),
      m_pages(new QStackedWidget),
      m_startPage(new CStartPage),
      m_panel(new CStorePanel(m_document)),
      m_table(new CLocationTable(m_document)),
      m_profilePage(new CProfilePage(m_document)),
      m_mapPage(new CMapPage(m_document)),
      m_qualityPage(new CQualityPage(m_document)),
      m_tabs(new QTabWidget),
      m_columns(new QSplitter(Qt::Horizontal)),
      m_centre(new QSplitter(Qt::Vertical)),
      m_changedBar(new QWidget),
      m_changedText(new QLabel),
      m_recordSign(new QLabel),
      m_exported(new QLabel),
      m_recent(nullptr),
      m_record(nullptr) {
    setAcceptDrops(true);
    BuildPanels();
    BuildMenus();
    ConnectViews();
    ShowDocument(false);
    RestoreLayout();
    auto* const look = new QTimer(this);
    connect(look, &QTimer::timeout, this, &CMainWindow::LookForChanges);
    look->start(kLookEvery);
}

CMainWindow::~CMainWindow() {
    // The views go before the document that they show.
    hide();
    m_document.disconnect(this);
    m_document.Undo().disconnect(this);
    delete takeCentralWidget();
}

void CMainWindow::Complain(QString const& text) {
    QMessageBox box(QMessageBox::Warning, tr("Norva Exchange"), text, QMessageBox::Ok, this);
    box.setTextFormat(Qt::PlainText);
    box.exec();
}

void CMainWindow::OpenFile(QString const& path) {
    if (m_job.IsRunning()) return;
    QString const full = QFileInfo(path).absoluteFilePath();
    if (!QFileInfo::exists(full)) {
        Complain(tr("There is no file\n%1").arg(full));
        return;
    }
    if (!MayLeave()) return;
    QString why;
    if (m_document.Open(full, why)) {
        RememberFile(full);
        RememberFolderOf(full);
        ShowDocument(false);
        return;
    }
    if (QFileInfo(full).suffix().compare("nvt", Qt::CaseInsensitive) == 0) {
        Complain(tr("This store cannot be opened:\n%1\n%2").arg(full, why));
        return;
    }
    ImportFiles({full});
}

void CMainWindow::ShowTitle() {
    bool const isOpen = m_document.IsOpen();
    setWindowFilePath(m_document.Path());
    setWindowTitle(isOpen ? tr("%1[*] - Norva Exchange").arg(QFileInfo(m_document.Path()).fileName())
                          : tr("Norva Exchange"));
    setWindowModified(m_document.HasChanges());
}

void CMainWindow::ShowDocument(bool isSame) {
    bool const isOpen = m_document.IsOpen();
    for (QAction* const action : m_storeActions) action->setEnabled(isOpen);
    m_pages->setCurrentIndex(isOpen ? 1 : 0);
    m_changedBar->hide();
    ShowTitle();
    m_panel->ShowDocument(isSame);
    m_profilePage->ShowDocument(isSame);
    m_mapPage->ShowDocument(isSame);
    m_qualityPage->ShowDocument();
    m_shownLines = m_panel->Lines();
    m_table->ShowLine(m_panel->Line());
    UpdateProfile(isSame);
    UpdateMap();
    if (!isOpen) return;
    m_panel->LineList().setFocus();
    auto const lines = m_document.Lines().size();
    auto const channels = m_document.Channels().size();
    statusBar()->showMessage((lines == 1 ? tr("1 line") : tr("%1 lines").arg(lines)) + ", " +
                             (channels == 1 ? tr("1 channel") : tr("%1 channels").arg(channels)));
}

void CMainWindow::ShowMarks() {
    ShowTitle();
    m_panel->ShowDocument(true);
    m_table->Refresh();
    UpdateProfile(true);
    UpdateMap();
    m_qualityPage->ShowDocument();
}

void CMainWindow::ChooseChannels(std::vector<int> const& channels, int against) {
    m_profilePage->ChooseAgainst(against);
    m_panel->ChooseChannels(channels);
}

void CMainWindow::UpdateProfile(bool keepsView) {
    m_profilePage->Show(m_panel->Lines(), m_panel->Channels(), keepsView);
}

void CMainWindow::UpdateMap() {
    // It reads every line: only when it is seen.
    m_mapIsOld = m_tabs->currentIndex() != kMapTab;
    if (m_mapIsOld) return;
    m_mapPage->Redraw();
    m_mapPage->Plot().MarkLine(m_panel->Line());
}

void CMainWindow::ShowPlace(int line, long location) {
    if (line != m_panel->Line()) ChooseLine(line);
    m_table->ShowLocation(location);
}

void CMainWindow::MarkSelection(bool deleted) {
    std::vector<long> const locations = m_table->SelectedLocations();
    if (m_panel->Line() < 0 || locations.empty()) return;
    m_document.MarkDeleted(m_panel->Line(), locations, deleted);
}

void CMainWindow::ToggleLine() {
    int const line = m_panel->Line();
    if (line < 0) return;
    m_document.SetLineFlag(line, m_document.Lines()[static_cast<std::size_t>(line)].flag == 0 ? 1 : 0);
}

bool CMainWindow::SaveMarks() {
    if (!m_document.HasChanges()) return true;
    QString why;
    bool const isSaved = m_document.Save(why);
    if (!isSaved) Complain(tr("The marks could not be saved:\n%1").arg(why));
    ShowDocument(true);
    if (isSaved) statusBar()->showMessage(tr("Marks saved"));
    return isSaved;
}

bool CMainWindow::MayLeave() {
    if (!m_document.HasChanges()) return true;
    QMessageBox box(QMessageBox::Question, tr("Norva Exchange"),
                    tr("There are marks in %1 that are not saved.").arg(QFileInfo(m_document.Path()).fileName()),
                    QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, this);
    box.setDefaultButton(QMessageBox::Save);
    switch (box.exec()) {
        case QMessageBox::Save:
            return SaveMarks();
        case QMessageBox::Discard:
            m_document.Undo().setIndex(m_document.Undo().cleanIndex());
            return true;
        default:
            return false;
    }
}

void CMainWindow::LookForChanges() {
    if (m_job.IsRunning() || m_changedBar->isVisibleTo(this) || !m_document.WasChangedOutside()) return;
    m_changedText->setText(
        m_document.HasChanges()
            ? tr("Another program changed this store. Your marks that are not saved belong to what it was.")
            : tr("Another program changed this store."));
    m_changedBar->show();
}

void CMainWindow::Reload() {
    if (!MayLeave()) return;
    QString why;
    bool const isOpened = m_document.Open(m_document.Path(), why);
    if (!isOpened) {
        Complain(tr("This store cannot be opened:\n%1\n%2").arg(m_document.Path(), why));
        return;
    }
    ShowDocument(true);
}

void CMainWindow::SaveCurrentPlot() {
    bool const isMap = m_tabs->currentIndex() == kMapTab;
    QCustomPlot& plot = isMap ? static_cast<QCustomPlot&>(Map()) : Profile();
    QString title = QFileInfo(m_document.Path()).completeBaseName();
    if (!isMap && m_panel->Lines().size() == 1) {
        title += ", " + tr("line %1").arg(m_document.Lines()[static_cast<std::size_t>(m_panel->Line())].name);
    }
    CPictureDialog dialog(title, plot.size().expandedTo(QSize(600, 300)), this);
    if (dialog.exec() != QDialog::Accepted) return;
    QString const path =
        AskFileToSave(this, tr("Save the plot"), tr("Picture (*.png);;Drawing (*.svg);;Document (*.pdf)"));
    if (path.isEmpty()) return;
    if (isMap) Map().WaitUntilDrawn();
    if (SavePlot(plot, path, dialog.Size(), dialog.Title(), dialog.Finer())) {
        statusBar()->showMessage(tr("Plot written to %1").arg(path));
    } else {
        Complain(tr("The plot could not be written:\n%1").arg(path));
    }
}

void CMainWindow::RememberFile(QString const& path) {
    QSettings settings;
    QStringList recent = settings.value(kRecentKey).toStringList();
    recent.removeAll(path);
    recent.prepend(path);
    settings.setValue(kRecentKey, recent.mid(0, kRecentFiles));
    FillRecentFiles();
}

void CMainWindow::FillRecentFiles() {
    m_recent->clear();
    QStringList const recent = QSettings().value(kRecentKey).toStringList();
    for (QString const& path : recent) {
        QString name = QFileInfo(path).fileName();
        m_recent->addAction(name.replace("&", "&&"), this, [this, path] { OpenFile(path); })->setToolTip(path);
    }
    m_recent->setEnabled(!recent.isEmpty());
    m_startPage->ShowRecent(recent);
}

}  // namespace norva
