#include "location_table.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPalette>
#include <QScrollBar>
#include <QTableView>
#include <QWheelEvent>

#include <algorithm>
#include <limits>

namespace norva {

void CLocationModel::SetLine(int line) {
    beginResetModel();
    m_line = line;
    m_first = 0;
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

long CLocationModel::Locations() const {
    if (m_line < 0 || static_cast<std::size_t>(m_line) >= m_document.Lines().size()) return 0;
    return m_document.Lines()[static_cast<std::size_t>(m_line)].locations;
}

int CLocationModel::rowCount(QModelIndex const& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(std::clamp(Locations() - m_first, 0L, static_cast<long>(m_rows)));
}

int CLocationModel::columnCount(QModelIndex const& parent) const {
    return parent.isValid() || m_line < 0 ? 0 : static_cast<int>(m_document.Channels().size());
}

QVariant CLocationModel::data(QModelIndex const& index, int role) const {
    long const location = m_first + index.row();
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
    if (orientation == Qt::Vertical) return QString::number(m_first + section);
    return m_document.Channels()[static_cast<std::size_t>(section)].fullName;
}

CLocationTable::CLocationTable(CStoreDocument& document, QWidget* parent)
    : QWidget(parent), m_model(document), m_view(new QTableView), m_scroll(new QScrollBar(Qt::Vertical)) {
    m_view->setModel(&m_model);
    m_view->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_view->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_view->setWordWrap(false);
    m_view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_view->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_view->verticalHeader()->setDefaultSectionSize(m_view->fontMetrics().height() + 6);
    m_view->setAccessibleName(tr("Values of the line"));
    m_view->viewport()->installEventFilter(this);
    m_view->installEventFilter(this);
    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_view, 1);
    layout->addWidget(m_scroll);
    setFocusProxy(m_view);
    connect(m_scroll, &QScrollBar::valueChanged, this, [this] { UpdateWindow(); });
}

void CLocationTable::ShowLine(int line) {
    m_current = m_anchor = -1;
    m_model.SetLine(line);
    m_scroll->setValue(0);
    UpdateWindow();
    for (int column = 0; column < m_model.columnCount(); ++column) m_view->resizeColumnToContents(column);
}

void CLocationTable::ShowLocation(long location) {
    MoveTo(location, false);
}

std::vector<long> CLocationTable::SelectedLocations() const {
    std::vector<long> locations;
    if (m_current < 0) return locations;
    for (long i = std::min(m_anchor, m_current); i <= std::max(m_anchor, m_current); ++i) locations.push_back(i);
    return locations;
}

void CLocationTable::UpdateWindow() {
    int const rowHeight = m_view->verticalHeader()->defaultSectionSize();
    int const visible = std::max(1, m_view->viewport()->height() / rowHeight);
    long const locations = m_model.Locations();
    // A scroll bar counts in int: the last row of a longer line is still reached, in larger steps.
    long const largest = std::max(0L, locations - visible);
    m_scroll->setRange(0, static_cast<int>(std::min<long>(largest, std::numeric_limits<int>::max() - 1)));
    m_scroll->setPageStep(visible);
    m_scroll->setVisible(largest > 0);
    m_model.SetWindow(std::min<long>(m_scroll->value(), largest), visible + 1);

    QItemSelection selection;
    long const first = std::max(std::min(m_anchor, m_current), m_model.First());
    long const last = std::min(std::max(m_anchor, m_current), m_model.First() + m_model.rowCount() - 1);
    if (m_current >= 0 && first <= last && m_model.columnCount() > 0) {
        selection.select(m_model.index(static_cast<int>(first - m_model.First()), 0),
                         m_model.index(static_cast<int>(last - m_model.First()), 0));
    }
    m_view->selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

void CLocationTable::MoveTo(long location, bool extend) {
    long const count = m_model.Locations();
    if (count == 0) return;
    m_current = std::clamp(location, 0L, count - 1);
    if (!extend || m_anchor < 0) m_anchor = m_current;
    long const visible = std::max(1, m_scroll->pageStep());
    long const first = m_model.First();
    if (m_current < first) m_scroll->setValue(static_cast<int>(m_current));
    if (m_current >= first + visible) m_scroll->setValue(static_cast<int>(m_current - visible + 1));
    UpdateWindow();
    emit LocationChosen(m_current);
}

void CLocationTable::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    UpdateWindow();
}

bool CLocationTable::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Wheel) {
        return QApplication::sendEvent(m_scroll, event);
    }
    if (watched == m_view->viewport() &&
        (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseMove)) {
        auto* const mouse = static_cast<QMouseEvent*>(event);
        if (!mouse->buttons().testFlag(Qt::LeftButton)) return false;
        int const row = m_view->rowAt(mouse->pos().y());
        if (row < 0) return true;
        bool const extend = event->type() == QEvent::MouseMove || mouse->modifiers().testFlag(Qt::ShiftModifier);
        m_view->setFocus();
        MoveTo(m_model.First() + row, extend);
        return true;
    }
    if (watched == m_view && event->type() == QEvent::KeyPress) {
        auto* const key = static_cast<QKeyEvent*>(event);
        long const page = std::max(1, m_scroll->pageStep());
        bool const extend = key->modifiers().testFlag(Qt::ShiftModifier);
        switch (key->key()) {
            case Qt::Key_Up:
                MoveTo(m_current - 1, extend);
                return true;
            case Qt::Key_Down:
                MoveTo(m_current + 1, extend);
                return true;
            case Qt::Key_PageUp:
                MoveTo(m_current - page, extend);
                return true;
            case Qt::Key_PageDown:
                MoveTo(m_current + page, extend);
                return true;
            case Qt::Key_Home:
                MoveTo(0, extend);
                return true;
            case Qt::Key_End:
                MoveTo(m_model.Locations() - 1, extend);
                return true;
            default:
                break;
        }
    }
    return QWidget::eventFilter(watched, event);
}

}  // namespace norva
