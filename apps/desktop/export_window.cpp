#include "export_window.h"

#include "control_views.h"
#include "file_choice.h"
#include "norva/formats.h"
#include "store_document.h"

#include <QCheckBox>
#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QSettings>
#include <QTimer>
#include <QVBoxLayout>

namespace norva {

namespace {

char const* const kExtensionKey = "export/extension";
char const* const kFullDigitsKey = "export/fullDigits";

QString Filters() {
    QStringList filters;
    for (ExportFormatInfo const& format : ListExportFormats()) {
        for (std::string const& extension : format.extensions) {
            filters.push_back(QString("%1 (*.%2)").arg(ToQString(format.label), ToQString(extension)));
        }
    }
    return filters.join(";;");
}

/// A list with a box before every name and buttons for all and none of them.
QListWidget* AddList(QBoxLayout& row, QString const& title) {
    auto* const list = new QListWidget;
    auto* const label = new QLabel(title);
    label->setBuddy(list);
    list->setAccessibleName(title);
    list->setUniformItemSizes(true);
    auto* const column = new QVBoxLayout;
    auto* const buttons = new QHBoxLayout;
    column->addWidget(label);
    column->addWidget(list, 1);
    column->addLayout(buttons);
    for (auto const& [text, state] :
         {std::pair(CExportWindow::tr("All"), Qt::Checked), std::pair(CExportWindow::tr("None"), Qt::Unchecked)}) {
        auto* const button = new QPushButton(text);
        button->setAutoDefault(false);
        QObject::connect(button, &QPushButton::clicked, list, [list, state = state] {
            for (int i = 0; i < list->count(); ++i) list->item(i)->setCheckState(state);
        });
        buttons->addWidget(button);
    }
    row.addLayout(column, 1);
    return list;
}

void AddEntry(QListWidget& list, QString const& text, int number) {
    auto* const item = new QListWidgetItem(text, &list);
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
    item->setCheckState(Qt::Checked);
    item->setData(Qt::UserRole, number);
}

}  // namespace

CExportWindow::CExportWindow(CStoreDocument const& document, QWidget* parent)
    : QDialog(parent),
      m_document(document),
      m_file(new QLineEdit),
      m_replace(new QCheckBox(tr("&Replace the file of this name"))),
      m_fullDigits(new QCheckBox(tr("Every &digit that a number needs"))),
      m_units(new QCheckBox(tr("&Units in the titles"))),
      m_label(new QCheckBox(tr("The line's &name in a column"))),
      m_pointId(new QCheckBox(tr("A &point number in a column"))),
      m_message(new QLabel),
      m_bar(new QProgressBar),
      m_export(new QPushButton(tr("&Export"))),
      m_cancel(new QPushButton(tr("Cancel"))) {
    QFileInfo const store(document.Path());
    setWindowTitle(tr("Export %1").arg(store.fileName()));
    QSettings const settings;
    QString const extension = settings.value(kExtensionKey, "xyz").toString();
    m_file->setText(store.dir().filePath(store.completeBaseName() + '.' + extension));
    m_fullDigits->setChecked(settings.value(kFullDigitsKey, false).toBool());
    m_units->setChecked(true);
    m_message->setTextFormat(Qt::PlainText);
    m_message->setWordWrap(true);

    auto* const where = new QHBoxLayout;
    auto* const fileLabel = new QLabel(tr("&File:"));
    fileLabel->setBuddy(m_file);
    auto* const choose = new QPushButton(tr("..."));
    choose->setAccessibleName(tr("Choose the file"));
    choose->setMaximumWidth(6 * fontMetrics().averageCharWidth());
    where->addWidget(fileLabel);
    where->addWidget(m_file, 1);
    where->addWidget(choose);
    auto* const lists = new QHBoxLayout;
    m_lines = AddList(*lists, tr("&Lines"));
    m_channels = AddList(*lists, tr("&Channels"));
    for (std::size_t i = 0; i < document.Lines().size(); ++i) {
        // A hidden line is never written.
        LineEntry const& line = document.Lines()[i];
        if (line.flag == 0) AddEntry(*m_lines, line.name, static_cast<int>(i));
    }
    for (std::size_t i = 0; i < document.Channels().size(); ++i) {
        AddEntry(*m_channels, document.Channels()[i].fullName, static_cast<int>(i));
    }
    auto* const buttons = new QHBoxLayout;
    buttons->addWidget(m_bar, 1);
    buttons->addStretch(1);
    buttons->addWidget(m_export);
    buttons->addWidget(m_cancel);
    for (QPushButton* const button : {choose, m_cancel}) button->setAutoDefault(false);
    m_export->setDefault(true);
    auto* const layout = new QVBoxLayout(this);
    layout->addLayout(where);
    layout->addWidget(m_replace);
    layout->addLayout(lists, 1);
    for (QCheckBox* const box : {m_fullDigits, m_units, m_label, m_pointId}) layout->addWidget(box);
    layout->addWidget(m_message);
    layout->addLayout(buttons);
    resize(560, 520);

    connect(choose, &QPushButton::clicked, this, &CExportWindow::AskFile);
    connect(m_file, &QLineEdit::textChanged, this, [this] {
        m_replace->setChecked(false);
        ShowState();
    });
    connect(m_replace, &QCheckBox::toggled, this, &CExportWindow::ShowState);
    connect(m_lines, &QListWidget::itemChanged, this, &CExportWindow::ShowState);
    connect(m_channels, &QListWidget::itemChanged, this, &CExportWindow::ShowState);
    connect(m_export, &QPushButton::clicked, this, &CExportWindow::Export);
    connect(m_cancel, &QPushButton::clicked, this, &CExportWindow::reject);
    auto* const timer = new QTimer(this);
    connect(timer, &QTimer::timeout, this, &CExportWindow::ShowProgress);
    timer->start(50);
    ShowState();
    ShowProgress();
}

QString CExportWindow::Path() const {
    return QFileInfo(m_file->text()).absoluteFilePath();
}

void CExportWindow::AskFile() {
    QString const path = AskFileToSave(this, tr("Export"), Filters(), m_file->text());
    if (path.isEmpty()) return;
    m_file->setText(path);
    m_replace->setChecked(QFileInfo::exists(path));  // the file dialog has asked
}

std::optional<std::vector<int>> CExportWindow::Ticked(QListWidget const& list) {
    std::vector<int> numbers;
    for (int i = 0; i < list.count(); ++i) {
        if (list.item(i)->checkState() == Qt::Checked) numbers.push_back(list.item(i)->data(Qt::UserRole).toInt());
    }
    if (static_cast<int>(numbers.size()) == list.count()) return std::nullopt;
    return numbers;
}

void CExportWindow::ShowState() {
    bool const isThere = QFileInfo::exists(m_file->text());
    m_replace->setVisible(isThere);
    auto const isAny = [](QListWidget const& list) {
        std::optional<std::vector<int>> const ticked = Ticked(list);
        return list.count() > 0 && (!ticked || !ticked->empty());
    };
    m_export->setEnabled(!IsBusy() && (!isThere || m_replace->isChecked()) && isAny(*m_lines) && isAny(*m_channels));
}

void CExportWindow::ShowProgress() {
    m_bar->setVisible(IsBusy());
    if (!IsBusy()) return;
    m_bar->setValue(m_background.Percent());
    m_message->setText(m_background.IsCancelled() ? tr("Stopping...") : m_background.Step());
}

void CExportWindow::Export() {
    ExportRequest request;
    // A store of its own: this one is read by the views meanwhile.
    request.storePath = m_document.Path().toStdString();
    request.outputPath = Path().toStdString();
    request.replace = m_replace->isChecked();
    request.settings.lines = Ticked(*m_lines);
    request.settings.channels = Ticked(*m_channels);
    request.settings.fullDigits = m_fullDigits->isChecked();
    request.settings.units = m_units->isChecked();
    request.settings.labelAsChannel = m_label->isChecked();
    request.settings.pointId = m_pointId->isChecked();
    request.progress = m_background.Progress();
    m_background.Resume();
    m_background.Start([this, request] { m_status = ExportStore(request, m_result); }, [this] { Finished(); });
    ShowState();
    ShowProgress();
}

void CExportWindow::Finished() {
    ShowState();
    ShowProgress();
    if (!m_status) {
        m_message->setText(m_status.IsCancelled() ? tr("Stopped; nothing was written") : ToQString(m_status.Text()));
        return;
    }
    QSettings settings;
    settings.setValue(kExtensionKey, QFileInfo(Path()).suffix());
    settings.setValue(kFullDigitsKey, m_fullDigits->isChecked());
    accept();
}

void CExportWindow::reject() {
    if (IsBusy()) {
        m_background.Cancel();
        return;
    }
    QDialog::reject();
}

}  // namespace norva
