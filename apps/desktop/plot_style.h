#pragma once

#include <qcustomplot.h>

namespace norva {

/// Colours and fonts of the current palette, so that a plot fits a light and a dark theme.
void StylePlot(QCustomPlot& plot);
void StyleAxis(QCPAxis& axis);
/// Whether what is drawn stands on a dark ground.
bool IsDark();
/// Colour of the n-th curve; told apart by people who see red and green alike.
QColor CurveColour(int n);

/// Writes a plot by the extension of the file: png, svg, pdf; a title, when there is one, stands above it. False when
/// it could not be written.
bool SavePlot(QCustomPlot& plot, QString const& path, QSize size, QString const& title, double pixelRatio = 1);

}  // namespace norva
