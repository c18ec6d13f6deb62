#include "store_panel.h"

#include "position_choice.h"

#include <QCheckBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QScrollArea>
#include <QSplitter>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <numeric>

namespace norva {

namespace {

QWidget* WithTitle(QString const& title, QWidget* content) {
    auto* const panel = new QWidget;
    auto* const layout = new QVBoxLayout(panel);
    layout->setContentsMargins(4, 4, 4, 4);
    auto* const label = new QLabel(title);
    label->setBuddy(content);
    layout->addWidget(label);
    layout->addWidget(content, 1);
    return panel;
}

QString TextOf(LineEntry const& entry) {
    QString text = CStorePanel::tr("%1  (%2)").arg(entry.name).arg(entry.locations);
    if (entry.deleted > 0) text += CStorePanel::tr(", %1 deleted").arg(entry.deleted);
    return text;
}

}  // namespace

CStorePanel::CStorePanel(CStoreDocument& document)
    : m_document(document),
      m_filter(new QLineEdit),
      m_lines(new QListWidget),
      m_channels(new QTreeWidget),
      m_statistics(new QLabel),
      m_allLines(new QCheckBox(tr("Of all lines"))),
      m_splitter(new QSplitter(Qt::Vertical)) {
    m_filter->setPlaceholderText(tr("Filter lines and channels"));
    m_filter->setAccessibleName(tr("Filter lines and channels"));
    m_filter->setClearButtonEnabled(true);
    m_lines->setAccessibleName(tr("Lines"));
    m_lines->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_lines->setContextMenuPolicy(Qt::ActionsContextMenu);
    m_lines->setUniformItemSizes(true);
    m_channels->setHeaderLabels({tr("Channel"), tr("Units"), tr("Type")});
    m_channels->setRootIsDecorated(false);
    m_channels->setUniformRowHeights(true);
    m_channels->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_channels->setAccessibleName(tr("Channels"));
    m_statistics->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_statistics->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_statistics->setTextFormat(Qt::PlainText);
    m_statistics->setWordWrap(true);
    // Rows of all lists and tables are as high as each other.
    int const rowHeight = fontMetrics().height() + 6;
    m_lines->setStyleSheet(QString("QListView::item { height: %1px; }").arg(rowHeight));
    m_channels->setStyleSheet(QString("QTreeView::item { height: %1px; }").arg(rowHeight));

    auto* const statistics = new QScrollArea;
    statistics->setWidget(m_statistics);
    statistics->setWidgetResizable(true);
    statistics->setFrameShape(QFrame::NoFrame);
    statistics->setMinimumHeight(6 * fontMetrics().height());
    auto* const statisticsPanel = WithTitle(tr("Statistics"), statistics);
    statisticsPanel->layout()->addWidget(m_allLines);
    m_splitter->addWidget(WithTitle(tr("&Lines"), m_lines));
    m_splitter->addWidget(WithTitle(tr("&Channels"), m_channels));
    m_splitter->addWidget(statisticsPanel);
    m_splitter->setStretchFactor(0, 2);
    m_splitter->setStretchFactor(1, 3);
    m_splitter->setStretchFactor(2, 2);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 0, 0);
    layout->addWidget(m_filter);
    layout->addWidget(m_splitter, 1);

    connect(m_allLines, &QCheckBox::toggled, this, &CStorePanel::ShowStatistics);
    connect(m_lines, &QListWidget::itemSelectionChanged, this, [this] {
        ShowStatistics();
        emit LinesChosen();
    });
    connect(m_lines, &QListWidget::currentRowChanged, this, [this] {
        ShowStatistics();
        emit LinesChosen();
    });
    connect(m_channels, &QTreeWidget::itemSelectionChanged, this, [this] {
        ShowStatistics();
        emit ChannelsChosen();
    });
    connect(m_filter, &QLineEdit::textChanged, this, &CStorePanel::Filter);
}

void CStorePanel::ShowDocument(bool keeps) {
    int const line = keeps ? Line() : -1;
    std::vector<int> const lines = keeps ? Lines() : std::vector<int>();
    std::vector<int> const channels = keeps ? Channels() : std::vector<int>();
    QSignalBlocker const quietLines(m_lines);
    QSignalBlocker const quietChannels(m_channels);
    m_lines->clear();
    for (LineEntry const& entry : m_document.Lines()) {
        auto* const item = new QListWidgetItem(TextOf(entry), m_lines);
        if (entry.flag == 0) continue;
        item->setForeground(palette().color(QPalette::Disabled, QPalette::Text));
        item->setToolTip(tr("Hidden: not exported, not on the map"));
    }
    m_channels->clear();
    for (ChannelEntry const& entry : m_document.Channels()) {
        auto* const item = new QTreeWidgetItem(m_channels, {entry.name, entry.units, entry.type});
        item->setData(0, Qt::UserRole, entry.index);
    }
    for (int column = 0; column < 3; ++column) m_channels->resizeColumnToContents(column);
    if (!channels.empty()) {
        ChooseChannels(channels);
    } else {
        ChooseChannels({ChooseReading(m_document.Channels())});
    }
    int const count = static_cast<int>(m_document.Lines().size());
    if (count > 0) {
        m_lines->setCurrentRow(std::clamp(line, 0, count - 1));
        for (int const other : lines) {
            if (other < count) m_lines->item(other)->setSelected(true);
        }
    }
    Filter(m_filter->text());
    ShowStatistics();
}

