#include "map_page.h"

#include "profile_axis.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace norva {

CMapPage::CMapPage(CStoreDocument& document)
    : m_document(document),
      m_plot(new CMapPlot(document)),
      m_x(new QComboBox),
      m_y(new QComboBox),
      m_colour(new QComboBox),
      m_mode(new QComboBox),
      m_from(new QLineEdit),
      m_to(new QLineEdit),
      m_pixel(new QComboBox) {
    auto* const channels = new QHBoxLayout;
    auto* const colours = new QHBoxLayout;
    auto const add = [](QHBoxLayout& row, QString const& text, QWidget* widget, int stretch) {
        auto* const label = new QLabel(text);
        label->setBuddy(widget);
        row.addWidget(label);
        row.addWidget(widget, stretch);
    };
    add(*channels, tr("&X:"), m_x, 1);
    add(*channels, tr("&Y:"), m_y, 1);
    add(*channels, tr("C&olour:"), m_colour, 1);
    add(*colours, tr("&Scale:"), m_mode, 0);
    add(*colours, tr("from"), m_from, 1);
    add(*colours, tr("to"), m_to, 1);
    add(*colours, tr("Pi&xel:"), m_pixel, 0);
    auto* const whole = new QPushButton(tr("&Whole map"));
    colours->addWidget(whole);
    for (QComboBox* const combo : {m_x, m_y, m_colour}) {
        combo->setMinimumContentsLength(6);
        connect(combo, &QComboBox::activated, this, &CMapPage::Redraw);
    }
    m_mode->addItem(tr("equal area"), static_cast<int>(ColourChoice::Mode::EqualArea));
    m_mode->addItem(tr("linear"), static_cast<int>(ColourChoice::Mode::Linear));
    m_mode->addItem(tr("limits"), static_cast<int>(ColourChoice::Mode::Limits));
    m_mode->setToolTip(
        tr("Equal area: every colour for as many readings. Linear: from the lowest value to the highest."));
    m_from->setAccessibleName(tr("Lowest colour"));
    m_to->setAccessibleName(tr("Highest colour"));
    m_pixel->addItem(tr("median"), true);
    m_pixel->addItem(tr("last"), false);
    m_pixel->setToolTip(tr("What is shown where several readings fall on one pixel"));
    auto* const layout = new QVBoxLayout(this);
    layout->addLayout(channels);
    layout->addLayout(colours);
    layout->addWidget(m_plot, 1);
    connect(m_mode, &QComboBox::activated, this, &CMapPage::TakeScale);
    for (QLineEdit* const edit : {m_from, m_to}) {
        edit->setMinimumWidth(7 * fontMetrics().averageCharWidth());
        connect(edit, &QLineEdit::textEdited, this,
                [this] { m_mode->setCurrentIndex(m_mode->findData(static_cast<int>(ColourChoice::Mode::Limits))); });
        connect(edit, &QLineEdit::editingFinished, this, [this, edit] {
            if (edit->isModified()) TakeScale();
        });
    }
    connect(m_pixel, &QComboBox::activated, this, [this] { m_plot->ShowMedian(m_pixel->currentData().toBool()); });
    connect(whole, &QPushButton::clicked, m_plot, &CMapPlot::FitAll);
    connect(m_plot, &CMapPlot::ScaleChanged, this, &CMapPage::ShowScale);
    connect(m_plot, &CMapPlot::Hovered, this, &CMapPage::Said);
}

void CMapPage::ShowDocument(bool keeps) {
    PositionChoice const positions = ChoosePositions(m_document.Channels());
    std::pair<QComboBox*, int> const combos[] = {
        {m_x, positions.x}, {m_y, positions.y}, {m_colour, ChooseReading(m_document.Channels())}};
    for (auto const& [combo, likeliest] : combos) {
        QVariant const before = combo->currentData();
        combo->clear();
        combo->addItem(combo == m_colour ? tr("(lines only)") : tr("(none)"), -1);
        for (ChannelEntry const& entry : m_document.Channels()) {
            if (entry.isNumber) combo->addItem(entry.fullName, entry.index);
        }
        int const stays = keeps ? combo->findData(before) : -1;
        combo->setCurrentIndex(stays >= 0 ? stays : std::max(0, combo->findData(likeliest)));
    }
    if (!keeps) {
        m_mode->setCurrentIndex(0);
        m_plot->SetColours({});
    }
}

void CMapPage::Redraw() {
    auto const chosen = [](QComboBox const* combo) {
        return combo->currentIndex() < 0 ? -1 : combo->currentData().toInt();
    };
    m_plot->ShowMap(chosen(m_x), chosen(m_y), chosen(m_colour));
}

void CMapPage::TakeScale() {
    ColourChoice choice;
    choice.mode = static_cast<ColourChoice::Mode>(m_mode->currentData().toInt());
    if (choice.mode == ColourChoice::Mode::Limits) {
        bool const isGood =
            ReadLimit(m_from->text(), choice.from) && ReadLimit(m_to->text(), choice.to) && choice.from < choice.to;
        if (!isGood) {
            emit Said(tr("The limits of the colours are two numbers, the first below the second"));
            return;
        }
    }
    for (QLineEdit* const edit : {m_from, m_to}) edit->setModified(false);
    m_plot->SetColours(choice);
}

void CMapPage::ShowScale() {
    CColourScale const& scale = m_plot->Scale();
    for (QLineEdit* const edit : {m_from, m_to}) {
        edit->setEnabled(!scale.IsEmpty());
        if (scale.IsEmpty() || edit->isModified()) continue;
        edit->setText(QString::number(scale.ValueAt(edit == m_from ? 0 : 1), 'g', 8));
    }
}

}  // namespace norva
