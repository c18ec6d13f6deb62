#include "proposal_view.h"

#include "control_views.h"
#include "import_item.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QSplitter>
#include <QTableWidget>
#include <QTextBrowser>
#include <QVBoxLayout>

#include <algorithm>
#include <array>

namespace norva {

namespace {

constexpr std::array<ColumnType, 9> kTypes = {ColumnType::Text,  ColumnType::Float,      ColumnType::Double,
                                              ColumnType::Short, ColumnType::Long,       ColumnType::Date,
                                              ColumnType::Time,  ColumnType::Geographic, ColumnType::Skipped};

ValueTemplates const& TemplatesOf(ColumnType type) {
    return type == ColumnType::Time ? TimeTemplates() : DateTemplates();
}

bool HasTemplate(ColumnType type) {
    return type == ColumnType::Date || type == ColumnType::Time;
}

QString TypeText(NorvaChannelStruct const& channel) {
    ColumnType const type = TypeOf(channel);
    if (type == ColumnType::Text) return CProposalView::tr("text of %1").arg(channel.arraySize);
    return ToQString(std::string(ColumnTypeName(type)));
}

/// A colour between two, which suits light and dark windows.
QColor Between(QColor const& one, QColor const& other, double share) {
    auto const mix = [share](int a, int b) { return static_cast<int>(a + (b - a) * share); };
    return {mix(one.red(), other.red()), mix(one.green(), other.green()), mix(one.blue(), other.blue())};
}

}  // namespace

CProposalView::CProposalView()
    : m_summary(new QLabel),
      m_rows(new QTableWidget),
      m_name(new QLineEdit),
      m_units(new QLineEdit),
      m_type(new QComboBox),
      m_template(new QComboBox),
      m_startsLines(new QCheckBox(tr("Starts &lines"))),
      m_why(new QTextBrowser) {
    m_summary->setTextFormat(Qt::PlainText);
    m_rows->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_rows->setSelectionBehavior(QAbstractItemView::SelectColumns);
    m_rows->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_rows->setAccessibleName(tr("First rows"));
    m_rows->setTabKeyNavigation(false);
    m_rows->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_rows->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    m_why->setAccessibleName(tr("Why"));
    m_units->setMaximumWidth(10 * fontMetrics().averageCharWidth());
    for (ColumnType const type : kTypes) m_type->addItem(ToQString(std::string(ColumnTypeName(type))));
    m_startsLines->setToolTip(tr("A change in this column starts a new line of the survey"));

    auto* const editors = new QHBoxLayout;
    auto const add = [editors](QString const& text, QWidget* widget) {
        auto* const label = new QLabel(text);
        label->setBuddy(widget);
        editors->addWidget(label);
        editors->addWidget(widget);
    };
    add(tr("&Name:"), m_name);
    add(tr("&Units:"), m_units);
    add(tr("&Type:"), m_type);
    editors->addWidget(m_template);
    editors->addWidget(m_startsLines);
    editors->addStretch(1);

    auto* const upper = new QWidget;
    auto* const column = new QVBoxLayout(upper);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_rows, 1);
    column->addLayout(editors);
    auto* const split = new QSplitter(Qt::Vertical);
    split->addWidget(upper);
    split->addWidget(m_why);
    split->setStretchFactor(0, 3);
    split->setStretchFactor(1, 1);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_summary);
    layout->addWidget(split, 1);

    connect(m_rows, &QTableWidget::itemSelectionChanged, this, &CProposalView::ShowEditors);
    connect(m_type, &QComboBox::activated, this, &CProposalView::ChangeType);
    connect(m_template, &QComboBox::activated, this, &CProposalView::ChangeTemplate);
    connect(m_name, &QLineEdit::textEdited, this, [this](QString const& text) { ChangeName(text, false); });
    connect(m_units, &QLineEdit::textEdited, this, [this](QString const& text) { ChangeName(text, true); });
    connect(m_startsLines, &QCheckBox::clicked, this, &CProposalView::ChangeLabel);
    Show(nullptr);
}

