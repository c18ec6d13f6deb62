#pragma once

#include "map_plot.h"

#include <QWidget>

class QComboBox;
class QLineEdit;

namespace norva {

/// The map with what is chosen about it.
class CMapPage : public QWidget {
    Q_OBJECT

public:
    explicit CMapPage(CStoreDocument& document);

    /// Offers the channels of the document, the likeliest chosen; those that are still there stay when `keeps`.
    void ShowDocument(bool keeps);
    /// Draws what is chosen; it reads all lines.
    void Redraw();
    CMapPlot& Plot() { return *m_plot; }

signals:
    void Said(QString const& text);

private:
    void ShowScale();
    void TakeScale();

    CStoreDocument& m_document;
    CMapPlot* m_plot;
    QComboBox* m_x;
    QComboBox* m_y;
    QComboBox* m_colour;
    QComboBox* m_mode;
    QLineEdit* m_from;
    QLineEdit* m_to;
    QComboBox* m_pixel;
};

}  // namespace norva
