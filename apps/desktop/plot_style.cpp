#include "plot_style.h"

#include "profile_plot.h"

#include <QFileInfo>
#include <QPainter>
#include <QSvgGenerator>

namespace norva {

void StylePlot(QCustomPlot& plot) {
    QPalette const palette = QApplication::palette();
    QColor const text = palette.color(QPalette::Text);
    QColor const base = palette.color(QPalette::Base);
    QColor grid = text;
    grid.setAlpha(40);
    plot.setBackground(base);
    for (QCPAxis* const axis : {plot.xAxis, plot.yAxis, plot.xAxis2, plot.yAxis2}) {
        axis->setBasePen(QPen(text));
        axis->setTickPen(QPen(text));
        axis->setSubTickPen(QPen(text));
        axis->setTickLabelColor(text);
        axis->setLabelColor(text);
        axis->grid()->setPen(QPen(grid));
        axis->grid()->setZeroLinePen(QPen(grid));
        axis->setNumberPrecision(9);
        axis->setNumberFormat("g");
    }
    plot.legend->setBrush(base);
    plot.legend->setTextColor(text);
    plot.legend->setBorderPen(QPen(grid));
}

QColor CurveColour(int n) {
    // Okabe and Ito, "Color Universal Design" (2008).
    static constexpr QRgb colours[] = {0xFF0072B2, 0xFFD55E00, 0xFF009E73, 0xFFCC79A7, 0xFFE69F00, 0xFF56B4E9};
    return QColor::fromRgb(colours[static_cast<std::size_t>(n) % std::size(colours)]);
}

bool SavePlot(QCustomPlot& plot, QString const& path, int width, int height) {
    QString const suffix = QFileInfo(path).suffix().toLower();
    if (suffix == "png") return plot.savePng(path, width, height, 1.0, -1);
    if (suffix == "pdf") return plot.savePdf(path, width, height);
    if (suffix != "svg") return false;
    QSvgGenerator file;
    file.setFileName(path);
    file.setSize(QSize(width, height));
    file.setViewBox(QRect(0, 0, width, height));
    QCPPainter painter;
    if (!painter.begin(&file)) return false;
    painter.setMode(QCPPainter::pmVectorized);
    plot.toPainter(&painter, width, height);
    return painter.end() && QFileInfo::exists(path);
}

}  // namespace norva
