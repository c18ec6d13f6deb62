#pragma once

#include "profile_axis.h"

#include <qcustomplot.h>

#include <memory>
#include <vector>

namespace norva {

/// What a profile plot shows.
struct ProfileChoice {
    std::vector<int> lines;
    std::vector<int> channels;  ///< indexes
    int against = kAgainstLocation;
    bool isStacked = false;  ///< every line has panels of its own

    bool operator==(ProfileChoice const&) const = default;
};

/// Curves of channels along lines: a panel for every unit, one over the other, over one axis.
class CProfilePlot : public QCustomPlot {
    Q_OBJECT

public:
    explicit CProfilePlot(CStoreDocument& document, QWidget* parent = nullptr);
    ~CProfilePlot() override;

    /// Keeps the view when `keepsView` and the axis is the same.
    void Show(ProfileChoice const& choice, bool keepsView = false);
    /// One line, overlaid.
    void ShowLine(int line, std::vector<int> const& channels, int against) { Show({{line}, channels, against, false}); }
    /// Marks one location in every panel that shows its line.
    void ShowCursor(int line, long location);
    void FitAll();

    /// Ranges of the axes, the horizontal one first, then the panels from above.
    struct Limits {
        QString title;
        QCPRange range;
    };
    std::vector<Limits> CurrentLimits() const;
    void SetLimits(std::vector<QCPRange> const& ranges);
    /// What did not find room, for the status bar; empty mostly.
    QString const& LeftOut() const { return m_leftOut; }
    int Panels() const { return static_cast<int>(m_panels.size()); }
    QCPAxisRect& Panel(int n) { return *m_panels[static_cast<std::size_t>(n)].rect; }

signals:
    /// The person clicked near a location.
    void LocationChosen(int line, long location);
    /// What is under the mouse, for the status bar.
    void Hovered(QString const& text);
    /// The person wants to type limits.
    void LimitsWished();

protected:
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    /// Positions of a line's locations, shared by its curves.
    struct Track {
        int line;
        long locations;
        std::vector<double> positions;  ///< empty: the location number
        bool isAscending;
        double longestStep;
        std::vector<bool> deleted;
    };
    struct Curve {
        QString name;
        Track const* track;
        int channel;
        std::vector<double> values;
        double lowest;
        double highest;
        int panel;
        QCPCurve* line;
        QCPCurve* dots;     ///< values that have no neighbour to draw a line to
        QCPCurve* deleted;  ///< values of deleted locations
    };
    struct PanelOfUnits {
        QString units;
        int line;  ///< -1: of all lines
        QString title;
        QCPAxisRect* rect;
        QCPItemStraightLine* cursor;
    };

    void Clear();
    int PanelFor(QString const& units, int line, ChannelEntry const& channel);
    void AddCurve(Track const& track, ChannelEntry const& channel);
    void ArrangeLegend();
    void ShareRange(QCPAxis* from);
    QCPAxis* XAxis() const;
    void Reduce();
    double PositionOf(Track const& track, long location) const;
    long LocationAt(Track const& track, double x) const;
    Curve const* CurveAt(QPointF const& place, long& location) const;

    CStoreDocument& m_document;
    ProfileChoice m_choice;
    std::vector<std::unique_ptr<Track>> m_tracks;
    std::vector<Curve> m_curves;
    std::vector<PanelOfUnits> m_panels;
    QCPMarginGroup* m_margins;
    QString m_leftOut;
    bool m_isSharing = false;
    int m_cursorLine = -1;
    long m_cursor = -1;
};

}  // namespace norva
