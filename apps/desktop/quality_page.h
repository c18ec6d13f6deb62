#pragma once

#include "quality.h"
#include "store_document.h"

#include <QAbstractTableModel>
#include <QWidget>

#include <atomic>
#include <thread>

class QLabel;
class QProgressBar;
class QPushButton;
class QSortFilterProxyModel;
class QTableView;

namespace norva {

/// A row for every line and channel.
class CQualityModel : public QAbstractTableModel {
    Q_OBJECT

public:
    explicit CQualityModel(CStoreDocument& document) : m_document(document) {}

    void SetRows(std::vector<QualityRow> rows);
    QualityRow const& Row(int row) const { return m_rows[static_cast<std::size_t>(row)]; }
    int rowCount(QModelIndex const& parent = {}) const override;
    int columnCount(QModelIndex const& parent = {}) const override;
    QVariant data(QModelIndex const& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    CStoreDocument& m_document;
    std::vector<QualityRow> m_rows;
};

/// The quality of all lines and channels, looked at in the background while the page is seen.
class CQualityPage : public QWidget {
    Q_OBJECT

public:
    explicit CQualityPage(CStoreDocument& document);
    ~CQualityPage() override;

    /// What was found belongs to what the document was before.
    void ShowDocument();
    /// Returns when the rows are there (tests, pictures).
    void WaitUntilDone();
    /// The table as text, tabs or commas between.
    QString Text(QChar separator) const;
    QTableView& View() { return *m_view; }

signals:
    /// The person chose a row; the location is one where something is odd, or -1.
    void PlaceChosen(int line, int channel, long location);
    void Said(QString const& text);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void Start();
    void Stop();
    void Take(std::vector<QualityRow> rows, unsigned run);
    void Export();

    CStoreDocument& m_document;
    CQualityModel m_model;
    QSortFilterProxyModel* m_sorted;
    QTableView* m_view;
    QLabel* m_state;
    QProgressBar* m_bar;
    QPushButton* m_start;
    QPushButton* m_export;
    std::thread m_thread;
    std::atomic<bool> m_stop{false};
    std::atomic<int> m_percent{0};
    unsigned m_run = 0;
    bool m_isRunning = false;
    bool m_isOld = true;
};

}  // namespace norva
