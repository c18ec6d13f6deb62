#pragma once

#include "store_document.h"

#include <QWidget>

class QCheckBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QSplitter;
class QTreeWidget;

namespace norva {

/// Lines, channels and statistics of the open store, and a filter for their names.
class CStorePanel : public QWidget {
    Q_OBJECT

public:
    explicit CStorePanel(CStoreDocument& document);

    /// Shows the document's lines and channels; what was chosen stays when `keeps` and it is still there.
    void ShowDocument(bool keeps);
    /// The line that the table shows; -1 for none.
    int Line() const;
    /// All chosen lines, Line() first.
    std::vector<int> Lines() const;
    std::vector<int> Channels() const;
    /// Chooses one line; one of several that are chosen becomes the first of them.
    void ChooseLine(int line);
    void ChooseChannels(std::vector<int> const& channels);
    void ShowStatistics();
    QListWidget& LineList() { return *m_lines; }
    QSplitter& Splitter() { return *m_splitter; }

signals:
    void LinesChosen();
    void ChannelsChosen();

private:
    void Filter(QString const& text);

    CStoreDocument& m_document;
    QLineEdit* m_filter;
    QListWidget* m_lines;
    QTreeWidget* m_channels;
    QLabel* m_statistics;
    QCheckBox* m_allLines;
    QSplitter* m_splitter;
};

}  // namespace norva
