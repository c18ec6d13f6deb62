#pragma once

#include "store_document.h"

#include <QAbstractTableModel>

#include <cstdint>

namespace norva {

/// The locations that the table shows now: a window on the line, read from the store as it moves. Rows are the
/// line's locations in the order of the file or of a channel's values.
class CLocationModel : public QAbstractTableModel {
    Q_OBJECT

public:
    explicit CLocationModel(CStoreDocument& document) : m_document(document) {}

    void SetLine(int line);
    void SetWindow(long first, int rows);
    /// Sorts by a column, no-data last; -1 for the order of the file.
    void SortBy(int column, bool isDescending);
    long First() const { return m_first; }
    int Line() const { return m_line; }
    long Locations() const;
    long LocationOf(long row) const;
    long RowOf(long location) const;

    int rowCount(QModelIndex const& parent = {}) const override;
    int columnCount(QModelIndex const& parent = {}) const override;
    QVariant data(QModelIndex const& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    CStoreDocument& m_document;
    int m_line = -1;
    long m_first = 0;
    int m_rows = 0;
    std::vector<std::uint32_t> m_order;  ///< locations by row; empty: the order of the file
};

/// The first row after `row` (wrapping round) and its column that show a value: a number as many digits of it as the
/// table shows, other texts anywhere in the cell. False when there is none.
bool FindValue(CStoreDocument& document, CLocationModel const& rows, QString const& text, long& row, int& column);

}  // namespace norva
