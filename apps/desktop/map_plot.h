#pragma once

#include "store_document.h"

#include <qcustomplot.h>

#include <vector>

namespace norva {

/// Positions of all lines that are shown, coloured by a channel.
class CMapPlot : public QCustomPlot {
    Q_OBJECT

public:
    explicit CMapPlot(CStoreDocument& document, QWidget* parent = nullptr);

    /// Channel indexes; `colour` -1 draws the lines alone.
    void ShowMap(int x, int y, int colour);
    void MarkLine(int line);

signals:
    void LineChosen(int line);

protected:
    void mouseReleaseEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    struct Track {
        int line;
        std::vector<double> x;
        std::vector<double> y;
        QCPCurve* curve;
    };

    void KeepAspect();
    void DrawColours(int colour);

    CStoreDocument& m_document;
    std::vector<Track> m_tracks;
    QCPColorScale* m_scale;
    QCPRange m_x;
    QCPRange m_y;
    bool m_metric = true;  ///< both axes in the same unit
};

}  // namespace norva