void CProposalView::Show(ImportItem* item) {
    m_item = item;
    ShowTitles();
    ShowRows();
    ShowWhy();
    ShowEditors();
}

std::vector<int> CProposalView::Chosen() const {
    std::vector<int> columns;
    for (QModelIndex const& index : m_rows->selectionModel()->selectedColumns()) columns.push_back(index.column());
    std::ranges::sort(columns);
    return columns;
}

void CProposalView::ShowTitles() {
    bool const isShown = m_item != nullptr;
    m_summary->setText(isShown ? tr("As the whole file was read: %1").arg(m_item->Contents()) : QString());
    ColumnTextSettings const none;
    ColumnTextSettings const& settings = isShown ? m_item->Settings() : none;
    QSignalBlocker const quiet(m_rows);
    m_rows->setColumnCount(static_cast<int>(settings.columns.size()));
    for (int i = 0; i < m_rows->columnCount(); ++i) {
        NorvaChannelStruct const& channel = settings.columns[static_cast<std::size_t>(i)];
        QString title = ToQString(channel.name) + '\n' + ToQString(channel.units) + '\n';
        title += i == settings.labelColumn ? tr("starts lines") : TypeText(channel);
        auto* const item = new QTableWidgetItem(title);
        for (InspectionFinding const& finding : m_item->proposal.findings) {
            if (finding.subject == channel.name) item->setToolTip(ToQString(finding.evidence));
        }
        m_rows->setHorizontalHeaderItem(i, item);
    }
}

void CProposalView::ShowRows() {
    std::vector<InspectedRow> const none;
    std::vector<InspectedRow> const& rows = m_item == nullptr ? none : m_item->rows;
    QSignalBlocker const quiet(m_rows);
    m_rows->setRowCount(static_cast<int>(rows.size()));
    QColor const base = palette().color(QPalette::Base);
    QColor const text = palette().color(QPalette::Text);
    QColor const faint = Between(base, text, 0.4);
    QColor const tint = Between(base, palette().color(QPalette::Highlight), 0.2);
    for (int row = 0; row < m_rows->rowCount(); ++row) {
        InspectedRow const& shown = rows[static_cast<std::size_t>(row)];
        m_rows->setVerticalHeaderItem(row, new QTableWidgetItem(QString::number(shown.line)));
        for (int i = 0; i < m_rows->columnCount(); ++i) {
            InspectedCell const& cell = shown.cells[static_cast<std::size_t>(i)];
            auto* const item = new QTableWidgetItem(ToQString(cell.text));
            bool const isSkipped =
                TypeOf(m_item->Settings().columns[static_cast<std::size_t>(i)]) == ColumnType::Skipped;
            if (isSkipped || cell.what != InspectedCell::What::Value) item->setForeground(faint);
            if (i == m_item->Settings().labelColumn) item->setBackground(tint);
            if (cell.what == InspectedCell::What::Missing) item->setToolTip(tr("no data"));
            if (cell.what == InspectedCell::What::Unreadable) {
                item->setToolTip(tr("cannot be read as the type of this column: becomes no data, and is counted"));
                item->setForeground(QColor(0xc0, 0x30, 0x30));
            }
            m_rows->setItem(row, i, item);
        }
    }
    m_rows->resizeColumnsToContents();
}

void CProposalView::ShowWhy() {
    if (m_item == nullptr) {
        m_why->clear();
        return;
    }
    QString text;
    // What is in doubt comes first.
    for (bool const isDoubt : {true, false}) {
        for (InspectionFinding const& finding : m_item->proposal.findings) {
            if (finding.isDoubt != isDoubt) continue;
            QString const choice = finding.choice.empty() ? QString() : ": " + ToQString(finding.choice);
            QString const line = QString("<b>%1%2</b> %3")
                                     .arg(ToQString(finding.subject).toHtmlEscaped(), choice.toHtmlEscaped(),
                                          ToQString(finding.evidence).toHtmlEscaped());
            text += isDoubt ? "<p style=\"color: #c06000\">? " + line + "</p>" : "<p>" + line + "</p>";
        }
    }
    for (InspectedLine const& line : m_item->proposal.lines) {
        text += QString("<p>%1 <code>%2</code> %3</p>")
                    .arg(tr("line %1").arg(line.line), ToQString(line.text).toHtmlEscaped(),
                         ToQString(line.reason).toHtmlEscaped());
    }
    m_why->setHtml(text);
}

