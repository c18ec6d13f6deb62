#pragma once

#include "profile_plot.h"

#include <QWidget>

class QComboBox;

namespace norva {

/// The profile plot with what is chosen about it.
class CProfilePage : public QWidget {
    Q_OBJECT

public:
    explicit CProfilePage(CStoreDocument& document);

    /// Offers the channels of the document; a choice that is still there stays when `keeps`.
    void ShowDocument(bool keeps);
    /// Draws these lines and channels; with `keepsView` the limits stay where they are.
    void Show(std::vector<int> const& lines, std::vector<int> const& channels, bool keepsView = false);
    void ChooseAgainst(int against);
    CProfilePlot& Plot() { return *m_plot; }

signals:
    void Said(QString const& text);

private:
    void TypeLimits();
    void Redraw(bool keepsView);

    CStoreDocument& m_document;
    CProfilePlot* m_plot;
    QComboBox* m_against;
    QComboBox* m_arrangement;
    std::vector<int> m_lines;
    std::vector<int> m_channels;
};

}  // namespace norva
