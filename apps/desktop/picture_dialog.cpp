#include "picture_dialog.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QSpinBox>

namespace norva {

CPictureDialog::CPictureDialog(QString const& title, QSize size, QWidget* parent)
    : QDialog(parent),
      m_title(new QLineEdit(title)),
      m_width(new QSpinBox),
      m_height(new QSpinBox),
      m_finer(new QSpinBox) {
    setWindowTitle(tr("Save the plot"));
    for (auto const& [box, value] : {std::pair(m_width, size.width()), std::pair(m_height, size.height())}) {
        box->setRange(100, 20000);
        box->setSuffix(tr(" px"));
        box->setValue(value);
    }
    m_finer->setRange(1, 8);
    m_finer->setPrefix(tr("x "));
    m_finer->setToolTip(tr("Writes a PNG with so many times the pixels, lines and letters as thick as before"));
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* const form = new QFormLayout(this);
    form->addRow(tr("&Title:"), m_title);
    form->addRow(tr("&Width:"), m_width);
    form->addRow(tr("&Height:"), m_height);
    form->addRow(tr("&Finer:"), m_finer);
    form->addRow(buttons);
    m_title->setMinimumWidth(40 * fontMetrics().averageCharWidth());
}

QString CPictureDialog::Title() const {
    return m_title->text();
}

QSize CPictureDialog::Size() const {
    return {m_width->value(), m_height->value()};
}

int CPictureDialog::Finer() const {
    return m_finer->value();
}

}  // namespace norva
