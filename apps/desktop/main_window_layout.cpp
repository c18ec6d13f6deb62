#include "main_window.h"

#include "control_views.h"
#include "file_choice.h"
#include "help_window.h"
#include "norva/import_export.h"
#include "quality_page.h"
#include "start_page.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QSettings>
#include <QSplitter>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTabWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace norva {

void CMainWindow::BuildPanels() {
    m_tabs->addTab(m_profilePage, tr("&Profile"));
    m_tabs->addTab(m_mapPage, tr("&Map"));
    m_tabs->addTab(m_qualityPage, tr("&Quality"));
    m_centre->addWidget(m_tabs);
    m_centre->addWidget(m_table);
    m_centre->setStretchFactor(0, 3);
    m_centre->setStretchFactor(1, 2);
    m_columns->addWidget(m_panel);
    m_columns->addWidget(m_centre);
    m_columns->setStretchFactor(1, 1);

    auto* const reload = new QPushButton(tr("Read it again"));
    auto* const later = new QPushButton(tr("Not now"));
    auto* const barLayout = new QHBoxLayout(m_changedBar);
    barLayout->setContentsMargins(8, 4, 8, 4);
    m_changedText->setWordWrap(true);
    barLayout->addWidget(m_changedText, 1);
    barLayout->addWidget(reload);
    barLayout->addWidget(later);
    m_changedBar->setAutoFillBackground(true);
    m_changedBar->setBackgroundRole(QPalette::ToolTipBase);
    m_changedText->setForegroundRole(QPalette::ToolTipText);
    m_changedBar->hide();
    connect(reload, &QPushButton::clicked, this, &CMainWindow::Reload);
    connect(later, &QPushButton::clicked, m_changedBar, &QWidget::hide);

    m_pages->addWidget(m_startPage);
    m_pages->addWidget(m_columns);
    auto* const all = new QWidget;
    auto* const layout = new QVBoxLayout(all);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_changedBar);
    layout->addWidget(m_pages, 1);
    setCentralWidget(all);

    m_recordSign->setText(tr("<span style=\"color: #d03030\">\u25cf</span> recording"));
    m_recordSign->hide();
    statusBar()->addPermanentWidget(m_recordSign);
    m_exported->setOpenExternalLinks(true);
    m_exported->hide();
    statusBar()->addPermanentWidget(m_exported);
}

void CMainWindow::ConnectViews() {
    connect(m_startPage, &CStartPage::OpenWished, this, [this] {
        QString const path = AskFileToOpen(this, tr("Open a store"), tr("Stores (*.nvt);;All files (*)"));
        if (!path.isEmpty()) OpenFile(path);
    });
    connect(m_startPage, &CStartPage::ImportWished, this, [this] { ImportFiles(); });
    connect(m_startPage, &CStartPage::FileWished, this, &CMainWindow::OpenFile);
    connect(m_panel, &CStorePanel::LinesChosen, this, [this] {
        std::vector<int> const lines = m_panel->Lines();
        if (lines == m_shownLines) return;
        bool const isOther = m_shownLines.empty() || lines.empty() || lines.front() != m_shownLines.front();
        m_shownLines = lines;
        if (isOther) m_table->ShowLine(m_panel->Line());
        UpdateProfile(false);
        m_mapPage->Plot().MarkLine(m_panel->Line());
    });
    connect(m_panel, &CStorePanel::ChannelsChosen, this, [this] { UpdateProfile(false); });
    connect(m_tabs, &QTabWidget::currentChanged, this, [this] {
        if (m_mapIsOld) UpdateMap();
    });
    // One cursor: what the table has chosen is shown by the plots, and their clicks go to the table.
    connect(m_table, &CLocationTable::LocationChosen, &Profile(), &CProfilePlot::ShowCursor);
    connect(m_table, &CLocationTable::LocationChosen, &Map(), &CMapPlot::MarkLocation);
    connect(&Profile(), &CProfilePlot::LocationChosen, this, &CMainWindow::ShowPlace);
    connect(&Map(), &CMapPlot::ReadingChosen, this, &CMainWindow::ShowPlace);
    connect(&Map(), &CMapPlot::LineChosen, m_panel, &CStorePanel::ChooseLine);
    connect(m_qualityPage, &CQualityPage::PlaceChosen, this, [this](int line, int channel, long location) {
        m_panel->ChooseLine(line);
        if (m_document.FindChannel(channel)->isNumber) m_panel->ChooseChannels({channel});
        if (location >= 0) m_table->ShowLocation(location);
    });
    auto const say = [this](QString const& text) { statusBar()->showMessage(text); };
    connect(m_table, &CLocationTable::Said, this, say);
    connect(m_profilePage, &CProfilePage::Said, this, say);
    connect(m_mapPage, &CMapPage::Said, this, say);
    connect(m_qualityPage, &CQualityPage::Said, this, say);
    connect(&m_document, &CStoreDocument::MarksChanged, this, &CMainWindow::ShowMarks);
    connect(&m_document.Undo(), &QUndoStack::cleanChanged, this, &CMainWindow::ShowTitle);
}

