#include "list_views.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QStyledItemDelegate>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace norva {

namespace {

/// The rows of a control as a Qt model; it holds no state of its own but the last control shown.
class CRowsModel : public QAbstractTableModel {
public:
    CRowsModel(TemplateNode const& node, EventSink sink) : m_node(node), m_sink(std::move(sink)) {}

    void Show(CControl const& control) {
        bool const sameShape = control.RowCount() == rowCount() &&
                               static_cast<int>(std::max<std::size_t>(control.columns.size(), 1)) == columnCount();
        if (!sameShape) beginResetModel();
        m_control = control;
        if (!sameShape) {
            endResetModel();
        } else if (rowCount() > 0) {
            emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
            emit headerDataChanged(Qt::Horizontal, 0, columnCount() - 1);
        }
    }

    int rowCount(QModelIndex const& parent = {}) const override { return parent.isValid() ? 0 : m_control.RowCount(); }
    int columnCount(QModelIndex const& parent = {}) const override {
        if (parent.isValid()) return 0;
        return static_cast<int>(std::max<std::size_t>(m_control.columns.size(), 1));
    }

    QVariant data(QModelIndex const& index, int role) const override {
        auto const row = static_cast<std::size_t>(index.row());
        auto const column = static_cast<std::size_t>(index.column());
        if (role == Qt::CheckStateRole && m_node.checkBoxes && column == 0) {
            return row < m_control.ticks.size() && m_control.ticks[row] ? Qt::Checked : Qt::Unchecked;
        }
        if (role != Qt::DisplayRole && role != Qt::EditRole && role != Qt::ToolTipRole) return {};
        if (m_node.control == ControlKind::List) return ToQString(m_control.items[row]);
        if (column >= m_control.rows[row].size()) return {};
        return ToQString(m_control.rows[row][column]);
    }

    QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
        auto const column = static_cast<std::size_t>(section);
        if (orientation != Qt::Horizontal || role != Qt::DisplayRole || column >= m_control.columns.size()) return {};
        return ToQString(m_control.columns[column]);
    }

    Qt::ItemFlags flags(QModelIndex const& index) const override {
        Qt::ItemFlags flags = Qt::ItemIsSelectable | Qt::ItemIsEnabled;
        if (m_node.checkBoxes && index.column() == 0) flags |= Qt::ItemIsUserCheckable;
        auto const& editable = m_node.editable;
        if (std::find(editable.begin(), editable.end(), index.column()) != editable.end()) {
            flags |= Qt::ItemIsEditable;
        }
        return flags;
    }

    bool setData(QModelIndex const& index, QVariant const& value, int role) override {
        DialogEvent event;
        event.control = m_node.id;
        event.row = index.row();
        event.column = index.column();
        if (role == Qt::CheckStateRole) {
            event.kind = DialogEvent::Kind::Tick;
            event.on = value.toInt() == Qt::Checked;
        } else if (role == Qt::EditRole) {
            event.kind = DialogEvent::Kind::EditCell;
            event.text = value.toString().toStdString();
        } else {
            return false;
        }
        m_sink(event);
        return true;
    }

private:
    TemplateNode const& m_node;
    EventSink m_sink;
    CControl m_control;
};

/// A list whose selection is the dialog's: clicks and keys become events, and what is selected is shown afterwards.
class CRowsWidget : public QTreeView {
public:
    CRowsWidget(TemplateNode const& node, EventSink sink) : m_node(node), m_sink(std::move(sink)) {
        setRootIsDecorated(false);
        setUniformRowHeights(true);
        setAllColumnsShowFocus(true);
        setAlternatingRowColors(node.control == ControlKind::Report);
        setHeaderHidden(node.control == ControlKind::List);
        setSelectionMode(QAbstractItemView::ExtendedSelection);
        setSelectionBehavior(node.control == ControlKind::Grid ? QAbstractItemView::SelectItems
                                                               : QAbstractItemView::SelectRows);
        setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed);
        setMinimumHeight(fontMetrics().height() * 5);
        header()->setStretchLastSection(node.control != ControlKind::Grid);
        if (node.control == ControlKind::Grid) {
            header()->setSectionsClickable(true);
            connect(header(), &QHeaderView::sectionClicked, [this](int column) { ChooseColumn(column); });
        }
    }

    void ShowSelection(CControl const& control) {
        if (selectionModel() == nullptr) return;
        QItemSelection selection;
        QAbstractItemModel* const rows = model();
        if (control.kind == ControlKind::Grid) {
            if (control.column >= 0 && rows->rowCount() > 0) {
                selection.select(rows->index(0, control.column), rows->index(rows->rowCount() - 1, control.column));
            }
        } else {
            for (int const row : control.selected) selection.select(rows->index(row, 0), rows->index(row, 0));
        }
        auto const how = control.kind == ControlKind::Grid
                             ? QItemSelectionModel::ClearAndSelect
                             : QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows;
        selectionModel()->select(selection, how);
        m_caret = control.kind == ControlKind::Grid ? control.column : control.caret;
        QModelIndex const current =
            control.kind == ControlKind::Grid ? rows->index(0, std::max(m_caret, 0)) : rows->index(m_caret, 0);
        if (m_caret >= 0 && current.isValid()) {
            selectionModel()->setCurrentIndex(current, QItemSelectionModel::NoUpdate);
            if (control.kind != ControlKind::Grid) scrollTo(current);
        }
    }

