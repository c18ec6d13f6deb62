// Imports and exports of the main window: runs of the library, files that are dropped, the end of the program.

#include "main_window.h"

#include "common/report_text.h"
#include "control_views.h"
#include "export_window.h"
#include "file_choice.h"
#include "import_sheet.h"
#include "norva/formats.h"
#include "norva/import_export.h"
#include "norva/import_report.h"
#include "report_window.h"
#include "start_page.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QMessageBox>
#include <QMimeData>
#include <QSaveFile>
#include <QStatusBar>
#include <QTimer>

#include <optional>
#include <utility>

namespace norva {

namespace {

/// "Open folder", where the export went.
QString FolderLink(QString const& path) {
    QUrl const folder = QUrl::fromLocalFile(QFileInfo(path).absolutePath());
    return QString("<a href=\"%1\">%2</a>").arg(QString::fromUtf8(folder.toEncoded()), CMainWindow::tr("Open folder"));
}

constexpr int kHighestLevel = 1;  // offers every import format once

}  // namespace

void CMainWindow::RecordTo(QString path) {
    m_recordTo = std::move(path);
    m_recordSign->setVisible(!m_recordTo.isEmpty());
    m_recordSign->setToolTip(m_recordTo);
    m_record->setText(m_recordTo.isEmpty() ? tr("Re&cord the next import or export...") : tr("Do not re&cord"));
}

int CMainWindow::RunLibrary(bool isImport, std::function<int()> const& operation) {
    CRecorder recorder(isImport);
    QString const target = m_recordTo;
    if (!target.isEmpty()) m_toolkit->SetRecorder(&recorder);
    int const result = m_job.Run(operation);
    m_toolkit->SetRecorder(nullptr);
    if (target.isEmpty()) return result;
    RecordTo({});
    QSaveFile file(target);
    if (!file.open(QIODevice::WriteOnly) || file.write(QByteArray::fromStdString(recorder.Text())) < 0 ||
        !file.commit()) {
        Complain(tr("The script could not be written:\n%1\n%2").arg(target, file.errorString()));
    }
    return result;
}

void CMainWindow::ImportFiles() {
    ImportFiles(QFileDialog::getOpenFileNames(this, tr("Import"), LastFolder(), tr("All files (*)")));
}

void CMainWindow::ImportFiles(QStringList const& paths) {
    if (paths.isEmpty() || m_job.IsRunning()) return;
    // A script holds the answers to the library's own windows.
    bool const isKnown = paths.size() > 1 || QFileInfo(paths.front()).isDir() ||
                         RecognizeImportFormat(paths.front().toStdString()).code != 0;
    if (!m_recordTo.isEmpty() || !isKnown) {
        Import(paths.front());
        return;
    }
    CImportSheet sheet(paths, this);
    connect(&sheet, &CImportSheet::ReportWished, this, &CMainWindow::ShowReport);
    sheet.exec();
    std::vector<ImportItem const*> const imported = sheet.Imported();
    if (!sheet.ByHand().isEmpty()) {
        Import(sheet.ByHand());
    } else if (imported.size() == 1) {
        OpenFile(imported.front()->store);
        statusBar()->showMessage(tr("Imported into %1").arg(imported.front()->store));
        ShowReport(imported.front()->result.report);
    } else if (!imported.empty()) {
        for (ImportItem const* const item : imported) RememberFile(item->store);
        statusBar()->showMessage(tr("%1 files imported").arg(imported.size()));
    }
}

void CMainWindow::Import(QString const& path) {
    if (m_job.IsRunning()) return;
    if (!path.isEmpty()) {
        RecognizedFormat const format = RecognizeImportFormat(path.toStdString());
        if (format.code == 0) {
            Complain(tr("This file cannot be read:\n%1\n%2").arg(path, ToQString(format.reason)));
            return;
        }
        m_toolkit->PresetImport(format.label, path.toStdString());
    }
    std::string name;
    std::optional<ImportReport> report;
    int const result = RunLibrary(true, [this, &name, &report] {
        CNorvaFileUtil store;
        int const value = Import_Data_File(&store, name, m_owner.get(), kHighestLevel);
        ImportReport made;
        if (value == 1 && GetImportReport(made, 0) != 0) report = std::move(made);  // kept for the thread that ran
        return value;
    });
    m_toolkit->ForgetPreset();
    if (result == 1 && !m_isLeaving) {
        OpenFile(ToQString(name));
        statusBar()->showMessage(tr("Imported into %1").arg(ToQString(name)));
        if (report) ShowReport(*report);
    } else {
        statusBar()->showMessage(m_job.IsCancelled() ? tr("The import was stopped") : tr("Nothing was imported"));
    }
    if (m_isLeaving) close();
}

void CMainWindow::ShowReport(ImportReport const& report) {
    delete m_report;
    m_report = new CReportWindow(report, this);
    // Queued: the window that asks is replaced by the report of the next import.
    connect(
        m_report, &CReportWindow::ImportWished, this, [this](QString const& path) { ImportFiles({path}); },
        Qt::QueuedConnection);
    m_report->show();
}

void CMainWindow::Export(bool byDialogs) {
    if (!m_document.IsOpen() || m_job.IsRunning()) return;
    if (m_document.HasChanges()) {
        QMessageBox box(QMessageBox::Question, tr("Norva Exchange"),
                        tr("An export writes what is saved. Save the marks first?"),
                        QMessageBox::Save | QMessageBox::Cancel, this);
        if (box.exec() != QMessageBox::Save || !SaveMarks()) return;
    }
    if (byDialogs || !m_recordTo.isEmpty()) {
        ExportByDialogs();
        return;
    }
    CExportWindow window(m_document, this);
    if (window.exec() == QDialog::Accepted) ShowExported(window.Path(), ToQString(ReportSummary(window.Report())));
}

void CMainWindow::ShowExported(QString const& path, QString const& summary) {
    m_exported->setText(FolderLink(path));
    m_exported->show();
    statusBar()->showMessage(tr("Exported to %1. %2").arg(path, summary.section('\n', 0, 0)));
    // Losses are said by name, not only counted.
    if (summary.contains('\n')) Complain(summary);
}

void CMainWindow::ExportByDialogs() {
    QString proposed = m_document.Path();
    proposed.replace(proposed.lastIndexOf('.'), proposed.size(), ".xyz");
    std::string const path = m_document.Path().toStdString();
    std::string newName;
    int const result = RunLibrary(false, [&] {
        // A store of its own: this one is read by the views meanwhile.
        CNorvaFileUtil store;
        if (store.SetFileName(path, kReopenStore, nullptr) == 0) return 0;
        return Export_Data_File(&store, proposed.toStdString(), newName, m_owner.get());
    });
    if (result == 1) {
        ShowExported(ToQString(newName), {});
    } else {
        statusBar()->showMessage(m_job.IsCancelled() ? tr("The export was stopped") : tr("Nothing was exported"));
    }
    if (m_isLeaving) close();
}

void CMainWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (!event->mimeData()->hasUrls() || m_job.IsRunning()) return;
    event->acceptProposedAction();
    m_startPage->ShowDrop(true);
}

