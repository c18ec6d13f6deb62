#pragma once

#include "desktop_toolkit.h"
#include "library_job.h"
#include "location_table.h"
#include "map_page.h"
#include "profile_page.h"
#include "store_document.h"
#include "store_panel.h"

#include <QMainWindow>

#include <functional>

class QLabel;
class QSplitter;
class QStackedWidget;
class QTabWidget;

namespace norva {

class CQualityPage;
class CReportWindow;
class CStartPage;
struct ImportReport;

/// The host of the library: shows one store, imports into a new one, exports it.
class CMainWindow : public QMainWindow {
    Q_OBJECT

public:
    CMainWindow();
    ~CMainWindow() override;

    /// Opens a store; a file of another kind starts its import.
    void OpenFile(QString const& path);
    /// Asks for files and shows the sheet that imports them.
    void ImportFiles();
    /// The same for files and folders; opens the new store, if it is one.
    void ImportFiles(QStringList const& paths);
    /// Runs Import_Data_File with its windows; with `path`, format and file are chosen already. Opens the new store.
    void Import(QString const& path = {});
    /// Asks what is written and where; `byDialogs`: runs Export_Data_File with its windows, as a recorded run does.
    void Export(bool byDialogs = false);
    /// Writes the marks into the store; false when that failed.
    bool SaveMarks();

    /// Writes the answers of the next import or export down as a script; an empty path for none.
    void RecordTo(QString path);

    CStoreDocument& Document() { return m_document; }
    CLocationTable& Table() { return *m_table; }
    CProfilePlot& Profile() { return m_profilePage->Plot(); }
    CMapPlot& Map() { return m_mapPage->Plot(); }
    CQualityPage& Quality() { return *m_qualityPage; }
    CStorePanel& Panel() { return *m_panel; }
    QTabWidget& Tabs() { return *m_tabs; }
    CLibraryJob& Job() { return m_job; }
    /// Of the last import; null when there is none.
    CReportWindow* Report() { return m_report; }
    void ChooseLine(int line) { m_panel->ChooseLine(line); }
    /// Shows these channels in the profile plot, against a channel or kAgainstLocation or kAgainstDistance.
    void ChooseChannels(std::vector<int> const& channels, int against);
    /// Looks whether another program changed the store, and offers to read it again.
    void LookForChanges();

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void BuildMenus();
    void BuildFileMenu();
    void BuildEditMenu();
    void BuildHelpMenu();
    void BuildPanels();
    void ConnectViews();
    void RestoreLayout();
    void KeepLayout();

    /// Shows the document anew; lines, channels and view stay when it is the same store as before.
    void ShowDocument(bool isSame);
    void ShowMarks();
    void ShowTitle();
    void ShowReport(ImportReport const& report);
    void UpdateProfile(bool keepsView);
    void UpdateMap();
    void ShowPlace(int line, long location);
    void MarkSelection(bool deleted);
    void ToggleLine();
    void SaveCurrentPlot();
    void ExportByDialogs();
    void ShowExported(QString const& path, QString const& summary);
    void Reload();
    /// Asks what becomes of unsaved marks; false when the person wants to stay.
    bool MayLeave();
    void RememberFile(QString const& path);
    void FillRecentFiles();
    void Complain(QString const& text);
    /// Runs one of the library's operations in this window's toolkit, recorded when that was asked for.
    int RunLibrary(bool isImport, std::function<int()> const& operation);

    CStoreDocument m_document;
    std::unique_ptr<CDesktopToolkit> m_toolkit;
    CLibraryJob m_job;
    std::unique_ptr<CWindow> m_owner;
    QStackedWidget* m_pages;
    CStartPage* m_startPage;
    CStorePanel* m_panel;
    CLocationTable* m_table;
    CProfilePage* m_profilePage;
    CMapPage* m_mapPage;
    CQualityPage* m_qualityPage;
    QTabWidget* m_tabs;
    QSplitter* m_columns;
    QSplitter* m_centre;
    QWidget* m_changedBar;
    QLabel* m_changedText;
    QLabel* m_recordSign;
    QLabel* m_exported;  ///< leads to the folder of the last export
    QMenu* m_recent;
    QAction* m_record;
    std::vector<QAction*> m_storeActions;  ///< enabled while a store is open
    std::vector<int> m_shownLines;
    CReportWindow* m_report = nullptr;
    bool m_mapIsOld = false;
    bool m_isLeaving = false;  ///< the window closes once the run has ended
    QString m_recordTo;
};

}  // namespace norva
