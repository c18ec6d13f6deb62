#include "main_window.h"

#include "control_views.h"
#include "help_window.h"
#include "norva/import_export.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QMessageBox>
#include <QScrollArea>
#include <QSplitter>
#include <QStatusBar>
#include <QTabWidget>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace norva {

namespace {

QWidget* WithTitle(QString const& title, QWidget* content) {
    auto* const panel = new QWidget;
    auto* const layout = new QVBoxLayout(panel);
    layout->setContentsMargins(4, 4, 4, 4);
    auto* const label = new QLabel(title);
    label->setBuddy(content);
    layout->addWidget(label);
    layout->addWidget(content, 1);
    return panel;
}

}  // namespace

void CMainWindow::BuildPanels() {
    m_filter->setPlaceholderText(tr("Filter lines and channels"));
    m_filter->setClearButtonEnabled(true);
    m_lines->setAccessibleName(tr("Lines"));
    m_lines->setContextMenuPolicy(Qt::ActionsContextMenu);
    m_channels->setHeaderLabels({tr("Channel"), tr("Units"), tr("Type")});
    m_channels->setRootIsDecorated(false);
    m_channels->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_channels->setAccessibleName(tr("Channels"));
    m_statistics->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_statistics->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    auto* const statistics = new QScrollArea;
    statistics->setWidget(m_statistics);
    statistics->setWidgetResizable(true);
    statistics->setFrameShape(QFrame::NoFrame);
    connect(m_allLines, &QCheckBox::toggled, this, [this] { ShowStatistics(); });
    auto* const statisticsPanel = WithTitle(tr("Statistics"), statistics);
    statisticsPanel->layout()->addWidget(m_allLines);

    auto* const left = new QSplitter(Qt::Vertical);
    left->addWidget(WithTitle(tr("&Lines"), m_lines));
    left->addWidget(WithTitle(tr("&Channels"), m_channels));
    left->addWidget(statisticsPanel);
    left->setStretchFactor(0, 2);
    left->setStretchFactor(1, 3);
    left->setStretchFactor(2, 2);
    statistics->setMinimumHeight(7 * fontMetrics().height());
    auto* const leftPanel = new QWidget;
    auto* const leftLayout = new QVBoxLayout(leftPanel);
    leftLayout->setContentsMargins(4, 4, 0, 0);
    leftLayout->addWidget(m_filter);
    leftLayout->addWidget(left, 1);

    auto* const profilePage = new QWidget;
    auto* const profileLayout = new QVBoxLayout(profilePage);
    auto* const profileForm = new QFormLayout;
    profileForm->addRow(tr("&Against:"), m_against);
    profileLayout->addLayout(profileForm);
    profileLayout->addWidget(m_profile, 1);
    auto* const mapPage = new QWidget;
    auto* const mapLayout = new QVBoxLayout(mapPage);
    auto* const mapChoices = new QHBoxLayout;
    for (auto const& [text, combo] :
         {std::pair(tr("&X:"), m_mapX), std::pair(tr("&Y:"), m_mapY), std::pair(tr("C&olour:"), m_mapColour)}) {
        auto* const label = new QLabel(text);
        label->setBuddy(combo);
        mapChoices->addWidget(label);
        mapChoices->addWidget(combo, 1);
        connect(combo, &QComboBox::activated, this, [this] { UpdateMap(); });
    }
    mapLayout->addLayout(mapChoices);
    mapLayout->addWidget(m_map, 1);
    m_tabs->addTab(profilePage, tr("&Profile"));
    m_tabs->addTab(mapPage, tr("&Map"));

    auto* const centre = new QSplitter(Qt::Vertical);
    centre->addWidget(m_tabs);
    centre->addWidget(m_table);
    centre->setStretchFactor(0, 3);
    centre->setStretchFactor(1, 2);
    centre->setSizes({420, 280});
    auto* const all = new QSplitter(Qt::Horizontal);
    all->addWidget(leftPanel);
    all->addWidget(centre);
    all->setStretchFactor(1, 1);
    all->setSizes({300, 880});
    setCentralWidget(all);

    connect(m_lines, &QListWidget::currentRowChanged, this, [this](int row) {
        if (row >= 0) ChooseLine(row);
    });
    connect(m_channels, &QTreeWidget::itemSelectionChanged, this, [this] {
        UpdateProfile();
        ShowStatistics();
    });
    connect(m_against, &QComboBox::activated, this, [this] { UpdateProfile(); });
    connect(m_tabs, &QTabWidget::currentChanged, this, [this] {
        if (m_mapIsOld) UpdateMap();
    });
    connect(m_table, &CLocationTable::LocationChosen, m_profile, &CProfilePlot::ShowCursor);
    connect(m_profile, &CProfilePlot::LocationChosen, m_table, &CLocationTable::ShowLocation);
    connect(m_profile, &CProfilePlot::Hovered, this, [this](QString const& text) { statusBar()->showMessage(text); });
    connect(m_map, &CMapPlot::LineChosen, this, [this](int line) { m_lines->setCurrentRow(line); });
    connect(m_filter, &QLineEdit::textChanged, this, [this](QString const& text) {
        for (int row = 0; row < m_lines->count(); ++row) {
            m_lines->item(row)->setHidden(!m_lines->item(row)->text().contains(text, Qt::CaseInsensitive));
        }
        for (int row = 0; row < m_channels->topLevelItemCount(); ++row) {
            QTreeWidgetItem* const item = m_channels->topLevelItem(row);
            item->setHidden(!item->text(0).contains(text, Qt::CaseInsensitive));
        }
    });
}

void CMainWindow::BuildMenus() {
    QMenu* const file = menuBar()->addMenu(tr("&File"));
    file->addAction(tr("&Open..."), QKeySequence::Open, this, [this] {
        QString const path =
            QFileDialog::getOpenFileName(this, tr("Open a store"), {}, tr("Stores (*.nvt);;All files (*)"));
        if (!path.isEmpty()) OpenFile(path);
    });
    m_recent = file->addMenu(tr("Open &recent"));
    file->addSeparator();
    file->addAction(tr("&Import..."), QKeySequence(Qt::CTRL | Qt::Key_I), this, [this] { Import(); });
    m_storeActions.push_back(
        file->addAction(tr("&Export..."), QKeySequence(Qt::CTRL | Qt::Key_E), this, [this] { Export(); }));
    m_storeActions.push_back(
        file->addAction(tr("Save p&lot..."), QKeySequence(Qt::CTRL | Qt::Key_P), this, [this] { SaveCurrentPlot(); }));
    file->addAction(tr("&Record the next import or export..."), this, [this] {
        QString const path = QFileDialog::getSaveFileName(this, tr("Record a script"), {}, tr("Scripts (*.json)"));
        if (!path.isEmpty()) RecordTo(path);
    });
    file->addSeparator();
    file->addAction(tr("&Quit"), QKeySequence::Quit, this, &QWidget::close);

    QMenu* const edit = menuBar()->addMenu(tr("&Edit"));
    m_storeActions.push_back(
        edit->addAction(tr("Mark as &deleted"), QKeySequence::Delete, this, [this] { MarkSelection(true); }));
    m_storeActions.push_back(edit->addAction(tr("&Take the mark away"), QKeySequence(Qt::SHIFT | Qt::Key_Delete), this,
                                             [this] { MarkSelection(false); }));
    QAction* const hide = edit->addAction(tr("&Hide or show the line"), QKeySequence(Qt::CTRL | Qt::Key_H), this,
                                          [this] { ToggleLine(); });
    m_storeActions.push_back(hide);
    m_lines->addAction(hide);
    FillRecentFiles();

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
