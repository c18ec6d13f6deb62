#include "location_table.h"

#include <QApplication>
#include <QClipboard>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QScrollBar>
#include <QTableView>
#include <QToolButton>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <limits>

namespace norva {

namespace {

constexpr long kMeasuredLocations = 200'000;
constexpr long kMostCopiedRows = 1'000'000;
constexpr int kCellMargin = 12;

}  // namespace

CLocationTable::CLocationTable(CStoreDocument& document, QWidget* parent)
    : QWidget(parent),
      m_document(document),
      m_model(document),
      m_view(new QTableView),
      m_scroll(new QScrollBar(Qt::Vertical)),
      m_findBar(new QWidget),
      m_find(new QLineEdit) {
    m_view->setModel(&m_model);
    m_view->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_view->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_view->setWordWrap(false);
    m_view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_view->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_view->verticalHeader()->setDefaultSectionSize(m_view->fontMetrics().height() + 6);
    m_view->horizontalHeader()->setSectionsClickable(true);
    m_view->horizontalHeader()->setHighlightSections(false);
    m_view->setAccessibleName(tr("Values of the line"));
    m_view->viewport()->installEventFilter(this);
    m_view->installEventFilter(this);
    connect(m_view->horizontalHeader(), &QHeaderView::sectionClicked, this, &CLocationTable::SortNext);

    auto* const findLayout = new QHBoxLayout(m_findBar);
    findLayout->setContentsMargins(4, 2, 4, 2);
    auto* const label = new QLabel(tr("Find value:"));
    auto* const next = new QToolButton;
    next->setText(tr("Next"));
    auto* const close = new QToolButton;
    close->setText(tr("Close"));
    m_find->setAccessibleName(tr("Value to find"));
    findLayout->addWidget(label);
    findLayout->addWidget(m_find, 1);
    findLayout->addWidget(next);
    findLayout->addWidget(close);
    m_findBar->hide();
    m_find->installEventFilter(this);
    connect(m_find, &QLineEdit::returnPressed, this, &CLocationTable::FindNext);
    connect(next, &QToolButton::clicked, this, &CLocationTable::FindNext);
    connect(close, &QToolButton::clicked, m_findBar, &QWidget::hide);

    auto* const layout = new QGridLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_view, 0, 0);
    layout->addWidget(m_scroll, 0, 1);
    layout->addWidget(m_findBar, 1, 0, 1, 2);
    setFocusProxy(m_view);
    connect(m_scroll, &QScrollBar::valueChanged, this, [this] { UpdateWindow(); });
}

void CLocationTable::ShowLine(int line) {
    m_ranges.clear();
    m_sorted = -1;
    m_view->horizontalHeader()->setSortIndicatorShown(false);
    m_model.SetLine(line);
    m_scroll->setValue(0);
    UpdateWindow();
    MeasureColumns();
}

void CLocationTable::Refresh() {
    UpdateWindow();
    m_view->viewport()->update();
}

void CLocationTable::ShowLocation(long location) {
    if (location < 0 || location >= m_model.Locations()) return;
    MoveTo(m_model.RowOf(location), Qt::NoModifier);
}

std::vector<long> CLocationTable::SelectedLocations() const {
    std::vector<long> locations;
    for (Range const& range : m_ranges) {
        for (long row = std::min(range.anchor, range.current); row <= std::max(range.anchor, range.current); ++row) {
            locations.push_back(m_model.LocationOf(row));
        }
    }
    std::sort(locations.begin(), locations.end());
    locations.erase(std::unique(locations.begin(), locations.end()), locations.end());
    return locations;
}

void CLocationTable::SelectAll() {
    if (m_model.Locations() == 0) return;
    m_ranges = {{0, m_model.Locations() - 1}};
    UpdateWindow();
}

QString CLocationTable::SelectedText() const {
    QString text = tr("Location");
    for (ChannelEntry const& channel : m_document.Channels()) text += '\t' + channel.fullName;
    text += '\n';
    std::vector<Range> ranges = m_ranges;
    std::sort(ranges.begin(), ranges.end(), [](Range const& a, Range const& b) {
        return std::min(a.anchor, a.current) < std::min(b.anchor, b.current);
    });
    long after = 0;  // ranges may overlap: a row is copied once
    for (Range const& range : ranges) {
        long const first = std::max(after, std::min(range.anchor, range.current));
        long const last = std::max(range.anchor, range.current);
        for (long row = first; row <= last; ++row) {
            long const location = m_model.LocationOf(row);
            text += QString::number(location);
            for (ChannelEntry const& channel : m_document.Channels()) {
                text += '\t' + m_document.CellText(channel.index, m_model.Line(), location);
            }
            text += '\n';
        }
        after = std::max(after, last + 1);
    }
    return text;
}

