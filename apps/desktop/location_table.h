#pragma once

#include "location_model.h"

#include <QWidget>

class QLineEdit;
class QScrollBar;
class QTableView;

namespace norva {

/// The values of one line. A view of a few rows over lines of any length: a line of 10 million locations opens as
/// fast as one of ten. A click on a title sorts the view, Ctrl+C copies the chosen rows.
class CLocationTable : public QWidget {
    Q_OBJECT

public:
    explicit CLocationTable(CStoreDocument& document, QWidget* parent = nullptr);

    void ShowLine(int line);
    /// The same line with other marks or values; rows stay chosen.
    void Refresh();
    /// Scrolls to a location and selects it.
    void ShowLocation(long location);
    int Line() const { return m_model.Line(); }
    /// Selected locations, ascending.
    std::vector<long> SelectedLocations() const;
    void SelectAll();
    /// The chosen rows with their titles, as tab-separated text.
    QString SelectedText() const;
    void Copy();
    /// Opens the box for a value to find.
    void OpenFind();
    /// Goes to the next place of what stands in that box.
    void FindNext();
    /// Sorts by a column: ascending, then descending, then as in the file.
    void SortNext(int column);
    QTableView& View() { return *m_view; }

signals:
    void LocationChosen(int line, long location);
    void Said(QString const& text);

protected:
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Range {
        long anchor;
        long current;
    };

    void UpdateWindow();
    void MoveTo(long row, Qt::KeyboardModifiers modifiers);
    void ToggleRow(long row);
    void ScrollTo(long row);
    void MeasureColumns();
    void WidenColumns();
    bool TakeKey(QKeyEvent const& key);

    CStoreDocument& m_document;
    CLocationModel m_model;
    QTableView* m_view;
    QScrollBar* m_scroll;
    QWidget* m_findBar;
    QLineEdit* m_find;
    std::vector<Range> m_ranges;  ///< of chosen rows; the last is the one that the keys move
    int m_pressedRow = -1;        ///< of the view, under the mouse
    int m_sorted = -1;
    bool m_isDescending = false;
};

}  // namespace norva
