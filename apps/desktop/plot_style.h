#pragma once

#include <qcustomplot.h>

namespace norva {

/// Colours and fonts of the current palette, so that a plot fits a light and a dark theme.
void StylePlot(QCustomPlot& plot);
/// Colour of the n-th curve; told apart by people who see red and green alike.
QColor CurveColour(int n);

}  // namespace norva