void CLocationTable::Copy() {
    long rows = 0;
    for (Range const& range : m_ranges) rows += std::abs(range.current - range.anchor) + 1;
    if (rows == 0) return;
    if (rows > kMostCopiedRows) {
        emit Said(tr("%1 rows are too many to copy; export them instead").arg(rows));
        return;
    }
    QApplication::clipboard()->setText(SelectedText());
    emit Said(rows == 1 ? tr("1 row copied") : tr("%1 rows copied").arg(rows));
}

void CLocationTable::OpenFind() {
    m_findBar->show();
    m_find->selectAll();
    m_find->setFocus(Qt::ShortcutFocusReason);
}

void CLocationTable::FindNext() {
    long row = m_ranges.empty() ? -1 : m_ranges.back().current;
    int column = -1;
    if (!FindValue(m_document, m_model, m_find->text().trimmed(), row, column)) {
        emit Said(tr("The line has no value %1").arg(m_find->text()));
        return;
    }
    MoveTo(row, Qt::NoModifier);
    m_view->scrollTo(m_model.index(static_cast<int>(row - m_model.First()), column));
    emit Said(tr("%1 at location %2")
                  .arg(m_document.Channels()[static_cast<std::size_t>(column)].fullName)
                  .arg(m_model.LocationOf(row)));
}

void CLocationTable::SortNext(int column) {
    if (m_model.Locations() == 0) return;
    std::vector<long> const chosen = SelectedLocations();
    if (m_sorted != column) {
        m_sorted = column;
        m_isDescending = false;
    } else if (!m_isDescending) {
        m_isDescending = true;
    } else {
        m_sorted = -1;
    }
    QApplication::setOverrideCursor(Qt::WaitCursor);
    m_model.SortBy(m_sorted, m_isDescending);
    QApplication::restoreOverrideCursor();
    m_view->horizontalHeader()->setSortIndicatorShown(m_sorted >= 0);
    if (m_sorted >= 0) {
        m_view->horizontalHeader()->setSortIndicator(m_sorted,
                                                     m_isDescending ? Qt::DescendingOrder : Qt::AscendingOrder);
    }
    m_ranges.clear();
    if (chosen.size() == 1) {
        long const row = m_model.RowOf(chosen.front());
        m_ranges = {{row, row}};
        ScrollTo(row);
    }
    UpdateWindow();
}

void CLocationTable::MeasureColumns() {
    LineEntry const* const line =
        m_model.Line() < 0 ? nullptr : &m_document.Lines()[static_cast<std::size_t>(m_model.Line())];
    if (line == nullptr) return;
    QFontMetrics const metrics = m_view->fontMetrics();
    for (int column = 0; column < m_model.columnCount(); ++column) {
        ChannelEntry const& channel = m_document.Channels()[static_cast<std::size_t>(column)];
        int width = m_view->horizontalHeader()->sectionSizeHint(column);
        // The widest texts are those of the extremes; of a longer line the rest is seen as it is scrolled to.
        if (channel.isNumber && line->locations <= kMeasuredLocations) {
            std::vector<double> const values = m_document.Column(channel.index, m_model.Line(), false);
            long lowest = -1;
            long highest = -1;
            for (std::size_t i = 0; i < values.size(); ++i) {
                if (std::isnan(values[i])) continue;
                if (lowest < 0 || values[i] < values[static_cast<std::size_t>(lowest)]) lowest = static_cast<long>(i);
                if (highest < 0 || values[i] > values[static_cast<std::size_t>(highest)])
                    highest = static_cast<long>(i);
            }
            for (long const location : {lowest, highest}) {
                if (location < 0) continue;
                QString const text = m_document.CellText(channel.index, m_model.Line(), location);
                width = std::max(width, metrics.horizontalAdvance(text) + kCellMargin);
            }
        }
        m_view->setColumnWidth(column, width);
    }
    WidenColumns();
}

/// Whatever is seen is seen whole.
void CLocationTable::WidenColumns() {
    QFontMetrics const metrics = m_view->fontMetrics();
    for (int column = 0; column < m_model.columnCount(); ++column) {
        int width = m_view->columnWidth(column);
        for (int row = 0; row < m_model.rowCount(); ++row) {
            QString const text = m_model.data(m_model.index(row, column), Qt::DisplayRole).toString();
            width = std::max(width, metrics.horizontalAdvance(text) + kCellMargin);
        }
        if (width > m_view->columnWidth(column)) m_view->setColumnWidth(column, width);
    }
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
    for (Range const& range : m_ranges) {
        long const first = std::max(std::min(range.anchor, range.current), m_model.First());
        long const last = std::min(std::max(range.anchor, range.current), m_model.First() + m_model.rowCount() - 1);
        if (first > last || m_model.columnCount() == 0) continue;
        selection.merge({m_model.index(static_cast<int>(first - m_model.First()), 0),
                         m_model.index(static_cast<int>(last - m_model.First()), m_model.columnCount() - 1)},
                        QItemSelectionModel::Select);
    }
    m_view->selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    WidenColumns();
}