int CStorePanel::Line() const {
    int const current = m_lines->currentRow();
    if (current < 0 || m_lines->item(current)->isSelected()) return current;
    // The current one may have been taken out of the choice.
    for (int row = 0; row < m_lines->count(); ++row) {
        if (m_lines->item(row)->isSelected()) return row;
    }
    return current;
}

std::vector<int> CStorePanel::Lines() const {
    std::vector<int> lines;
    int const first = Line();
    if (first >= 0) lines.push_back(first);
    for (int row = 0; row < m_lines->count(); ++row) {
        if (row != first && m_lines->item(row)->isSelected()) lines.push_back(row);
    }
    return lines;
}

std::vector<int> CStorePanel::Channels() const {
    std::vector<int> channels;
    for (int row = 0; row < m_channels->topLevelItemCount(); ++row) {
        QTreeWidgetItem const* const item = m_channels->topLevelItem(row);
        if (!item->isSelected()) continue;
        int const index = item->data(0, Qt::UserRole).toInt();
        ChannelEntry const* const entry = m_document.FindChannel(index);
        if (entry != nullptr && entry->isNumber) channels.push_back(index);
    }
    return channels;
}

void CStorePanel::ChooseLine(int line) {
    QListWidgetItem const* const item = m_lines->item(line);
    if (item == nullptr || line == Line()) return;
    bool const isOneOfMany = item->isSelected() && m_lines->selectedItems().size() > 1;
    m_lines->setCurrentRow(line, isOneOfMany ? QItemSelectionModel::NoUpdate : QItemSelectionModel::ClearAndSelect);
}

void CStorePanel::ChooseChannels(std::vector<int> const& channels) {
    bool const wasBlocked = m_channels->blockSignals(true);
    m_channels->clearSelection();
    QTreeWidgetItem* first = nullptr;
    for (int row = 0; row < m_channels->topLevelItemCount(); ++row) {
        QTreeWidgetItem* const item = m_channels->topLevelItem(row);
        int const index = item->data(0, Qt::UserRole).toInt();
        if (std::find(channels.begin(), channels.end(), index) == channels.end()) continue;
        item->setSelected(true);
        if (first == nullptr) first = item;
    }
    if (first != nullptr) m_channels->setCurrentItem(first, 0, QItemSelectionModel::NoUpdate);
    m_channels->blockSignals(wasBlocked);
    if (wasBlocked) return;
    ShowStatistics();
    emit ChannelsChosen();
}

void CStorePanel::Filter(QString const& text) {
    // A text that is in no name of one list says nothing about it: all of it stays.
    auto const matches = [&text](QString const& name) { return name.contains(text, Qt::CaseInsensitive); };
    bool anyLine = false;
    bool anyChannel = false;
    for (LineEntry const& entry : m_document.Lines()) anyLine = anyLine || matches(entry.name);
    for (ChannelEntry const& entry : m_document.Channels()) anyChannel = anyChannel || matches(entry.name);
    for (int row = 0; row < m_lines->count(); ++row) {
        QListWidgetItem* const item = m_lines->item(row);
        bool const stays = !anyLine || item->isSelected() || row == m_lines->currentRow() ||
                           matches(m_document.Lines()[static_cast<std::size_t>(row)].name);
        item->setHidden(!stays);
    }
    for (int row = 0; row < m_channels->topLevelItemCount(); ++row) {
        QTreeWidgetItem* const item = m_channels->topLevelItem(row);
        item->setHidden(anyChannel && !item->isSelected() && !matches(item->text(0)));
    }
}

void CStorePanel::ShowStatistics() {
    std::vector<int> const channels = Channels();
    std::vector<int> lines = Lines();
    if (lines.empty() || channels.empty()) {
        m_statistics->clear();
        return;
    }
    if (m_allLines->isChecked()) {
        lines.resize(m_document.Lines().size());
        std::iota(lines.begin(), lines.end(), 0);
    }
    QString text;
    for (int const channel : channels) {
        text += m_document.FindChannel(channel)->fullName + "\n";
        ColumnStatistics const values = m_document.Statistics(channel, lines);
        text += values.count == 1 ? tr("1 value") : tr("%1 values").arg(values.count);
        text += tr(", %1 no-data, %2 deleted\n").arg(values.noData).arg(values.deleted);
        if (values.count > values.noData + values.deleted) {
            text += tr("minimum %1\nmaximum %2\nmean %3\nstandard deviation %4\n")
                        .arg(values.minimum, 0, 'g', 10)
                        .arg(values.maximum, 0, 'g', 10)
                        .arg(values.mean, 0, 'g', 10)
                        .arg(values.deviation, 0, 'g', 6);
        }
        text += "\n";
    }
    m_statistics->setText(text.trimmed());
}

}  // namespace norva
