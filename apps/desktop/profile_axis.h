#pragma once

#include "store_document.h"

#include <qcustomplot.h>

namespace norva {

/// What a profile is drawn against, beside the indexes of channels.
inline constexpr int kAgainstLocation = -1;
inline constexpr int kAgainstDistance = -2;

/// Where the locations of a line stand on the horizontal axis; empty for the location number.
std::vector<double> PositionsAlong(CStoreDocument& document, int line, int against);
/// What the axis counts.
QString TitleOfAxis(CStoreDocument const& document, int against);

/// Shows hours as HH:MM:SS.
class CClockTicker : public QCPAxisTicker {
protected:
    double getTickStep(QCPRange const& range) override;
    int getSubTickCount(double tickStep) override;
    QString getTickLabel(double tick, QLocale const& locale, QChar formatChar, int precision) override;

private:
    int m_decimals = 0;
};

/// HH:MM:SS of hours, with so many decimals of the seconds.
QString ClockText(double hours, int decimals);
/// A number as a person types it, or hours as H:MM or H:MM:SS. False for anything else.
bool ReadLimit(QString const& text, double& value);
/// The ticker that suits a channel's values.
QSharedPointer<QCPAxisTicker> TickerFor(ChannelEntry const* channel);

}  // namespace norva
