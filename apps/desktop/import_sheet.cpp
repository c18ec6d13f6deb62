#include "import_sheet.h"

#include "control_views.h"
#include "file_choice.h"
#include "norva/formats.h"
#include "proposal_view.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QSignalBlocker>
#include <QStackedWidget>
#include <QTimer>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace norva {

namespace {

constexpr int kEveryFormat = 1;  ///< level of the format list that has every format once

enum Column { kFile, kFormat, kContents, kStore, kState };

}  // namespace

CImportSheet::CImportSheet(QStringList const& paths, QWidget* parent)
    : QDialog(parent),
      m_files(new QTreeWidget),
      m_readAs(new QComboBox),
      m_why(new QLabel),
      m_store(new QLineEdit),
      m_replace(new QCheckBox(tr("&Replace the store of this name"))),
      m_pages(new QStackedWidget),
      m_proposal(new CProposalView),
      m_message(new QLabel),
      m_bar(new QProgressBar),
      m_progressText(new QLabel) {
    setAcceptDrops(true);
    m_files->setHeaderLabels({tr("File"), tr("Format"), tr("Contents"), tr("Store"), tr("State")});
    m_files->setRootIsDecorated(false);
    m_files->setUniformRowHeights(true);
    m_files->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_files->setAccessibleName(tr("Files"));
    for (ImportFormatInfo const& format : ListImportFormats(kEveryFormat)) m_readAs->addItem(ToQString(format.label));
    for (QLabel* const label : {m_why, m_message, m_progressText}) label->setTextFormat(Qt::PlainText);
    m_why->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_message->setAlignment(Qt::AlignCenter);
    m_message->setWordWrap(true);
    m_pages->addWidget(m_message);
    m_pages->addWidget(m_proposal);

    auto* const how = new QHBoxLayout;
    auto const add = [how](QString const& text, QWidget* widget, int stretch) {
        auto* const label = new QLabel(text);
        label->setBuddy(widget);
        how->addWidget(label);
        how->addWidget(widget, stretch);
    };
    add(tr("Read &as:"), m_readAs, 0);
    how->addWidget(m_why, 1);
    auto* const where = new QHBoxLayout;
    auto* const storeLabel = new QLabel(tr("&Store:"));
    storeLabel->setBuddy(m_store);
    auto* const choose = new QPushButton(tr("..."));
    choose->setMaximumWidth(6 * fontMetrics().averageCharWidth());
    choose->setAccessibleName(tr("Choose the store"));
    where->addWidget(storeLabel);
    where->addWidget(m_store, 1);
    where->addWidget(choose);
    where->addWidget(m_replace);

    auto* const more = new QPushButton(tr("A&dd..."));
    m_hand = new QPushButton(tr("By &hand..."));
    m_hand->setToolTip(tr("Import this file through the windows of its format"));
    m_import = new QPushButton(tr("&Import"));
    m_cancel = new QPushButton(tr("Close"));
    for (QPushButton* const button : {choose, more, m_hand, m_cancel}) button->setAutoDefault(false);
    m_import->setDefault(true);
    auto* const buttons = new QHBoxLayout;
    buttons->addWidget(more);
    buttons->addWidget(m_hand);
    buttons->addWidget(m_bar, 2);
    buttons->addWidget(m_progressText, 2);
    buttons->addStretch(1);
    buttons->addWidget(m_import);
    buttons->addWidget(m_cancel);

    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(m_files, 1);
    layout->addLayout(how);
    layout->addLayout(where);
    layout->addWidget(m_pages, 4);
    layout->addLayout(buttons);
    QSize const room = screen()->availableSize();
    resize(std::min(1080, room.width() * 9 / 10), std::min(700, room.height() * 9 / 10));

    connect(m_files, &QTreeWidget::currentItemChanged, this, &CImportSheet::ShowCurrent);
    connect(m_files, &QTreeWidget::itemActivated, this, &CImportSheet::OpenRow);
    connect(m_readAs, &QComboBox::activated, this, &CImportSheet::ReadAs);
    connect(m_store, &QLineEdit::textEdited, this, &CImportSheet::ChangeStore);
    connect(choose, &QPushButton::clicked, this, &CImportSheet::ChooseStore);
    connect(m_replace, &QCheckBox::clicked, this, [this](bool isOn) {
        if (ImportItem* const item = Current()) item->replaces = isOn;
        if (ImportItem* const item = Current()) ShowRow(*item);
        ShowButtons();
    });
    connect(m_proposal, &CProposalView::LookWished, this, [this] {
        if (ImportItem* const item = Current()) LookAt(*item);
    });
    connect(more, &QPushButton::clicked, this,
            [this] { Add(QFileDialog::getOpenFileNames(this, tr("Add files"), LastFolder(), tr("All files (*)"))); });
    connect(m_hand, &QPushButton::clicked, this, &CImportSheet::TakeByHand);
    connect(m_import, &QPushButton::clicked, this, &CImportSheet::Import);
    connect(m_cancel, &QPushButton::clicked, this, &CImportSheet::reject);
    auto* const timer = new QTimer(this);
    connect(timer, &QTimer::timeout, this, &CImportSheet::ShowProgress);
    timer->start(50);
    Add(paths);
    ShowProgress();
}

