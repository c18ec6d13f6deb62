#include "main_window.h"

#include "control_views.h"
#include "help_window.h"
#include "norva/formats.h"
#include "norva/import_export.h"
#include "norva/import_report.h"
#include "report_window.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QMimeData>
#include <QSaveFile>
#include <QSettings>
#include <QStatusBar>
#include <QTabWidget>
#include <QTreeWidget>

#include <algorithm>
#include <numeric>
#include <utility>

namespace norva {

namespace {

constexpr int kHighestLevel = 1;  // offers every import format once
constexpr int kRecentFiles = 8;
constexpr int kMapTab = 1;
char const* const kRecentKey = "recent";

}  // namespace

CMainWindow::CMainWindow()
    : m_toolkit(std::make_unique<CDesktopToolkit>(this)),
      m_owner(std::make_unique<CWindow>()),
      m_lines(new QListWidget),
      m_channels(new QTreeWidget),
      m_filter(new QLineEdit),
      m_statistics(new QLabel),
      m_allLines(new QCheckBox(tr("Of all lines"))),
      m_table(new CLocationTable(m_document)),
      m_profile(new CProfilePlot(m_document)),
      m_map(new CMapPlot(m_document)),
      m_tabs(new QTabWidget),
      m_against(new QComboBox),
      m_mapX(new QComboBox),
      m_mapY(new QComboBox),
      m_mapColour(new QComboBox),
      m_recent(nullptr) {
    setWindowTitle(tr("Norva Exchange"));
    setAcceptDrops(true);
    BuildPanels();
    BuildMenus();
    ShowDocument();
    resize(1180, 760);
    QSettings const settings;
    restoreGeometry(settings.value("geometry").toByteArray());
}

CMainWindow::~CMainWindow() {
    // The views go before the document that they show.
    hide();
    delete takeCentralWidget();
}

void CMainWindow::Complain(QString const& text) {
    QMessageBox box(QMessageBox::Warning, tr("Norva Exchange"), text, QMessageBox::Ok, this);
    box.setTextFormat(Qt::PlainText);
    box.exec();
}

void CMainWindow::OpenFile(QString const& path) {
    QString const full = QFileInfo(path).absoluteFilePath();
    if (!QFileInfo::exists(full)) {
        Complain(tr("There is no file\n%1").arg(full));
        return;
    }
    QString why;
    if (m_document.Open(full, why)) {
        RememberFile(full);
        m_line = -1;
        ShowDocument();
        return;
    }
    if (QFileInfo(full).suffix().compare("nvt", Qt::CaseInsensitive) == 0) {
        Complain(tr("This store cannot be opened:\n%1\n%2").arg(full, why));
        return;
    }
    Import(full);
}

int CMainWindow::RunLibrary(bool isImport, std::function<int()> const& operation) {
    CToolkitScope const scope(*m_toolkit);
    CRecorder recorder(isImport);
    QString const target = std::exchange(m_recordTo, {});
    if (!target.isEmpty()) m_toolkit->SetRecorder(&recorder);
    int const result = operation();
    m_toolkit->SetRecorder(nullptr);
    if (target.isEmpty()) return result;
    QSaveFile file(target);
    if (!file.open(QIODevice::WriteOnly) || file.write(QByteArray::fromStdString(recorder.Text())) < 0 ||
        !file.commit()) {
        Complain(tr("The script could not be written:\n%1\n%2").arg(target, file.errorString()));
    }
    return result;
}

void CMainWindow::Import(QString const& path) {
    if (!path.isEmpty()) {
        RecognizedFormat const format = RecognizeImportFormat(path.toStdString());
        if (format.code == 0) {
            Complain(tr("This file cannot be read:\n%1\n%2").arg(path, ToQString(format.reason)));
            return;
        }
        m_toolkit->PresetImport(format.label, path.toStdString());
    }
    std::string name;
    int const result = RunLibrary(true, [this, &name] {
        CNorvaFileUtil store;
        return Import_Data_File(&store, name, m_owner.get(), kHighestLevel);
    });
    m_toolkit->ForgetPreset();
    if (result == 1) {
        OpenFile(ToQString(name));
        statusBar()->showMessage(tr("Imported into %1").arg(ToQString(name)));
        ShowReport();
    } else {
        statusBar()->showMessage(tr("Nothing was imported"));
    }
}

void CMainWindow::ShowReport() {
    delete m_report;
    m_report = nullptr;
    ImportReport report;
    if (GetImportReport(report, 0) == 0) return;
    m_report = new CReportWindow(report, this);
    m_report->show();
}

void CMainWindow::Export() {
    if (!m_document.IsOpen()) return;
    QString proposed = m_document.Path();
    proposed.replace(proposed.lastIndexOf('.'), proposed.size(), ".xyz");
    std::string newName;
    int const result = RunLibrary(
        false, [&] { return Export_Data_File(&m_document.Store(), proposed.toStdString(), newName, m_owner.get()); });
    statusBar()->showMessage(result == 1 ? tr("Exported") : tr("Nothing was exported"));
}

void CMainWindow::ShowDocument() {
    bool const open = m_document.IsOpen();
    for (QAction* const action : m_storeActions) action->setEnabled(open);
    setWindowFilePath(m_document.Path());
    int const line = m_line;
    {
        QSignalBlocker const quietLines(m_lines);
        QSignalBlocker const quietChannels(m_channels);
        m_lines->clear();
        for (LineEntry const& entry : m_document.Lines()) {
            QString text = tr("%1  (%2)").arg(entry.name).arg(entry.locations);
            if (entry.deleted > 0) text += tr(", %1 deleted").arg(entry.deleted);
            auto* const item = new QListWidgetItem(text, m_lines);
            if (entry.flag != 0) {
                item->setForeground(palette().color(QPalette::Disabled, QPalette::Text));
                item->setToolTip(tr("Hidden: not exported, not on the map"));
            }
        }
        m_channels->clear();
        QTreeWidgetItem* chosen = nullptr;
        for (ChannelEntry const& entry : m_document.Channels()) {
            auto* const item = new QTreeWidgetItem(m_channels, {entry.name, entry.units, entry.type});
            item->setData(0, Qt::UserRole, entry.index);
            if (entry.isNumber && (chosen == nullptr || entry.name.startsWith("mag", Qt::CaseInsensitive))) {
                chosen = item;
            }
        }
        for (int column = 0; column < 3; ++column) m_channels->resizeColumnToContents(column);
        if (chosen != nullptr) chosen->setSelected(true);
    }
    for (QComboBox* const combo : {m_against, m_mapX, m_mapY, m_mapColour}) {
        int const before = combo->currentData().toInt();
        bool const keep = combo->count() > 0 && line >= 0;
        combo->clear();
        if (combo == m_against) combo->addItem(tr("Location number"), -1);
        if (combo == m_mapColour) combo->addItem(tr("(lines only)"), -1);
        for (ChannelEntry const& entry : m_document.Channels()) {
            if (entry.isNumber) combo->addItem(entry.fullName, entry.index);
        }
        if (keep) combo->setCurrentIndex(combo->findData(before));
    }
    if (line < 0) {
        // The names that positions and readings usually have; the person may choose others.
        auto const guess = [](QComboBox* combo, QStringList const& starts) {
            for (QString const& start : starts) {
                for (int i = 0; i < combo->count(); ++i) {
                    if (combo->itemText(i).startsWith(start, Qt::CaseInsensitive)) {
                        combo->setCurrentIndex(i);
                        return;
                    }
                }
            }
        };
        guess(m_mapX, {"x", "east", "lon"});
        guess(m_mapY, {"y", "north", "lat"});
        guess(m_mapColour, {"mag", "grav", "field"});
        if (m_mapY->currentIndex() == m_mapX->currentIndex()) m_mapY->setCurrentIndex(std::min(1, m_mapY->count() - 1));
    }
    int const count = static_cast<int>(m_document.Lines().size());
    m_line = -1;
    UpdateMap();
    if (count > 0) {
        m_lines->setCurrentRow(std::clamp(line, 0, count - 1));
        m_lines->setFocus();
    } else {
        m_table->ShowLine(-1);
        UpdateProfile();
        ShowStatistics();
    }
    statusBar()->showMessage(open ? tr("%1 lines, %2 channels").arg(count).arg(m_document.Channels().size())
                                  : tr("Open a store, or drop a survey file here to import it"));
}

void CMainWindow::ChooseLine(int line) {
    if (line == m_line) return;
    m_line = line;
    if (m_lines->currentRow() != line) m_lines->setCurrentRow(line);
    m_table->ShowLine(line);
    m_map->MarkLine(line);
    UpdateProfile();
    ShowStatistics();
}

std::vector<int> CMainWindow::ChosenChannels() const {
    std::vector<int> channels;
    for (QTreeWidgetItem const* const item : m_channels->selectedItems()) {
        int const index = item->data(0, Qt::UserRole).toInt();
        for (ChannelEntry const& entry : m_document.Channels()) {
            if (entry.index == index && entry.isNumber) channels.push_back(index);
        }
    }
    return channels;
}

void CMainWindow::ChooseChannels(std::vector<int> const& channels, int against) {
    {
        QSignalBlocker const quiet(m_channels);
        for (int row = 0; row < m_channels->topLevelItemCount(); ++row) {
            QTreeWidgetItem* const item = m_channels->topLevelItem(row);
            int const index = item->data(0, Qt::UserRole).toInt();
            item->setSelected(std::find(channels.begin(), channels.end(), index) != channels.end());
        }
    }
    m_against->setCurrentIndex(m_against->findData(against));
    UpdateProfile();
    ShowStatistics();
}

void CMainWindow::UpdateProfile() {
    m_profile->ShowLine(m_line, m_line < 0 ? std::vector<int>() : ChosenChannels(), m_against->currentData().toInt());
}

void CMainWindow::UpdateMap() {
    // It reads every line: only when it is seen.
    m_mapIsOld = m_tabs->currentIndex() != kMapTab;
    if (m_mapIsOld) return;
    auto const channelOf = [](QComboBox const* combo) {
        return combo->currentIndex() < 0 ? -1 : combo->currentData().toInt();
    };
    m_map->ShowMap(channelOf(m_mapX), channelOf(m_mapY), channelOf(m_mapColour));
    m_map->MarkLine(m_line);
}

void CMainWindow::ShowStatistics() {
    std::vector<int> const channels = ChosenChannels();
    if (m_line < 0 || channels.empty()) {
        m_statistics->clear();
        return;
    }
    std::vector<int> lines = {m_line};
    if (m_allLines->isChecked()) {
        lines.resize(m_document.Lines().size());
        std::iota(lines.begin(), lines.end(), 0);
    }
    QString text;
    for (int const channel : channels) {
        for (ChannelEntry const& entry : m_document.Channels()) {
            if (entry.index == channel) text += entry.fullName + "\n";
        }
        ColumnStatistics const values = m_document.Statistics(channel, lines);
        text += tr("%1 values, %2 no-data, %3 deleted\n").arg(values.count).arg(values.noData).arg(values.deleted);
        if (values.count > values.noData + values.deleted) {
            text += tr("minimum %1\nmaximum %2\nmean %3\nstandard deviation %4\n")
                        .arg(values.minimum, 0, 'g', 10)
                        .arg(values.maximum, 0, 'g', 10)
                        .arg(values.mean, 0, 'g', 10)
                        .arg(values.deviation, 0, 'g', 6);
        }
        text += "\n";
    }
    m_statistics->setText(text.trimmed());
}

void CMainWindow::MarkSelection(bool deleted) {
    std::vector<long> const locations = m_table->SelectedLocations();
    if (m_line < 0 || locations.empty()) return;
    QString why;
    if (!m_document.MarkDeleted(m_line, locations, deleted, why)) {
        Complain(tr("The marks could not be saved:\n%1").arg(why));
    }
    long const location = locations.front();
    ShowDocument();
    m_table->ShowLocation(location);
}

void CMainWindow::ToggleLine() {
    if (m_line < 0) return;
    int const flag = m_document.Lines()[static_cast<std::size_t>(m_line)].flag == 0 ? 1 : 0;
    QString why;
    if (!m_document.SetLineFlag(m_line, flag, why)) Complain(tr("The line could not be changed:\n%1").arg(why));
    ShowDocument();
}

void CMainWindow::SaveCurrentPlot() {
    QString const path = QFileDialog::getSaveFileName(this, tr("Save the plot"), {},
                                                      tr("Picture (*.png);;Drawing (*.svg);;Document (*.pdf)"));
    if (path.isEmpty()) return;
    QCustomPlot& plot = m_tabs->currentIndex() == 0 ? static_cast<QCustomPlot&>(*m_profile) : *m_map;
    if (!SavePlot(plot, path, plot.width(), plot.height()))
        Complain(tr("The plot could not be written:\n%1").arg(path));
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
        m_recent->addAction(QFileInfo(path).fileName(), this, [this, path] { OpenFile(path); })->setToolTip(path);
    }
    m_recent->setEnabled(!recent.isEmpty());
}

void CMainWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (event->mimeData()->hasUrls()) event->acceptProposedAction();
}

void CMainWindow::dropEvent(QDropEvent* event) {
    QList<QUrl> const urls = event->mimeData()->urls();
    event->acceptProposedAction();
    if (!urls.isEmpty() && urls.front().isLocalFile()) OpenFile(urls.front().toLocalFile());
}

void CMainWindow::closeEvent(QCloseEvent* event) {
    QSettings().setValue("geometry", saveGeometry());
    QMainWindow::closeEvent(event);
}

}  // namespace norva
