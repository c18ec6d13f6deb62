#include "limits_dialog.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace norva {

CLimitsDialog::CLimitsDialog(std::vector<CProfilePlot::Limits> const& limits, QWidget* parent)
    : QDialog(parent),
      m_why(new QLabel),
      m_buttons(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel)) {
    setWindowTitle(tr("Limits of the axes"));
    auto* const grid = new QGridLayout;
    grid->addWidget(new QLabel(tr("From")), 0, 1);
    grid->addWidget(new QLabel(tr("To")), 0, 2);
    for (CProfilePlot::Limits const& one : limits) {
        int const row = grid->rowCount();
        auto const box = [&](double value, QString const& which) {
            auto* const edit = new QLineEdit(QString::number(value, 'g', 10));
            edit->setAccessibleName(one.title + " " + which);
            connect(edit, &QLineEdit::textChanged, this, &CLimitsDialog::Check);
            return edit;
        };
        Row const boxes{box(one.range.lower, tr("from")), box(one.range.upper, tr("to"))};
        auto* const label = new QLabel(one.title);
        label->setTextFormat(Qt::PlainText);
        grid->addWidget(label, row, 0);
        grid->addWidget(boxes.from, row, 1);
        grid->addWidget(boxes.to, row, 2);
        m_rows.push_back(boxes);
    }
    connect(m_buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* const layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addWidget(m_why);
    layout->addWidget(m_buttons);
    Check();
}

std::optional<std::vector<QCPRange>> CLimitsDialog::Ranges() const {
    std::vector<QCPRange> ranges;
    for (Row const& row : m_rows) {
        double from = 0;
        double to = 0;
        if (!ReadLimit(row.from->text(), from) || !ReadLimit(row.to->text(), to) || !(from < to)) return std::nullopt;
        ranges.emplace_back(from, to);
    }
    return ranges;
}

void CLimitsDialog::Check() {
    bool const isGood = Ranges().has_value();
    m_buttons->button(QDialogButtonBox::Ok)->setEnabled(isGood);
    m_why->setText(isGood ? QString() : tr("Numbers (or times as 09:30:00) are needed, the first below the second"));
}

}  // namespace norva
