#pragma once

#include "store_document.h"

#include <QAbstractTableModel>
#include <QWidget>

class QScrollBar;
class QTableView;

namespace norva {

/// The locations that the table shows now: a window on the line, read from the store as it moves.
class CLocationModel : public QAbstractTableModel {
    Q_OBJECT

public:
    explicit CLocationModel(CStoreDocument& document) : m_document(document) {}

    void SetLine(int line);
    void SetWindow(long first, int rows);
    long First() const { return m_first; }
    int Line() const { return m_line; }
    long Locations() const;

    int rowCount(QModelIndex const& parent = {}) const override;
    int columnCount(QModelIndex const& parent = {}) const override;
    QVariant data(QModelIndex const& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    CStoreDocument& m_document;
    int m_line = -1;
    long m_first = 0;
    int m_rows = 0;
};

/// The values of one line. A view of a few rows over lines of any length: a line of 10 million locations opens as
/// fast as one of ten.
class CLocationTable : public QWidget {
    Q_OBJECT

public:
    explicit CLocationTable(CStoreDocument& document, QWidget* parent = nullptr);

    void ShowLine(int line);
    /// Scrolls to a location and selects it.
    void ShowLocation(long location);
    int Line() const { return m_model.Line(); }
    /// Selected locations, ascending.
    std::vector<long> SelectedLocations() const;

signals:
    void LocationChosen(long location);

protected:
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void UpdateWindow();
    void MoveTo(long location, bool extend);

    CLocationModel m_model;
    QTableView* m_view;
    QScrollBar* m_scroll;
    long m_current = -1;  ///< selection from m_anchor to m_current
    long m_anchor = -1;
};

}  // namespace norva