void CProposalView::ShowEditors() {
    std::vector<int> const chosen = Chosen();
    bool const isAny = m_item != nullptr && !chosen.empty();
    for (QWidget* const widget : std::initializer_list<QWidget*>{m_name, m_units, m_type, m_startsLines}) {
        widget->setEnabled(isAny);
    }
    m_template->setVisible(false);
    if (!isAny) return;
    ColumnTextSettings const& settings = m_item->Settings();
    NorvaChannelStruct const& first = settings.columns[static_cast<std::size_t>(chosen.front())];
    bool const isOne = chosen.size() == 1;
    m_name->setEnabled(isOne);
    m_startsLines->setEnabled(isOne);
    // The cursor stays where a person types.
    if (m_name->text() != ToQString(first.name)) m_name->setText(isOne ? ToQString(first.name) : QString());
    if (m_units->text() != ToQString(first.units)) m_units->setText(ToQString(first.units));
    ColumnType const type = TypeOf(first);
    m_type->setCurrentIndex(static_cast<int>(std::ranges::find(kTypes, type) - kTypes.begin()));
    m_startsLines->setChecked(isOne && chosen.front() == settings.labelColumn);
    m_template->setVisible(HasTemplate(type));
    m_template->clear();
    if (!HasTemplate(type)) return;
    for (std::string const& name : TemplatesOf(type).names) m_template->addItem(ToQString(name));
    m_template->setCurrentIndex(TemplatesOf(type).IndexOf(first.templateFormat));
}

void CProposalView::ChangeType(int index) {
    ColumnType const type = kTypes[static_cast<std::size_t>(index)];
    bool isNew = false;
    for (int const channel : Chosen()) {
        ColumnEdit& edit = m_item->EditOf(channel);
        edit.dateTemplate.reset();
        edit.type = type;
        std::vector<int>& texts = m_item->told.textColumns;
        bool const wasText = std::erase(texts, edit.source) > 0;
        bool const isText = type == ColumnType::Text;
        // How wide its texts are only the whole file says.
        if (isText) texts.push_back(edit.source);
        if (isText) edit.type.reset();
        isNew = isNew || isText || wasText;
    }
    if (isNew) {
        emit LookWished();
    } else {
        ApplyEdits();
    }
}

void CProposalView::ChangeTemplate(int index) {
    for (int const channel : Chosen()) {
        ColumnType const type = TypeOf(m_item->Settings().columns[static_cast<std::size_t>(channel)]);
        if (HasTemplate(type)) {
            m_item->EditOf(channel).dateTemplate = TemplatesOf(type).codes[static_cast<std::size_t>(index)];
        }
    }
    ApplyEdits();
}

void CProposalView::ChangeName(QString const& text, bool isUnits) {
    for (int const channel : Chosen()) {
        ColumnEdit& edit = m_item->EditOf(channel);
        (isUnits ? edit.units : edit.name) = text.toStdString();
    }
    ApplyEdits();
}

void CProposalView::ChangeLabel(bool startsLines) {
    std::vector<int> const chosen = Chosen();
    if (chosen.size() != 1) return;
    m_item->told.labelColumn = startsLines ? m_item->EditOf(chosen.front()).source : -1;
    emit LookWished();
}

void CProposalView::ApplyEdits() {
    Status const status = m_item->ApplyEdits();
    ShowTitles();
    ShowRows();
    ShowEditors();
    if (!status) m_summary->setText(ToQString(status.Text()));
    emit Edited();
}

}  // namespace norva
