#include "profile_page.h"

#include "limits_dialog.h"
#include "position_choice.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace norva {

CProfilePage::CProfilePage(CStoreDocument& document)
    : m_document(document), m_plot(new CProfilePlot(document)), m_against(new QComboBox), m_arrangement(new QComboBox) {
    m_arrangement->addItem(tr("overlaid"), false);
    m_arrangement->addItem(tr("stacked"), true);
    m_arrangement->setToolTip(tr("How several lines are drawn"));
    m_against->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    auto* const choices = new QHBoxLayout;
    auto const add = [choices](QString const& text, QWidget* widget) {
        auto* const label = new QLabel(text);
        label->setBuddy(widget);
        choices->addWidget(label);
        choices->addWidget(widget);
    };
    add(tr("&Against:"), m_against);
    add(tr("Li&nes:"), m_arrangement);
    choices->addStretch(1);
    auto* const limits = new QPushButton(tr("Limi&ts..."));
    auto* const whole = new QPushButton(tr("&Whole line"));
    choices->addWidget(limits);
    choices->addWidget(whole);
    auto* const layout = new QVBoxLayout(this);
    layout->addLayout(choices);
    layout->addWidget(m_plot, 1);
    connect(m_against, &QComboBox::activated, this, [this] { Redraw(false); });
    connect(m_arrangement, &QComboBox::activated, this, [this] { Redraw(false); });
    connect(limits, &QPushButton::clicked, this, &CProfilePage::TypeLimits);
    connect(whole, &QPushButton::clicked, m_plot, &CProfilePlot::FitAll);
    connect(m_plot, &CProfilePlot::LimitsWished, this, &CProfilePage::TypeLimits);
    connect(m_plot, &CProfilePlot::Hovered, this, &CProfilePage::Said);
}

void CProfilePage::ShowDocument(bool keeps) {
    QVariant const before = m_against->currentData();
    m_against->clear();
    m_against->addItem(tr("Location number"), kAgainstLocation);
    if (ChoosePositions(m_document.Channels()).x >= 0) m_against->addItem(tr("Distance"), kAgainstDistance);
    for (ChannelEntry const& entry : m_document.Channels()) {
        if (entry.isNumber) m_against->addItem(entry.fullName, entry.index);
    }
    if (keeps) m_against->setCurrentIndex(std::max(0, m_against->findData(before)));
}

void CProfilePage::Show(std::vector<int> const& lines, std::vector<int> const& channels, bool keepsView) {
    m_lines = lines;
    m_channels = channels;
    Redraw(keepsView);
}

void CProfilePage::ChooseAgainst(int against) {
    m_against->setCurrentIndex(std::max(0, m_against->findData(against)));
}

void CProfilePage::Redraw(bool keepsView) {
    int const against = m_against->count() > 0 ? m_against->currentData().toInt() : kAgainstLocation;
    m_plot->Show({m_lines, m_channels, against, m_arrangement->currentData().toBool()}, keepsView);
    if (!m_plot->LeftOut().isEmpty()) emit Said(m_plot->LeftOut());
}

void CProfilePage::TypeLimits() {
    if (m_plot->Panels() == 0) return;
    CLimitsDialog dialog(m_plot->CurrentLimits(), this);
    if (dialog.exec() == QDialog::Accepted) m_plot->SetLimits(*dialog.Ranges());
}

}  // namespace norva
