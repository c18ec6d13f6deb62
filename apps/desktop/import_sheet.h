#pragma once

#include "background.h"
#include "import_item.h"

#include <QDialog>

#include <functional>
#include <list>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QStackedWidget;
class QTreeWidget;
class QTreeWidgetItem;

namespace norva {

class CProposalView;

/// Imports files, one or many: a row for each, with what it is, what is proposed for it and where it goes. Files are
/// read and imported on a thread of their own, one after the other; the window stays alive and can stop it.
class CImportSheet : public QDialog {
    Q_OBJECT

public:
    /// Files and folders; of a folder, every file in it that can be read.
    explicit CImportSheet(QStringList const& paths, QWidget* parent);

    void Add(QStringList const& paths);
    /// The file to import through the library's own windows; "" for none. The sheet was closed for it.
    QString ByHand() const { return m_byHand; }
    /// The files that were imported, in order.
    std::vector<ImportItem const*> Imported() const;
    bool IsBusy() const { return m_background.IsBusy(); }

    QTreeWidget& Files() { return *m_files; }
    CProposalView& Proposal() { return *m_proposal; }
    QLineEdit& Store() { return *m_store; }
    QPushButton& ImportButton() { return *m_import; }
    QPushButton& CancelButton() { return *m_cancel; }

    void reject() override;

signals:
    /// A row of an imported file was opened.
    void ReportWished(ImportReport const& report);

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    ImportItem* Current();
    QTreeWidgetItem* RowOf(ImportItem const& item);
    void AddFile(QString const& path);
    void ShowRow(ImportItem const& item);
    void ShowCurrent();
    void ShowButtons();
    void ShowProgress();
    void ReadAs(int index);
    void ChangeStore(QString const& path);
    void ChooseStore();
    void LookAt(ImportItem& item);
    void Import();
    void RunNext();
    void Finished(ImportItem& item, Status const& status, ImportResult result);
    void AllFinished();
    void TakeByHand();
    void OpenRow();
    void Start(std::function<void()> work, std::function<void()> then);

    std::list<ImportItem> m_items;  ///< in the order of the rows; views point to them
    QTreeWidget* m_files;
    QComboBox* m_readAs;
    QLabel* m_why;
    QLineEdit* m_store;
    QCheckBox* m_replace;
    QStackedWidget* m_pages;
    CProposalView* m_proposal;
    QLabel* m_message;
    QProgressBar* m_bar;
    QLabel* m_progressText;
    QPushButton* m_hand;
    QPushButton* m_import;
    QPushButton* m_cancel;
    QString m_byHand;
    bool m_isImporting = false;
    CBackground m_background;  ///< goes first, and waits for its work
};

}  // namespace norva
