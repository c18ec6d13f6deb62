#pragma once

#include "desktop_toolkit.h"
#include "location_table.h"
#include "map_plot.h"
#include "profile_plot.h"
#include "store_document.h"

#include <QMainWindow>

#include <functional>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QTabWidget;
class QTreeWidget;

namespace norva {

class CReportWindow;

/// The host of the library: shows one store, imports into a new one, exports it.
class CMainWindow : public QMainWindow {
    Q_OBJECT

public:
    CMainWindow();
    ~CMainWindow() override;

    /// Opens a store; a file of another kind starts its import.
    void OpenFile(QString const& path);
    /// Runs Import_Data_File; with `path`, format and file are chosen already. Opens the new store.
    void Import(QString const& path = {});
    void Export();

    /// Writes the answers of the next import or export down as a script.
    void RecordTo(QString path) { m_recordTo = std::move(path); }

    CStoreDocument& Document() { return m_document; }
    CLocationTable& Table() { return *m_table; }
    CProfilePlot& Profile() { return *m_profile; }
    CMapPlot& Map() { return *m_map; }
    QTabWidget& Tabs() { return *m_tabs; }
    /// Of the last import; null when there is none.
    CReportWindow* Report() { return m_report; }
    void ChooseLine(int line);
    /// Shows these channels in the profile plot, against a channel or (-1) the location number.
    void ChooseChannels(std::vector<int> const& channels, int against);

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void BuildMenus();
    void BuildPanels();
    void ShowDocument();
    void ShowReport();
    void ShowStatistics();
    void UpdateProfile();
    void UpdateMap();
    void MarkSelection(bool deleted);
    void ToggleLine();
    void SaveCurrentPlot();
    void RememberFile(QString const& path);
    void FillRecentFiles();
    void Complain(QString const& text);
    /// Runs one of the library's operations in this window's toolkit, recorded when that was asked for.
    int RunLibrary(bool isImport, std::function<int()> const& operation);
    std::vector<int> ChosenChannels() const;

    CStoreDocument m_document;
    std::unique_ptr<CDesktopToolkit> m_toolkit;
    std::unique_ptr<CWindow> m_owner;
    QListWidget* m_lines;
    QTreeWidget* m_channels;
    QLineEdit* m_filter;
    QLabel* m_statistics;
    QCheckBox* m_allLines;
    CLocationTable* m_table;
    CProfilePlot* m_profile;
    CMapPlot* m_map;
    QTabWidget* m_tabs;
    QComboBox* m_against;
    QComboBox* m_mapX;
    QComboBox* m_mapY;
    QComboBox* m_mapColour;
    QMenu* m_recent;
    std::vector<QAction*> m_storeActions;  ///< enabled while a store is open
    int m_line = -1;
    CReportWindow* m_report = nullptr;
    bool m_mapIsOld = false;
    QString m_recordTo;
};

}  // namespace norva
