#include "qt_dialog.h"

#include <QApplication>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

#include <algorithm>
#include <ctime>

namespace norva {

namespace {

constexpr int kLargestWidth = 1000;
constexpr int kLargestHeight = 600;

bool IsTall(TemplateNode const& node) {
    if (node.kind == TemplateNode::Kind::Control) {
        return node.control == ControlKind::List || node.control == ControlKind::Report ||
               node.control == ControlKind::Grid;
    }
    return std::any_of(node.children.begin(), node.children.end(), IsTall);
}

bool HoldsGrid(TemplateNode const& node) {
    bool const isGrid = node.kind == TemplateNode::Kind::Control && node.control == ControlKind::Grid;
    return isGrid || std::any_of(node.children.begin(), node.children.end(), HoldsGrid);
}

bool HoldsOnlyButtons(TemplateNode const& node) {
    return std::all_of(node.children.begin(), node.children.end(), [](TemplateNode const& child) {
        return child.kind == TemplateNode::Kind::Control && child.control == ControlKind::Button;
    });
}

}  // namespace

CQtDialog::CQtDialog(CDialog& dialog, QWidget* parent) : QDialog(parent), m_dialog(dialog) {
    auto* const layout = new QVBoxLayout(this);
    Build(dialog.Template().root, *layout);
    if (auto* const view = View(dialog.Template().defaultButton)) {
        if (auto* const button = qobject_cast<QPushButton*>(view->Widget())) button->setDefault(true);
    }
    RefreshAll();
    adjustSize();
    QSize size = sizeHint();
    bool const tall = IsTall(dialog.Template().root);
    if (tall) size = size.expandedTo(QSize(HoldsGrid(dialog.Template().root) ? 820 : 640, 420));
    resize(size.boundedTo(QSize(kLargestWidth, kLargestHeight)));
}

CQtDialog::~CQtDialog() {
    // The widgets go before the views whose models they show; what they say while they go is nobody's act.
    m_closing = true;
    qDeleteAll(findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly));
}

void CQtDialog::Build(TemplateNode const& node, QBoxLayout& layout) {
    switch (node.kind) {
        case TemplateNode::Kind::Row: {
            auto* const row = new QHBoxLayout;
            layout.addLayout(row, IsTall(node) ? 1 : 0);
            for (TemplateNode const& child : node.children) Build(child, *row);
            if (HoldsOnlyButtons(node)) row->insertStretch(0, 1);
            break;
        }
        case TemplateNode::Kind::Column: {
            auto* const column = new QVBoxLayout;
            layout.addLayout(column, IsTall(node) ? 1 : 0);
            for (TemplateNode const& child : node.children) Build(child, *column);
            if (!IsTall(node)) column->addStretch(1);
            break;
        }
        case TemplateNode::Kind::Group: {
            auto* const group = new QGroupBox(ToQString(node.label).replace("&", "&&"));
            auto* const column = new QVBoxLayout(group);
            for (TemplateNode const& child : node.children) Build(child, *column);
            if (!IsTall(node)) column->addStretch(1);
            layout.addWidget(group, IsTall(node) ? 1 : 0);
            break;
        }
        case TemplateNode::Kind::Control: {
            auto view = MakeControlView(node, m_mnemonics, [this](DialogEvent const& event) { Take(event); });
            if (!view) break;
            // The dialog decides which button Enter presses.
            if (auto* const button = qobject_cast<QPushButton*>(view->Widget())) button->setAutoDefault(false);
            layout.addWidget(view->Outer(), IsTall(node) ? 1 : 0);
            m_items.push_back({node.id, std::move(view)});
            break;
        }
    }
}

CControlView* CQtDialog::View(int control) const {
    for (Item const& item : m_items) {
        if (item.id == control) return item.view.get();
    }
    return nullptr;
}

void CQtDialog::Take(DialogEvent const& event) {
    if (m_closing || m_dialog.IsEnded()) return;
    if (onEvent) onEvent(event);
    std::string why;
    m_dialog.Perform(event, why);
    // What the widget shows by itself may differ from what the dialog made of the act.
    if (CControlView* const view = View(event.control)) view->SetShown(~0U);
    RefreshAll();
}

void CQtDialog::RefreshAll() {
    setWindowTitle(ToQString(m_dialog.Title()));
    for (Item const& item : m_items) {
        CControl const* const control = m_dialog.FindControl(item.id);
        if (control == nullptr || control->revision == item.view->Shown()) continue;
        item.view->Refresh(*control);
        item.view->SetShown(control->revision);
    }
    if (m_dialog.IsEnded()) done(m_dialog.Result());
}

bool CQtDialog::RefreshProgress(bool now) {
    constexpr std::chrono::milliseconds kInterval{40};
    // Reading this clock of some milliseconds' grain costs next to nothing.
    timespec read{};
    clock_gettime(CLOCK_MONOTONIC_COARSE, &read);
    auto const time = std::chrono::milliseconds(read.tv_sec * 1000 + read.tv_nsec / 1'000'000);
    if (!now && time - m_refreshed < kInterval) return false;
    m_refreshed = time;
    RefreshAll();
    if (now) repaint();
    return true;
}

void CQtDialog::reject() {
    DialogEvent event;
    event.kind = DialogEvent::Kind::Close;
    Take(event);
}

}  // namespace norva
