#include "plot_style.h"

#include <QApplication>
#include <QFileInfo>
#include <QPainter>
#include <QSvgGenerator>

namespace norva {

void StyleAxis(QCPAxis& axis) {
    QColor const text = QApplication::palette().color(QPalette::Text);
    QColor grid = text;
    grid.setAlpha(40);
    axis.setBasePen(QPen(text));
    axis.setTickPen(QPen(text));
    axis.setSubTickPen(QPen(text));
    axis.setTickLabelColor(text);
    axis.setLabelColor(text);
    axis.grid()->setPen(QPen(grid));
    axis.grid()->setZeroLinePen(QPen(grid));
    axis.setNumberPrecision(9);
    axis.setNumberFormat("g");
}

void StylePlot(QCustomPlot& plot) {
    QPalette const palette = QApplication::palette();
    plot.setBackground(palette.color(QPalette::Base));
    for (QCPAxisRect* const rect : plot.axisRects()) {
        for (QCPAxis* const axis : rect->axes()) StyleAxis(*axis);
    }
    if (plot.legend == nullptr) return;
    plot.legend->setBrush(Qt::NoBrush);
    plot.legend->setBorderPen(Qt::NoPen);
    plot.legend->setTextColor(palette.color(QPalette::Text));
}

bool IsDark() {
    return QApplication::palette().color(QPalette::Base).lightness() < 128;
}

QColor CurveColour(int n) {
    // Okabe and Ito, "Color Universal Design" (2008); on a dark ground the lighter of them first, the dark ones raised.
    static constexpr QRgb light[] = {0xFF0072B2, 0xFFD55E00, 0xFF009E73, 0xFFCC79A7, 0xFFE69F00, 0xFF56B4E9};
    static constexpr QRgb dark[] = {0xFF56B4E9, 0xFFE69F00, 0xFF2FC79A, 0xFFE79CC6, 0xFFF0E442, 0xFFFF8A3D};
    auto const place = static_cast<std::size_t>(n) % std::size(light);
    return QColor::fromRgb(IsDark() ? dark[place] : light[place]);
}

bool SavePlot(QCustomPlot& plot, QString const& path, QSize size, QString const& title, double pixelRatio) {
    QString const suffix = QFileInfo(path).suffix().toLower();
    QCPTextElement* heading = nullptr;
    if (!title.isEmpty()) {
        QFont font = plot.font();
        font.setBold(true);
        font.setPointSizeF(font.pointSizeF() * 1.3);
        heading = new QCPTextElement(&plot, title, font);
        heading->setTextColor(QApplication::palette().color(QPalette::Text));
        plot.plotLayout()->insertRow(0);
        plot.plotLayout()->addElement(0, 0, heading);
    }
    bool isWritten = false;
    if (suffix == "png") {
        isWritten = plot.savePng(path, size.width(), size.height(), pixelRatio, -1);
    } else if (suffix == "pdf") {
        isWritten = plot.savePdf(path, size.width(), size.height());
    } else if (suffix == "svg") {
        QSvgGenerator file;
        file.setFileName(path);
        file.setSize(size);
        file.setViewBox(QRect(QPoint(0, 0), size));
        QCPPainter painter;
        if (painter.begin(&file)) {
            painter.setMode(QCPPainter::pmVectorized);
            painter.setMode(QCPPainter::pmNoCaching);
            plot.toPainter(&painter, size.width(), size.height());
            isWritten = painter.end() && QFileInfo::exists(path);
        }
    }
    if (heading != nullptr) {
        plot.plotLayout()->remove(heading);
        plot.plotLayout()->simplify();
        plot.replot(QCustomPlot::rpQueuedReplot);
    }
    return isWritten;
}

}  // namespace norva