void CImportSheet::Start(std::function<void()> work, std::function<void()> then) {
    m_background.Start(std::move(work), [this, then = std::move(then)] {
        then();
        ShowButtons();
    });
}

void CImportSheet::Add(QStringList const& paths) {
    for (QString const& path : paths) {
        QFileInfo const info(path);
        if (!info.isDir()) {
            AddFile(info.absoluteFilePath());
            continue;
        }
        // What a folder holds beside surveys was not asked for.
        for (QFileInfo const& file : QDir(path).entryInfoList(QDir::Files, QDir::Name)) {
            bool const isStore = file.suffix().compare("nvt", Qt::CaseInsensitive) == 0;
            if (!isStore && ImportItem(file.absoluteFilePath()).state != ImportItem::State::Refused) {
                AddFile(file.absoluteFilePath());
            }
        }
    }
    if (!paths.isEmpty()) RememberFolderOf(paths.front());
    if (m_files->currentItem() == nullptr) m_files->setCurrentItem(m_files->topLevelItem(0));
    for (int i = 0; i < m_files->columnCount(); ++i) m_files->resizeColumnToContents(i);
    auto const count = m_items.size();
    setWindowTitle(count == 1 ? tr("Import %1").arg(QFileInfo(m_items.front().path).fileName())
                              : tr("Import %1 files").arg(count));
    ShowButtons();
}

void CImportSheet::AddFile(QString const& path) {
    auto const isSame = [&path](ImportItem const& item) { return item.path == path; };
    if (std::ranges::any_of(m_items, isSame)) return;
    ImportItem& item = m_items.emplace_back(path);
    // Two files of one stem do not share a store.
    auto const isTaken = [&item](ImportItem const& other) { return &other != &item && other.store == item.store; };
    if (std::ranges::any_of(m_items, isTaken)) item.store = item.path + ".nvt";
    m_files->addTopLevelItem(new QTreeWidgetItem);
    ShowRow(item);
    if (item.state == ImportItem::State::Reading) LookAt(item);
}

ImportItem* CImportSheet::Current() {
    int const row = m_files->indexOfTopLevelItem(m_files->currentItem());
    return row < 0 ? nullptr : &*std::next(m_items.begin(), row);
}

QTreeWidgetItem* CImportSheet::RowOf(ImportItem const& item) {
    int row = 0;
    for (ImportItem const& one : m_items) {
        if (&one == &item) return m_files->topLevelItem(row);
        ++row;
    }
    return nullptr;
}

std::vector<ImportItem const*> CImportSheet::Imported() const {
    std::vector<ImportItem const*> imported;
    for (ImportItem const& item : m_items) {
        if (item.state == ImportItem::State::Done) imported.push_back(&item);
    }
    return imported;
}