protected:
    void mousePressEvent(QMouseEvent* event) override {
        QTreeView::mousePressEvent(event);  // check boxes and the start of an edit
        QModelIndex const index = indexAt(event->pos());
        if (event->button() != Qt::LeftButton || !index.isValid()) return;
        if (m_node.control == ControlKind::Grid) {
            ChooseColumn(index.column());
        } else if (!(m_node.checkBoxes && index.column() == 0 && index.flags().testFlag(Qt::ItemIsUserCheckable) &&
                     OnCheckBox(event->pos(), index))) {
            Choose(index.row(), event->modifiers());
        }
    }

    void mouseMoveEvent(QMouseEvent* /*event*/) override {}  // no rubber band: a drag selects nothing

    void mouseDoubleClickEvent(QMouseEvent* event) override {
        QModelIndex const index = indexAt(event->pos());
        QTreeView::mouseDoubleClickEvent(event);
        if (event->button() != Qt::LeftButton || !index.isValid() || m_node.control == ControlKind::Grid) return;
        if (index.flags().testFlag(Qt::ItemIsEditable)) return;
        DialogEvent act;
        act.kind = DialogEvent::Kind::DoubleClick;
        act.control = m_node.id;
        act.row = index.row();
        m_sink(act);
    }

    void keyPressEvent(QKeyEvent* event) override {
        int const step = event->key() == Qt::Key_Down || event->key() == Qt::Key_Right ? 1
                         : event->key() == Qt::Key_Up || event->key() == Qt::Key_Left  ? -1
                                                                                       : 0;
        bool const grid = m_node.control == ControlKind::Grid;
        if (step == 0) {
            QTreeView::keyPressEvent(event);
            return;
        }
        int const count = grid ? model()->columnCount() : model()->rowCount();
        int const target = std::clamp(m_caret + step, 0, count - 1);
        if (count == 0) return;
        if (grid) {
            ChooseColumn(target);
        } else {
            Choose(target, event->modifiers());
        }
    }

private:
    bool OnCheckBox(QPoint position, QModelIndex const& index) const {
        int const indicator = style()->pixelMetric(QStyle::PM_IndicatorWidth) + 6;
        return position.x() < visualRect(index).left() + indicator;
    }

    void ChooseColumn(int column) {
        DialogEvent event;
        event.kind = DialogEvent::Kind::SelectColumn;
        event.control = m_node.id;
        event.column = column;
        m_sink(event);
    }

    void Choose(int row, Qt::KeyboardModifiers modifiers) {
        DialogEvent event;
        event.kind = DialogEvent::Kind::Select;
        event.control = m_node.id;
        event.row = row;
        if (modifiers.testFlag(Qt::ShiftModifier)) event.modifier = DialogEvent::Modifier::Shift;
        if (modifiers.testFlag(Qt::ControlModifier)) event.modifier = DialogEvent::Modifier::Ctrl;
        m_sink(event);
    }

    TemplateNode const& m_node;
    EventSink m_sink;
    int m_caret = -1;
};

class CListView : public CControlView {
public:
    CListView(TemplateNode const& node, CMnemonics& mnemonics, EventSink sink)
        : CControlView(sink),
          m_outer(new QWidget),
          m_model(node, sink),
          m_rows(new CRowsWidget(node, std::move(sink))) {
        m_rows->setModel(&m_model);
        m_rows->setAccessibleName(ToQString(node.label).trimmed());
        auto* const layout = new QVBoxLayout(m_outer);
        layout->setContentsMargins(0, 0, 0, 0);
        if (!node.label.empty()) {
            auto* const label = new QLabel(mnemonics.Assign(node.label));
            label->setBuddy(m_rows);
            layout->addWidget(label);
        }
        layout->addWidget(m_rows, 1);
    }

    QWidget* Widget() const override { return m_rows; }
    QWidget* Outer() const override { return m_outer; }
    QWidget* Target() const override { return m_rows->viewport(); }

    void Refresh(CControl const& control) override {
        m_rows->setEnabled(control.enabled);
        m_outer->setVisible(control.visible);
        m_model.Show(control);
        m_rows->ShowSelection(control);
        if (control.kind != ControlKind::List && (control.columns != m_sizedFor || !m_sized)) {
            for (int column = 0; column < m_model.columnCount(); ++column) m_rows->resizeColumnToContents(column);
            m_sizedFor = control.columns;
            m_sized = m_model.rowCount() > 0;
        }
    }

    QPoint RowPoint(int row, int column) const override {
        QModelIndex const index = m_model.index(std::max(row, 0), std::max(column, 0));
        m_rows->scrollTo(index);
        return m_rows->visualRect(index).center();
    }

private:
    QWidget* m_outer;
    CRowsModel m_model;
    CRowsWidget* m_rows;
    std::vector<std::string> m_sizedFor;  ///< titles
    bool m_sized = false;
};

}  // namespace

std::unique_ptr<CControlView> MakeListView(TemplateNode const& node, CMnemonics& mnemonics, EventSink sink) {
    return std::make_unique<CListView>(node, mnemonics, std::move(sink));
}

}  // namespace norva
