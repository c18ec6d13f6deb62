#include "profile_axis.h"

#include "position_choice.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace norva {

namespace {

constexpr double kMetresADegree = 111'320;
constexpr double kMissing = std::numeric_limits<double>::quiet_NaN();

}  // namespace

std::vector<double> PositionsAlong(CStoreDocument& document, int line, int against) {
    if (against == kAgainstLocation) return {};
    if (against >= 0) return document.Column(against, line, false);
    PositionChoice const positions = ChoosePositions(document.Channels());
    if (positions.x < 0) return {};
    std::vector<double> const xs = document.Column(positions.x, line, false);
    std::vector<double> const ys = document.Column(positions.y, line, false);
    bool const isDegrees = KindOfPositions(*document.FindChannel(positions.x), *document.FindChannel(positions.y)) ==
                           PositionKind::Degrees;
    std::vector<double> along(std::min(xs.size(), ys.size()), kMissing);
    double distance = 0;
    std::size_t last = along.size();
    for (std::size_t i = 0; i < along.size(); ++i) {
        if (!std::isfinite(xs[i]) || !std::isfinite(ys[i])) continue;
        if (last < along.size()) {
            double const north = ys[i] - ys[last];
            double const east = xs[i] - xs[last];
            double const shrink = isDegrees ? std::cos(ys[i] * std::numbers::pi / 180) : 1;
            distance += std::hypot(east * shrink, north) * (isDegrees ? kMetresADegree : 1);
        }
        along[i] = distance;
        last = i;
    }
    return along;
}

QString TitleOfAxis(CStoreDocument const& document, int against) {
    if (against == kAgainstLocation) return QObject::tr("Location");
    if (ChannelEntry const* const channel = document.FindChannel(against)) return channel->fullName;
    PositionChoice const positions = ChoosePositions(document.Channels());
    ChannelEntry const* const x = document.FindChannel(positions.x);
    ChannelEntry const* const y = document.FindChannel(positions.y);
    if (x == nullptr || y == nullptr) return QObject::tr("Distance");
    QString const units = KindOfPositions(*x, *y) == PositionKind::Degrees ? QString("m") : x->units;
    return units.isEmpty() ? QObject::tr("Distance") : QObject::tr("Distance (%1)").arg(units);
}

QString ClockText(double hours, int decimals) {
    double const scale = std::pow(10, decimals);
    auto const ticks = static_cast<long long>(std::llround(std::abs(hours) * 3600 * scale));
    auto const perSecond = static_cast<long long>(scale);
    long long const seconds = ticks / perSecond;
    QString text = QString("%1%2:%3:%4")
                       .arg(hours < 0 && ticks > 0 ? "-" : "")
                       .arg(seconds / 3600, 2, 10, QChar('0'))
                       .arg(seconds / 60 % 60, 2, 10, QChar('0'))
                       .arg(seconds % 60, 2, 10, QChar('0'));
    if (decimals > 0) text += QString(".%1").arg(ticks % perSecond, decimals, 10, QChar('0'));
    return text;
}

bool ReadLimit(QString const& text, double& value) {
    QStringList const parts = text.trimmed().split(':');
    bool isNumber = false;
    if (parts.size() == 1) {
        double const number = QString(parts[0]).replace(',', '.').toDouble(&isNumber);
        if (isNumber && std::isfinite(number)) value = number;
        return isNumber && std::isfinite(number);
    }
    if (parts.size() > 3) return false;
    double hours = 0;
    double unit = 1;
    for (QString const& part : parts) {
        double const number = part.toDouble(&isNumber);
        if (!isNumber || !std::isfinite(number) || (unit < 1 && (number < 0 || number >= 60))) return false;
        hours += std::abs(number) * unit;
        unit /= 60;
    }
    value = parts[0].trimmed().startsWith('-') ? -hours : hours;
    return true;
}

double CClockTicker::getTickStep(QCPRange const& range) {
    static constexpr double kSteps[] = {0.001, 0.002, 0.005, 0.01, 0.02, 0.05,  0.1,   0.2,  0.5,
                                        1,     2,     5,     10,   15,   30,    60,    120,  300,
                                        600,   900,   1800,  3600, 7200, 10800, 21600, 43200};
    double const wished = range.size() * 3600 / std::max(tickCount(), 1);
    double step = kSteps[std::size(kSteps) - 1];
    for (double const one : kSteps) {
        if (one < wished) continue;
        step = one;
        break;
    }
    while (step < wished) step *= 2;
    m_decimals = step < 0.01 ? 3 : step < 0.1 ? 2 : step < 1 ? 1 : 0;
    return step / 3600;
}

int CClockTicker::getSubTickCount(double tickStep) {
    auto const seconds = std::lround(tickStep * 3600);
    return seconds % 60 == 0 && seconds % 3600 != 0 ? 4 : seconds % 3600 == 0 ? 3 : 4;
}

QString CClockTicker::getTickLabel(double tick, QLocale const& /*locale*/, QChar /*formatChar*/, int /*precision*/) {
    return ClockText(tick, m_decimals);
}

QSharedPointer<QCPAxisTicker> TickerFor(ChannelEntry const* channel) {
    if (channel != nullptr && channel->displayFormat == DisplayFormat::kTime) {
        return QSharedPointer<CClockTicker>::create();
    }
    return QSharedPointer<QCPAxisTicker>::create();
}

}  // namespace norva