void CImportSheet::ShowRow(ImportItem const& item) {
    QTreeWidgetItem& row = *RowOf(item);
    row.setText(kFile, QFileInfo(item.path).fileName());
    row.setToolTip(kFile, item.path);
    row.setText(kFormat, item.format.empty() ? tr("none that is known") : ToQString(item.format));
    row.setToolTip(kFormat, item.why);
    row.setText(kContents, item.Contents());
    row.setText(kStore, QFileInfo(item.store).fileName());
    row.setToolTip(kStore, item.store);
    row.setText(kState, item.StateText().section('\n', 0, 0));
    row.setToolTip(kState, item.StateText());
    bool const isBad = item.state == ImportItem::State::Failed || item.state == ImportItem::State::Refused;
    bool const isLossy = item.state == ImportItem::State::Done && item.result.report.LossCount() > 0;
    row.setForeground(kState, isBad || isLossy ? QBrush(QColor(0xc0, 0x30, 0x30)) : QBrush());
}

void CImportSheet::ShowCurrent() {
    ImportItem* const item = Current();
    bool const isOpen = item != nullptr && !m_isImporting;
    for (QWidget* const widget : std::initializer_list<QWidget*>{m_readAs, m_store}) widget->setEnabled(isOpen);
    m_proposal->setEnabled(isOpen);  // while the file is read again, too: the keyboard stays where it is
    if (item == nullptr) {
        m_proposal->Show(nullptr);
        m_pages->setCurrentWidget(m_message);
        ShowButtons();
        return;
    }
    m_readAs->setCurrentText(ToQString(item->format));
    if (item->format.empty()) m_readAs->setCurrentIndex(-1);
    m_why->setText(item->why);
    m_why->setToolTip(item->why);
    if (m_store->text() != item->store) m_store->setText(item->store);
    m_replace->setChecked(item->replaces);
    bool const isShown = item->HasColumns();
    m_proposal->Show(isShown ? item : nullptr);
    m_message->setText(isShown ? QString() : item->StateText());
    m_pages->setCurrentWidget(isShown ? static_cast<QWidget*>(m_proposal) : m_message);
    ShowButtons();
}

void CImportSheet::ShowButtons() {
    ImportItem* const item = Current();
    m_replace->setVisible(item != nullptr && item->WouldReplace() && item->state != ImportItem::State::Done);
    m_replace->setEnabled(!m_isImporting);
    m_hand->setEnabled(item != nullptr && !m_isImporting && !item->format.empty());
    auto const canRun = [](ImportItem const& one) {
        return one.state == ImportItem::State::Ready && (one.replaces || !one.WouldReplace());
    };
    m_import->setEnabled(!m_isImporting && !IsBusy() && std::ranges::any_of(m_items, canRun));
    m_cancel->setText(m_isImporting ? tr("Cancel") : tr("Close"));
}

void CImportSheet::ShowProgress() {
    m_bar->setVisible(m_isImporting);
    m_progressText->setVisible(m_isImporting);
    if (!m_isImporting) return;
    m_bar->setValue(m_background.Percent());
    m_progressText->setText(m_background.IsCancelled() ? tr("Stopping...") : m_background.Step());
}

void CImportSheet::ReadAs(int index) {
    ImportItem* const item = Current();
    if (item == nullptr) return;
    item->ReadAs(m_readAs->itemText(index).toStdString());
    if (item->state == ImportItem::State::Reading) LookAt(*item);
    ShowRow(*item);
    ShowCurrent();
}

void CImportSheet::ChangeStore(QString const& path) {
    ImportItem* const item = Current();
    if (item == nullptr) return;
    item->store = path;
    item->replaces = false;
    ShowRow(*item);
    m_replace->setChecked(false);
    ShowButtons();
}

void CImportSheet::ChooseStore() {
    ImportItem* const item = Current();
    if (item == nullptr) return;
    QString const path = AskFileToSave(this, tr("Store"), tr("Stores (*.nvt)"), item->store);
    if (path.isEmpty()) return;
    ChangeStore(path);
    item->replaces = item->WouldReplace();  // the file dialog has asked
    ShowRow(*item);
    ShowCurrent();
}

