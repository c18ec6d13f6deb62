#include "location_model.h"

#include <QApplication>
#include <QFont>
#include <QPalette>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace norva {

void CLocationModel::SetLine(int line) {
    beginResetModel();
    m_line = line;
    m_first = 0;
    m_order.clear();
    endResetModel();
}

void CLocationModel::SetWindow(long first, int rows) {
    if (rows != m_rows) {
        beginResetModel();
        m_first = first;
        m_rows = rows;
        endResetModel();
        return;
    }
    m_first = first;
    if (rowCount() > 0 && columnCount() > 0) {
        emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
        emit headerDataChanged(Qt::Vertical, 0, rowCount() - 1);
    }
}

void CLocationModel::SortBy(int column, bool isDescending) {
    beginResetModel();
    m_order.clear();
    if (column >= 0 && Locations() > 0) {
        ChannelEntry const& channel = m_document.Channels()[static_cast<std::size_t>(column)];
        m_order.resize(static_cast<std::size_t>(Locations()));
        std::iota(m_order.begin(), m_order.end(), 0U);
        if (channel.isNumber) {
            std::vector<double> const values = m_document.Column(channel.index, m_line, false);
            std::stable_sort(m_order.begin(), m_order.end(), [&](std::uint32_t a, std::uint32_t b) {
                if (std::isnan(values[a]) || std::isnan(values[b]))
                    return !std::isnan(values[a]) && std::isnan(values[b]);
                return isDescending ? values[a] > values[b] : values[a] < values[b];
            });
        } else {
            std::vector<QString> texts;
            texts.reserve(m_order.size());
            for (std::uint32_t const i : m_order) texts.push_back(m_document.CellText(channel.index, m_line, i));
            std::stable_sort(m_order.begin(), m_order.end(), [&](std::uint32_t a, std::uint32_t b) {
                return isDescending ? texts[a] > texts[b] : texts[a] < texts[b];
            });
        }
    }
    endResetModel();
}

long CLocationModel::Locations() const {
    if (m_line < 0 || static_cast<std::size_t>(m_line) >= m_document.Lines().size()) return 0;
    return m_document.Lines()[static_cast<std::size_t>(m_line)].locations;
}

long CLocationModel::LocationOf(long row) const {
    return m_order.empty() ? row : static_cast<long>(m_order[static_cast<std::size_t>(row)]);
}

long CLocationModel::RowOf(long location) const {
    if (m_order.empty()) return location;
    return std::find(m_order.begin(), m_order.end(), static_cast<std::uint32_t>(location)) - m_order.begin();
}

int CLocationModel::rowCount(QModelIndex const& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(std::clamp(Locations() - m_first, 0L, static_cast<long>(m_rows)));
}

int CLocationModel::columnCount(QModelIndex const& parent) const {
    return parent.isValid() || m_line < 0 ? 0 : static_cast<int>(m_document.Channels().size());
}

QVariant CLocationModel::data(QModelIndex const& index, int role) const {
    long const location = LocationOf(m_first + index.row());
    ChannelEntry const& channel = m_document.Channels()[static_cast<std::size_t>(index.column())];
    switch (role) {
        case Qt::DisplayRole:
            return m_document.CellText(channel.index, m_line, location);
        case Qt::TextAlignmentRole:
            return static_cast<int>(Qt::AlignVCenter | (channel.isNumber ? Qt::AlignRight : Qt::AlignLeft));
        case Qt::ForegroundRole:
            if (m_document.IsDeleted(m_line, location)) {
                return QApplication::palette().color(QPalette::Disabled, QPalette::Text);
            }
            return {};
        case Qt::FontRole:
            if (m_document.IsDeleted(m_line, location)) {
                QFont font;
                font.setStrikeOut(true);
                return font;
            }
            return {};
        default:
            return {};
    }
}

QVariant CLocationModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (role != Qt::DisplayRole) return {};
    if (orientation == Qt::Vertical) return QString::number(LocationOf(m_first + section));
    return m_document.Channels()[static_cast<std::size_t>(section)].fullName;
}

bool FindValue(CStoreDocument& document, CLocationModel const& rows, QString const& text, long& row, int& column) {
    long const count = rows.Locations();
    if (count == 0 || text.isEmpty()) return false;
    bool isNumber = false;
    double const wanted = text.toDouble(&isNumber);
    long const start = row;
    long nearest = count;  // in rows after the start, wrapping round
    int const line = rows.Line();
    for (std::size_t i = 0; i < document.Channels().size(); ++i) {
        ChannelEntry const& channel = document.Channels()[i];
        bool const isPlain = channel.isNumber && !channel.isArray && channel.displayFormat <= DisplayFormat::kExponent;
        if (isPlain && !isNumber) continue;
        std::vector<double> const values =
            isPlain ? document.Column(channel.index, line, false) : std::vector<double>();
        double const reach = 0.5 * std::pow(10, -channel.decimals) * (1 + 1e-9);
        for (long away = 1; away <= nearest; ++away) {
            long const here = (start + away) % count;
            long const location = rows.LocationOf(here);
            bool const isFound =
                isPlain ? std::abs(values[static_cast<std::size_t>(location)] - wanted) <= reach
                        : document.CellText(channel.index, line, location).contains(text, Qt::CaseInsensitive);
            if (!isFound || (away == nearest && nearest < count)) continue;
            nearest = away;
            row = here;
            column = static_cast<int>(i);
            break;
        }
    }
    return column >= 0;
}

}  // namespace norva
