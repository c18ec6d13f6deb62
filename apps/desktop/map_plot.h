#pragma once

#include "map_worker.h"
#include "position_choice.h"

#include <qcustomplot.h>

namespace norva {

class CColourBar;
class CMapImage;

/// Positions of all lines that are shown, coloured by a channel. Read and drawn in the background: until the picture
/// of a new view has come, the last one is shown where it belongs.
class CMapPlot : public QCustomPlot {
    Q_OBJECT

public:
    explicit CMapPlot(CStoreDocument& document, QWidget* parent = nullptr);
    ~CMapPlot() override;

    /// Channel indexes; `colour` -1 draws the lines alone. Keeps the view when the positions are the same.
    void ShowMap(int x, int y, int colour);
    void SetColours(ColourChoice const& choice);
    /// What is shown of readings in one pixel: the median value, or the last.
    void ShowMedian(bool isMedian);
    void MarkLine(int line);
    /// Rings one reading; the view follows when it is outside.
    void MarkLocation(int line, long location);
    void FitAll();
    /// Returns when the map is read and drawn as it stands (pictures in files, tests).
    void WaitUntilDrawn();

    CColourScale const& Scale() const { return m_picture.scale; }
    CMapData const* Data() const { return m_picture.data.get(); }

    /// For the picture in the plot.
    MapPicture const& Picture() const { return m_picture; }
    MapView ViewOf(QRect const& area, double ratio) const;
    /// Length of the scale bar in units of the x axis and what it says; 0 for none.
    double ScaleBar(QString& text) const;
    PositionKind Kind() const { return m_kind; }
    /// Draws the view at another size at once.
    QImage DrawNow(MapView const& view);

signals:
    void LineChosen(int line);
    /// The person clicked a reading.
    void ReadingChosen(int line, long location);
    /// What is under the mouse, for the status bar.
    void Hovered(QString const& text);
    /// The colours are those of other values.
    void ScaleChanged();

protected:
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void Take(MapPicture picture);
    void Restyle();
    void KeepAspect();
    void WishPicture();
    void ShowColourBar();
    double RatioOfAxes() const;
    long ReadingAt(QPointF const& place) const;
    int LineAt(QPointF const& place) const;

    CStoreDocument& m_document;
    CColourBar* m_bar;
    CMapImage* m_image;
    QCPItemTracer* m_ring;
    QCPItemText* m_notice;
    MapPicture m_picture;
    int m_x = -1;
    int m_y = -1;
    int m_colour = -1;
    PositionKind m_kind = PositionKind::Unknown;
    bool m_isMedian = true;
    bool m_isFitted = true;  ///< the person has not moved the view
    bool m_isSetting = false;
    int m_chosenLine = -1;
    long m_chosenLocation = -1;
    unsigned m_generation = 0;
    MapView m_wished;
    std::unique_ptr<CMapWorker> m_worker;  ///< ends before what it delivers to
};

}  // namespace norva