void CImportSheet::LookAt(ImportItem& item) {
    item.state = ImportItem::State::Reading;
    ShowRow(item);
    auto const look = std::make_shared<ImportItem::Look>();
    Start([look, path = item.path.toStdString(), format = item.format,
           told = item.told] { *look = ImportItem::LookAt(path, format, told); },
          [this, look, &item] {
              item.Take(std::move(*look));
              ShowRow(item);
              for (int i = kFormat; i <= kStore; ++i) m_files->resizeColumnToContents(i);
              if (Current() == &item) ShowCurrent();
          });
    if (Current() == &item) ShowCurrent();
}

void CImportSheet::Import() {
    for (ImportItem& item : m_items) {
        if (item.state != ImportItem::State::Ready || (item.WouldReplace() && !item.replaces)) continue;
        item.state = ImportItem::State::Waiting;
        ShowRow(item);
    }
    m_background.Resume();
    m_isImporting = true;
    ShowCurrent();
    RunNext();
}

void CImportSheet::RunNext() {
    auto const next = std::ranges::find(m_items, ImportItem::State::Waiting, &ImportItem::state);
    if (next == m_items.end() || m_background.IsCancelled()) {
        AllFinished();
        return;
    }
    ImportItem& item = *next;
    item.state = ImportItem::State::Running;
    ShowRow(item);
    struct Outcome {
        Status status;
        ImportResult result;
    };
    auto const outcome = std::make_shared<Outcome>();
    ImportRequest request = item.Request();
    request.progress = m_background.Progress();
    Start([outcome, request] { outcome->status = ImportItem::Run(request, outcome->result); },
          [this, outcome, &item] { Finished(item, outcome->status, std::move(outcome->result)); });
}

void CImportSheet::Finished(ImportItem& item, Status const& status, ImportResult result) {
    item.result = std::move(result);
    item.state = status                 ? ImportItem::State::Done
                 : status.IsCancelled() ? ImportItem::State::Stopped
                                        : ImportItem::State::Failed;
    if (!status) item.message = ToQString(status.Text());
    ShowRow(item);
    RunNext();
}

void CImportSheet::AllFinished() {
    m_isImporting = false;
    for (ImportItem& item : m_items) {
        if (item.state != ImportItem::State::Waiting) continue;
        item.state = ImportItem::State::Ready;
        ShowRow(item);
    }
    bool const isAll =
        std::ranges::all_of(m_items, [](ImportItem const& item) { return item.state == ImportItem::State::Done; });
    // One file: its store and its report are what comes next. Of several, each row tells how it went.
    if (isAll && m_items.size() == 1) {
        accept();
        return;
    }
    for (ImportItem& item : m_items) {
        if (item.state == ImportItem::State::Stopped) item.state = ImportItem::State::Ready;
    }
    ShowCurrent();
    ShowProgress();
}

void CImportSheet::TakeByHand() {
    if (ImportItem const* const item = Current()) m_byHand = item->path;
    accept();
}

void CImportSheet::OpenRow() {
    ImportItem const* const item = Current();
    if (item != nullptr && item->state == ImportItem::State::Done) emit ReportWished(item->result.report);
}

void CImportSheet::reject() {
    if (m_isImporting) {
        m_background.Cancel();
        ShowProgress();
        return;
    }
    QDialog::reject();
}

void CImportSheet::dragEnterEvent(QDragEnterEvent* event) {
    if (event->mimeData()->hasUrls() && !m_isImporting) event->acceptProposedAction();
}

void CImportSheet::dropEvent(QDropEvent* event) {
    QStringList paths;
    for (QUrl const& url : event->mimeData()->urls()) {
        if (url.isLocalFile()) paths.push_back(url.toLocalFile());
    }
    event->acceptProposedAction();
    Add(paths);
}

}  // namespace norva
