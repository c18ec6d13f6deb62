#include "quality_page.h"

#include "file_choice.h"
#include "position_choice.h"
#include "profile_axis.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QSaveFile>
#include <QSortFilterProxyModel>
#include <QTableView>
#include <QTimer>
#include <QVBoxLayout>

namespace norva {

namespace {

constexpr int kDecimalsOfSpecial = 6;

enum Column {
    kLine,
    kChannel,
    kCount,
    kNoData,
    kDeleted,
    kMinimum,
    kMaximum,
    kMean,
    kDeviation,
    kSpikes,
    kGaps,
    kDuplicates,
    kReversals,
    kColumns
};

}  // namespace

void CQualityModel::SetRows(std::vector<QualityRow> rows) {
    beginResetModel();
    m_rows = std::move(rows);
    endResetModel();
}

int CQualityModel::rowCount(QModelIndex const& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int CQualityModel::columnCount(QModelIndex const& parent) const {
    return parent.isValid() ? 0 : kColumns;
}

QVariant CQualityModel::data(QModelIndex const& index, int role) const {
    QualityRow const& row = Row(index.row());
    if (role == Qt::TextAlignmentRole) {
        return static_cast<int>(Qt::AlignVCenter | (index.column() <= kChannel ? Qt::AlignLeft : Qt::AlignRight));
    }
    if (role != Qt::DisplayRole && role != Qt::UserRole) return {};
    ChannelEntry const* const channel = m_document.FindChannel(row.channel);
    bool const hasValues = row.count > row.noData + row.deleted;
    auto const number = [&](long value) { return value < 0 ? QVariant() : QVariant(static_cast<qlonglong>(value)); };
    // For sorting numbers are numbers; what is read has the channel's decimals.
    auto const real = [&](double value, int more) -> QVariant {
        if (!hasValues || channel == nullptr) return {};
        if (role == Qt::UserRole) return value;
        if (channel->displayFormat == DisplayFormat::kTime) return ClockText(value, 1 + more);
        bool const isSpecial = channel->displayFormat >= DisplayFormat::kDate;  // decimal years and degrees
        return QString::number(value, 'f', isSpecial ? kDecimalsOfSpecial : channel->decimals + more);
    };
    switch (index.column()) {
        case kLine:
            if (role == Qt::UserRole) return row.line;
            return m_document.Lines()[static_cast<std::size_t>(row.line)].name;
        case kChannel:
            return channel == nullptr ? QString() : channel->fullName;
        case kCount:
            return number(row.count);
        case kNoData:
            return number(row.noData);
        case kDeleted:
            return number(row.deleted);
        case kMinimum:
            return real(row.minimum, 0);
        case kMaximum:
            return real(row.maximum, 0);
        case kMean:
            return real(row.mean, 1);
        case kDeviation:
            return real(row.deviation, 1);
        case kSpikes:
            return number(row.spikes);
        case kGaps:
            return number(row.gaps);
        case kDuplicates:
            return number(row.duplicates);
        default:
            return number(row.reversals);
    }
}

QVariant CQualityModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal) return {};
    struct Title {
        QString name;
        QString meaning;
    };
    static Title const titles[] = {
        {tr("Line"), {}},
        {tr("Channel"), {}},
        {tr("Count"), tr("Locations")},
        {tr("No-data"), {}},
        {tr("Deleted"), tr("Locations marked as deleted")},
        {tr("Minimum"), {}},
        {tr("Maximum"), {}},
        {tr("Mean"), {}},
        {tr("Deviation"), tr("Standard deviation")},
        {tr("Spikes"), tr("Values ten times farther from their neighbours' median than is usual")},
        {tr("Gaps"), tr("Stretches of no-data between values")},
        {tr("Duplicates"), tr("The same position, or time, as at the location before")},
        {tr("Reversals"), tr("Times earlier than at the location before")}};
    Title const& title = titles[section];
    if (role == Qt::DisplayRole) return title.name;
    return role == Qt::ToolTipRole && !title.meaning.isEmpty() ? QVariant(title.meaning) : QVariant();
}

CQualityPage::CQualityPage(CStoreDocument& document)
    : m_document(document),
      m_model(document),
      m_sorted(new QSortFilterProxyModel(this)),
      m_view(new QTableView),
      m_state(new QLabel),
      m_bar(new QProgressBar),
      m_start(new QPushButton),
      m_export(new QPushButton(tr("&Save as text..."))) {
    m_sorted->setSourceModel(&m_model);
    m_sorted->setSortRole(Qt::UserRole);
    m_view->setModel(m_sorted);
    m_view->setSortingEnabled(true);
    m_sorted->sort(-1);
    m_view->horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
    m_view->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_view->setSelectionMode(QAbstractItemView::SingleSelection);
    m_view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_view->verticalHeader()->hide();
    m_view->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    m_view->setAccessibleName(tr("Quality of lines and channels"));
    m_bar->setRange(0, 100);
    auto* const row = new QHBoxLayout;
    row->addWidget(m_state, 1);
    row->addWidget(m_bar);
    row->addWidget(m_start);
    row->addWidget(m_export);
    auto* const layout = new QVBoxLayout(this);
    layout->addLayout(row);
    layout->addWidget(m_view, 1);
    auto* const timer = new QTimer(this);
    connect(timer, &QTimer::timeout, this, [this] { m_bar->setValue(m_percent); });
    timer->start(100);
    connect(m_start, &QPushButton::clicked, this, [this] {
        if (m_isRunning) {
            Stop();
        } else {
            Start();
        }
    });
    connect(m_export, &QPushButton::clicked, this, &CQualityPage::Export);
    auto const choose = [this](QModelIndex const& index) {
        QualityRow const& one = m_model.Row(m_sorted->mapToSource(index).row());
        emit PlaceChosen(one.line, one.channel, one.place);
    };
    connect(m_view, &QTableView::clicked, this, choose);
    connect(m_view, &QTableView::activated, this, choose);
    ShowDocument();
}