void CMainWindow::RestoreLayout() {
    QSettings const settings;
    QSize const room = QApplication::primaryScreen()->availableSize();
    resize(std::min(1180, room.width() * 9 / 10), std::min(760, room.height() * 9 / 10));
    m_columns->setSizes({std::clamp(width() / 4, 240, 300), width()});
    m_centre->setSizes({height() * 3 / 5, height() * 2 / 5});
    restoreGeometry(settings.value("geometry").toByteArray());
    // What was kept from a larger screen has to fit this one.
    resize(size().boundedTo(room));
    for (auto const& [name, splitter] :
         {std::pair("columns", m_columns), std::pair("centre", m_centre), std::pair("panel", &m_panel->Splitter())}) {
        QByteArray const state = settings.value(QString("splitters/") + name).toByteArray();
        if (!state.isEmpty()) splitter->restoreState(state);
    }
}

void CMainWindow::KeepLayout() {
    QSettings settings;
    settings.setValue("geometry", saveGeometry());
    settings.setValue("splitters/columns", m_columns->saveState());
    settings.setValue("splitters/centre", m_centre->saveState());
    settings.setValue("splitters/panel", m_panel->Splitter().saveState());
}

void CMainWindow::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow()) LookForChanges();
}

void CMainWindow::BuildMenus() {
    BuildFileMenu();
    BuildEditMenu();
    BuildHelpMenu();
    FillRecentFiles();
}

void CMainWindow::BuildFileMenu() {
    QMenu* const file = menuBar()->addMenu(tr("&File"));
    file->addAction(tr("&Open..."), QKeySequence::Open, m_startPage, &CStartPage::OpenWished);
    m_recent = file->addMenu(tr("Open &recent"));
    m_storeActions.push_back(file->addAction(tr("&Save marks"), QKeySequence::Save, this, [this] { SaveMarks(); }));
    file->addSeparator();
    file->addAction(tr("&Import..."), QKeySequence(Qt::CTRL | Qt::Key_I), this, [this] { ImportFiles(); });
    file->addAction(tr("Import by &format..."), this, [this] { Import(); });
    m_storeActions.push_back(
        file->addAction(tr("&Export..."), QKeySequence(Qt::CTRL | Qt::Key_E), this, [this] { Export(); }));
    m_storeActions.push_back(file->addAction(tr("Export by the &dialogs..."), this, [this] { Export(true); }));
    m_storeActions.push_back(
        file->addAction(tr("Save p&lot..."), QKeySequence(Qt::CTRL | Qt::Key_P), this, [this] { SaveCurrentPlot(); }));
    m_record = file->addAction(tr("Re&cord the next import or export..."), this, [this] {
        if (!m_recordTo.isEmpty()) return RecordTo({});
        QString const path = AskFileToSave(this, tr("Record a script"), tr("Scripts (*.json)"));
        if (!path.isEmpty()) RecordTo(path);
    });
    file->addSeparator();
    file->addAction(tr("&Quit"), QKeySequence::Quit, this, &QWidget::close);
}

void CMainWindow::BuildEditMenu() {
    QMenu* const edit = menuBar()->addMenu(tr("&Edit"));
    QAction* const undo = m_document.Undo().createUndoAction(this, tr("&Undo"));
    QAction* const redo = m_document.Undo().createRedoAction(this, tr("&Redo"));
    undo->setShortcut(QKeySequence::Undo);
    redo->setShortcut(QKeySequence::Redo);
    edit->addAction(undo);
    edit->addAction(redo);
    edit->addSeparator();
    m_storeActions.push_back(edit->addAction(tr("&Copy rows"), m_table, &CLocationTable::Copy));
    m_storeActions.push_back(
        edit->addAction(tr("&Find a value..."), QKeySequence::Find, m_table, &CLocationTable::OpenFind));
    m_storeActions.push_back(
        edit->addAction(tr("Find &next"), QKeySequence::FindNext, m_table, &CLocationTable::FindNext));
    edit->addSeparator();
    m_storeActions.push_back(
        edit->addAction(tr("Mark as &deleted"), QKeySequence::Delete, this, [this] { MarkSelection(true); }));
    m_storeActions.push_back(edit->addAction(tr("&Take the mark away"), QKeySequence(Qt::SHIFT | Qt::Key_Delete), this,
                                             [this] { MarkSelection(false); }));
    QAction* const hide = edit->addAction(tr("&Hide or show the line"), QKeySequence(Qt::CTRL | Qt::Key_H), this,
                                          [this] { ToggleLine(); });
    m_storeActions.push_back(hide);
    m_panel->LineList().addAction(hide);
}

void CMainWindow::BuildHelpMenu() {
    QMenu* const help = menuBar()->addMenu(tr("&Help"));
    auto const page = [this, help](QString const& title, QString const& name, QKeySequence const& keys = {}) {
        help->addAction(title, keys, this,
                        [this, name] { ShowHelpPage(this, ToQString(HelpFilePath()) + "::/html/" + name + ".htm"); });
    };
    page(tr("&Column import"), "ascii_import", QKeySequence::HelpContents);
    page(tr("&Binary import"), "binary_import");
    page(tr("&Saving in other formats"), "save_other_formats");
    help->addSeparator();
    help->addAction(tr("&About"), this, [this] {
        QMessageBox::about(
            this, tr("Norva Exchange"),
            tr("Norva Exchange %1\nImport and export of geophysical survey data.").arg(ToQString(GetLibraryVersion())));
    });
}

}  // namespace norva