void CMainWindow::dragLeaveEvent(QDragLeaveEvent* /*event*/) {
    m_startPage->ShowDrop(false);
}

void CMainWindow::dropEvent(QDropEvent* event) {
    QList<QUrl> const urls = event->mimeData()->urls();
    event->acceptProposedAction();
    m_startPage->ShowDrop(false);
    QStringList paths;
    for (QUrl const& url : urls) {
        if (url.isLocalFile()) paths.push_back(url.toLocalFile());
    }
    if (paths.size() == 1 && !QFileInfo(paths.front()).isDir()) {
        OpenFile(paths.front());
    } else {
        ImportFiles(paths);
    }
}

void CMainWindow::closeEvent(QCloseEvent* event) {
    if (m_job.IsRunning()) {
        event->ignore();
        QMessageBox box(QMessageBox::Question, tr("Norva Exchange"),
                        tr("An import or export is running. Stop it and quit?"), QMessageBox::Yes | QMessageBox::No,
                        QApplication::activeModalWidget() != nullptr ? QApplication::activeModalWidget() : this);
        box.setDefaultButton(QMessageBox::No);
        if (box.exec() != QMessageBox::Yes) return;
        m_isLeaving = true;
        if (!m_job.IsRunning()) {  // it ended meanwhile
            QTimer::singleShot(0, this, &QWidget::close);
            return;
        }
        m_job.Cancel();
        // A dialog that waits for an answer gets the one of its close box.
        if (QWidget* const open = QApplication::activeModalWidget()) open->close();
        return;
    }
    m_isLeaving = false;
    if (!MayLeave()) {
        event->ignore();
        return;
    }
    KeepLayout();
    QMainWindow::closeEvent(event);
}

}  // namespace norva