CQualityPage::~CQualityPage() {
    m_stop = true;
    if (m_thread.joinable()) m_thread.join();
}

void CQualityPage::ShowDocument() {
    Stop();
    m_isOld = true;
    m_model.SetRows({});
    m_state->clear();
    if (isVisible()) Start();
}

void CQualityPage::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (m_isOld && !m_isRunning) Start();
}

void CQualityPage::Start() {
    Stop();
    if (!m_document.IsOpen()) return;
    PositionChoice const positions = ChoosePositions(m_document.Channels());
    m_stop = false;
    m_percent = 0;
    m_isRunning = true;
    m_isOld = false;
    m_bar->show();
    m_start->setText(tr("Cancel"));
    m_export->setEnabled(false);
    m_state->setText(tr("Looking at all values..."));
    m_thread = std::thread([this, run = m_run, path = m_document.Path(), changes = m_document.Changes(), positions] {
        auto const progress = [this](double part) {
            m_percent = static_cast<int>(part * 100);
            return !m_stop;
        };
        auto const rows = std::make_shared<std::vector<QualityRow>>(
            LookAtQuality(path, changes, {positions.x, positions.y}, progress));
        QMetaObject::invokeMethod(
            this, [this, rows, run] { Take(std::move(*rows), run); }, Qt::QueuedConnection);
    });
}

void CQualityPage::Stop() {
    m_stop = true;
    if (m_thread.joinable()) m_thread.join();
    ++m_run;  // what it still delivers is of no use
    if (m_isRunning) m_state->setText(tr("Stopped"));
    m_isRunning = false;
    m_bar->hide();
    m_start->setText(tr("Look again"));
    m_export->setEnabled(m_model.rowCount() > 0);
}

void CQualityPage::Take(std::vector<QualityRow> rows, unsigned run) {
    if (run != m_run) return;
    m_thread.join();
    m_isRunning = false;
    m_bar->hide();
    m_start->setText(tr("Look again"));
    long odd = 0;
    for (QualityRow const& row : rows)
        odd += row.spikes + row.gaps + std::max(0L, row.duplicates) + std::max(0L, row.reversals);
    m_state->setText(odd == 0 ? tr("Nothing odd was found")
                              : tr("%1 odd places; a click goes to the first of a row").arg(odd));
    m_model.SetRows(std::move(rows));
    m_view->resizeColumnsToContents();
    m_export->setEnabled(m_model.rowCount() > 0);
}

void CQualityPage::WaitUntilDone() {
    if (m_isOld) Start();
    while (m_isRunning) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

QString CQualityPage::Text(QChar separator) const {
    QString text;
    auto const add = [&](QString cell, int column) {
        bool const needsQuotes = cell.contains(separator) || cell.contains('"') || cell.contains('\n');
        if (needsQuotes) cell = '"' + cell.replace("\"", "\"\"") + '"';
        text += (column > 0 ? QString(separator) : QString()) + cell;
    };
    for (int column = 0; column < kColumns; ++column) {
        add(m_model.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString(), column);
    }
    text += '\n';
    for (int row = 0; row < m_sorted->rowCount(); ++row) {
        for (int column = 0; column < kColumns; ++column) add(m_sorted->index(row, column).data().toString(), column);
        text += '\n';
    }
    return text;
}

void CQualityPage::Export() {
    QString const path =
        AskFileToSave(this, tr("Save the quality table"), tr("Comma-separated (*.csv);;Tab-separated (*.txt)"),
                      QFileInfo(m_document.Path()).completeBaseName() + "-quality.csv");
    if (path.isEmpty()) return;
    bool const isCommas = QFileInfo(path).suffix().compare("csv", Qt::CaseInsensitive) == 0;
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(Text(isCommas ? ',' : '\t').toUtf8()) >= 0 && file.commit()) {
        emit Said(tr("Quality table written to %1").arg(path));
        return;
    }
    QMessageBox box(QMessageBox::Warning, tr("Quality"),
                    tr("The table could not be written:\n%1\n%2").arg(path, file.errorString()), QMessageBox::Ok, this);
    box.setTextFormat(Qt::PlainText);
    box.exec();
}

}  // namespace norva
