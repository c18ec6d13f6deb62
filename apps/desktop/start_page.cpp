#include "start_page.h"

#include <QCommandLinkButton>
#include <QFileInfo>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace norva {

CStartPage::CStartPage() : m_recent(new QVBoxLayout), m_drop(new QLabel) {
    auto* const title = new QLabel(tr("Norva Exchange"));
    QFont large = title->font();
    large.setPointSizeF(large.pointSizeF() * 1.8);
    title->setFont(large);
    auto* const open = new QCommandLinkButton(tr("&Open a store"), tr("Lines and channels of a survey (.nvt)"));
    auto* const import = new QCommandLinkButton(
        tr("&Import a file"), tr("Column text, instrument dumps, GPS tracks, binary records, databases"));
    m_drop->setText(tr("or drop files or a folder here"));
    m_drop->setAlignment(Qt::AlignCenter);
    m_drop->setMinimumHeight(6 * fontMetrics().height());
    ShowDrop(false);

    auto* const column = new QVBoxLayout;
    column->addStretch(1);
    column->addWidget(title);
    column->addSpacing(8);
    column->addWidget(open);
    column->addWidget(import);
    column->addSpacing(8);
    column->addWidget(m_drop);
    column->addSpacing(8);
    column->addLayout(m_recent);
    column->addStretch(2);
    auto* const row = new QHBoxLayout(this);
    row->addStretch(1);
    row->addLayout(column, 3);
    row->addStretch(1);
    connect(open, &QPushButton::clicked, this, &CStartPage::OpenWished);
    connect(import, &QPushButton::clicked, this, &CStartPage::ImportWished);
    setTabOrder(open, import);
    setFocusProxy(open);
}

void CStartPage::ShowRecent(QStringList const& paths) {
    while (QLayoutItem* const item = m_recent->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    if (paths.isEmpty()) return;
    m_recent->addWidget(new QLabel(tr("Recent files")));
    for (QString const& path : paths) {
        QFileInfo const file(path);
        auto* const button = new QPushButton(QString("%1    %2").arg(file.fileName(), file.absolutePath()));
        button->setFlat(true);
        button->setStyleSheet("text-align: left; padding: 3px 6px;");
        button->setToolTip(path);
        button->setEnabled(file.exists());
        connect(button, &QPushButton::clicked, this, [this, path] { emit FileWished(path); });
        m_recent->addWidget(button);
    }
}

void CStartPage::ShowDrop(bool isOver) {
    QString const colour = palette().color(isOver ? QPalette::Highlight : QPalette::Mid).name();
    m_drop->setStyleSheet(QString("border: 2px dashed %1; border-radius: 6px;").arg(colour));
}

}  // namespace norva