void CLocationTable::ScrollTo(long row) {
    long const visible = std::max(1, m_scroll->pageStep());
    long const first = m_model.First();
    if (row < first) m_scroll->setValue(static_cast<int>(row));
    if (row >= first + visible) m_scroll->setValue(static_cast<int>(row - visible + 1));
}

void CLocationTable::MoveTo(long row, Qt::KeyboardModifiers modifiers) {
    long const count = m_model.Locations();
    if (count == 0) return;
    long const to = std::clamp(row, 0L, count - 1);
    if (modifiers.testFlag(Qt::ShiftModifier) && !m_ranges.empty()) {
        m_ranges.back().current = to;
    } else if (modifiers.testFlag(Qt::ControlModifier)) {
        ToggleRow(to);
    } else {
        m_ranges = {{to, to}};
    }
    ScrollTo(to);
    UpdateWindow();
    emit LocationChosen(m_model.Line(), m_model.LocationOf(to));
}

void CLocationTable::ToggleRow(long row) {
    for (std::size_t i = 0; i < m_ranges.size(); ++i) {
        long const first = std::min(m_ranges[i].anchor, m_ranges[i].current);
        long const last = std::max(m_ranges[i].anchor, m_ranges[i].current);
        if (row < first || row > last) continue;
        m_ranges.erase(m_ranges.begin() + static_cast<std::ptrdiff_t>(i));
        if (first < row) m_ranges.push_back({first, row - 1});
        if (row < last) m_ranges.push_back({row + 1, last});
        return;
    }
    m_ranges.push_back({row, row});
}

void CLocationTable::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    UpdateWindow();
}

bool CLocationTable::TakeKey(QKeyEvent const& key) {
    long const page = std::max(1, m_scroll->pageStep());
    long const current = m_ranges.empty() ? -1 : m_ranges.back().current;
    Qt::KeyboardModifiers const extend = key.modifiers() & Qt::ShiftModifier;
    if (key.matches(QKeySequence::Copy)) {
        Copy();
        return true;
    }
    if (key.matches(QKeySequence::SelectAll)) {
        SelectAll();
        return true;
    }
    switch (key.key()) {
        case Qt::Key_Up:
            MoveTo(current - 1, extend);
            return true;
        case Qt::Key_Down:
            MoveTo(current + 1, extend);
            return true;
        case Qt::Key_PageUp:
            MoveTo(current - page, extend);
            return true;
        case Qt::Key_PageDown:
            MoveTo(current + page, extend);
            return true;
        case Qt::Key_Home:
            MoveTo(0, extend);
            return true;
        case Qt::Key_End:
            MoveTo(m_model.Locations() - 1, extend);
            return true;
        default:
            return false;
    }
}

bool CLocationTable::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_find) {
        bool const isEscape =
            event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape;
        if (isEscape) {
            m_findBar->hide();
            m_view->setFocus();
        }
        return isEscape;
    }
    if (event->type() == QEvent::Wheel) {
        auto const* const wheel = static_cast<QWheelEvent*>(event);
        bool const isSideways = std::abs(wheel->angleDelta().x()) > std::abs(wheel->angleDelta().y());
        return isSideways ? false : QApplication::sendEvent(m_scroll, event);
    }
    if (watched == m_view->viewport() &&
        (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseMove)) {
        auto* const mouse = static_cast<QMouseEvent*>(event);
        if (!mouse->buttons().testFlag(Qt::LeftButton)) return false;
        int const row = m_view->rowAt(mouse->pos().y());
        if (row < 0) return true;
        m_view->setFocus();
        bool const isDrag = event->type() == QEvent::MouseMove;
        if (isDrag && row == m_pressedRow) return true;
        m_pressedRow = row;
        MoveTo(m_model.First() + row, isDrag ? Qt::KeyboardModifiers(Qt::ShiftModifier) : mouse->modifiers());
        return true;
    }
    if (watched == m_view && event->type() == QEvent::KeyPress) {
        if (TakeKey(*static_cast<QKeyEvent*>(event))) return true;
    }
    return QWidget::eventFilter(watched, event);
}

}  // namespace norva
