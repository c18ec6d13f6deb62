#pragma once

#include "store_document.h"

#include <qcustomplot.h>

#include <vector>

namespace norva {

/// Curves of one or several channels along a line, against the location number or a channel.
class CProfilePlot : public QCustomPlot {
    Q_OBJECT

public:
    explicit CProfilePlot(CStoreDocument& document, QWidget* parent = nullptr);

    /// `channels` and `against` are channel indexes; `against` -1 is the location number. Shows the whole line.
    void ShowLine(int line, std::vector<int> const& channels, int against);
    /// Marks one location in every curve.
    void ShowCursor(long location);

signals:
    /// The person clicked near a location.
    void LocationChosen(long location);
    /// What is under the mouse, for the status bar.
    void Hovered(QString const& text);

protected:
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    struct Curve {
        QString name;
        std::vector<double> values;
        QCPCurve* curve = nullptr;
    };

    void Reduce();
    long LocationAt(double x) const;
    double PositionOf(long location) const;
    void FitAll();

    CStoreDocument& m_document;
    int m_line = -1;
    std::vector<double> m_positions;  ///< empty: the location number
    std::vector<Curve> m_curves;
    QCPItemStraightLine* m_cursor;
};

/// Export of a plot by the extension of the file: png, svg, pdf. False when it could not be written.
bool SavePlot(QCustomPlot& plot, QString const& path, int width, int height);

}  // namespace norva
