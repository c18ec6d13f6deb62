#pragma once

#include "colour_scale.h"

#include <qcustomplot.h>

namespace norva {

/// The colours of a map with their values; arrows at the ends that further values share.
class CColourBar : public QCPLayoutElement {
public:
    explicit CColourBar(QCustomPlot* plot) : QCPLayoutElement(plot) {}

    void Show(CColourScale const& scale, QString const& title);
    CColourScale const& Scale() const { return m_scale; }
    QSize minimumOuterSizeHint() const override;

protected:
    void draw(QCPPainter* painter) override;
    void applyDefaultAntialiasingHint(QCPPainter* painter) const override { painter->setAntialiasing(true); }

private:
    QStringList Labels() const;

    CColourScale m_scale;
    QString m_title;
};

}  // namespace norva
