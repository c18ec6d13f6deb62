#include "control_views.h"

#include "list_views.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include <algorithm>

namespace norva {

namespace {

/// All rows of a dialog are as high as each other, so that columns of buttons and boxes stand in line.
int RowHeight() {
    static int const height = std::max(QLineEdit().sizeHint().height(), QComboBox().sizeHint().height());
    return height;
}

/// Common part of views that are one widget.
template <typename WidgetType>
class CSimpleView : public CControlView {
public:
    CSimpleView(TemplateNode const& node, EventSink sink)
        : CControlView(std::move(sink)), m_id(node.id), m_widget(new WidgetType) {}

    QWidget* Widget() const override { return m_widget; }
    void Refresh(CControl const& control) override {
        m_widget->setEnabled(control.enabled);
        m_widget->setVisible(control.visible);
    }

protected:
    int m_id;
    WidgetType* m_widget;
};

class CStaticView : public CSimpleView<QLabel> {
public:
    CStaticView(TemplateNode const& node, EventSink sink) : CSimpleView(node, std::move(sink)) {
        m_widget->setWordWrap(node.label.size() > 40);
        m_widget->setTextFormat(Qt::PlainText);
    }
    void Refresh(CControl const& control) override {
        CSimpleView::Refresh(control);
        m_widget->setText(ToQString(control.text));
    }
};

template <typename ButtonType>
class CButtonView : public CSimpleView<ButtonType> {
public:
    CButtonView(TemplateNode const& node, CMnemonics& mnemonics, EventSink sink)
        : CSimpleView<ButtonType>(node, std::move(sink)) {
        this->m_widget->setText(mnemonics.Assign(node.label));
        this->m_widget->setAccessibleName(ToQString(node.label).trimmed());
        if (this->m_widget->isCheckable()) this->m_widget->setMinimumHeight(RowHeight());
        QObject::connect(this->m_widget, &ButtonType::clicked, [this] {
            DialogEvent event;
            event.control = this->m_id;
            this->Send(event);
        });
    }
    void Refresh(CControl const& control) override {
        CSimpleView<ButtonType>::Refresh(control);
        if (this->m_widget->isCheckable()) this->m_widget->setChecked(control.checked);
    }
};

class CRadioView : public CButtonView<QRadioButton> {
public:
    CRadioView(TemplateNode const& node, CMnemonics& mnemonics, EventSink sink)
        : CButtonView(node, mnemonics, std::move(sink)) {
        m_widget->setAutoExclusive(false);  // the dialog keeps the groups
    }
};

class CProgressView : public CSimpleView<QProgressBar> {
public:
    CProgressView(TemplateNode const& node, EventSink sink) : CSimpleView(node, std::move(sink)) {
        m_widget->setRange(0, 100);
        m_widget->setAccessibleName(ToQString(node.label));
    }
    void Refresh(CControl const& control) override {
        CSimpleView::Refresh(control);
        m_widget->setValue(std::clamp(control.position, 0, 100));
    }
};

/// An edit or combo box with its label before it.
template <typename WidgetType>
class CLabelledView : public CSimpleView<WidgetType> {
public:
    CLabelledView(TemplateNode const& node, CMnemonics& mnemonics, EventSink sink)
        : CSimpleView<WidgetType>(node, std::move(sink)), m_outer(new QWidget) {
        auto* const layout = new QHBoxLayout(m_outer);
        layout->setContentsMargins(0, 0, 0, 0);
        if (!node.label.empty()) {
            auto* const label = new QLabel(mnemonics.Assign(node.label));
            label->setBuddy(this->m_widget);
            layout->addWidget(label);
        }
        layout->addWidget(this->m_widget, 1);
        this->m_widget->setMinimumHeight(RowHeight());
        this->m_widget->setAccessibleName(ToQString(node.label).trimmed());
    }
    QWidget* Outer() const override { return m_outer; }
    void Refresh(CControl const& control) override {
        CSimpleView<WidgetType>::Refresh(control);
        m_outer->setVisible(control.visible);
    }

private:
    QWidget* m_outer;
};

class CEditView : public CLabelledView<QLineEdit> {
public:
    CEditView(TemplateNode const& node, CMnemonics& mnemonics, EventSink sink)
        : CLabelledView(node, mnemonics, std::move(sink)) {
        m_widget->setReadOnly(node.readOnly);
        if (node.maxLength > 0) {
            m_widget->setMaxLength(node.maxLength);
            m_widget->setMaximumWidth(m_widget->fontMetrics().averageCharWidth() * (node.maxLength + 4));
        }
        QObject::connect(m_widget, &QLineEdit::editingFinished, [this] {
            if (!m_widget->isModified() || m_widget->isReadOnly()) return;
            m_widget->setModified(false);
            DialogEvent event;
            event.kind = DialogEvent::Kind::Edit;
            event.control = m_id;
            event.text = m_widget->text().toStdString();
            Send(event);
        });
    }
    void Refresh(CControl const& control) override {
        CLabelledView::Refresh(control);
        QString const text = ToQString(control.text);
        if (!m_widget->isModified() && m_widget->text() != text) m_widget->setText(text);
    }
};

class CComboView : public CLabelledView<QComboBox> {
public:
    CComboView(TemplateNode const& node, CMnemonics& mnemonics, EventSink sink)
        : CLabelledView(node, mnemonics, std::move(sink)) {
        QObject::connect(m_widget, &QComboBox::activated, [this](int row) {
            DialogEvent event;
            event.kind = DialogEvent::Kind::Choice;
            event.control = m_id;
            event.row = row;
            Send(event);
        });
    }
    void Refresh(CControl const& control) override {
        CLabelledView::Refresh(control);
        QStringList items;
        for (std::string const& item : control.items) items << ToQString(item);
        QStringList shown;
        for (int i = 0; i < m_widget->count(); ++i) shown << m_widget->itemText(i);
        if (items != shown) {
            m_widget->clear();
            m_widget->addItems(items);
        }
        m_widget->setCurrentIndex(control.selected.empty() ? -1 : control.selected.front());
    }
};

}  // namespace

CControlView::~CControlView() = default;

QPoint CControlView::RowPoint(int /*row*/, int /*column*/) const {
    return Target()->rect().center();
}

QString CMnemonics::Assign(std::string_view label) {
    QString const text = ToQString(label).trimmed();
    QString escaped = text;
    escaped.replace("&", "&&");
    for (qsizetype i = 0; i < escaped.size(); ++i) {
        QChar const letter = escaped[i].toLower();
        bool const startsWord = i == 0 || !escaped[i - 1].isLetterOrNumber();
        if (startsWord && letter.isLetter() && !m_used.contains(letter)) {
            m_used += letter;
            return escaped.insert(i, '&');
        }
    }
    return escaped;
}

std::unique_ptr<CControlView> MakeControlView(TemplateNode const& node, CMnemonics& mnemonics, EventSink sink) {
    switch (node.control) {
        case ControlKind::Static:
            return std::make_unique<CStaticView>(node, std::move(sink));
        case ControlKind::Edit:
            return std::make_unique<CEditView>(node, mnemonics, std::move(sink));
        case ControlKind::Button:
            return std::make_unique<CButtonView<QPushButton>>(node, mnemonics, std::move(sink));
        case ControlKind::Check:
            return std::make_unique<CButtonView<QCheckBox>>(node, mnemonics, std::move(sink));
        case ControlKind::Radio:
            return std::make_unique<CRadioView>(node, mnemonics, std::move(sink));
        case ControlKind::Combo:
            return std::make_unique<CComboView>(node, mnemonics, std::move(sink));
        case ControlKind::Progress:
            return std::make_unique<CProgressView>(node, std::move(sink));
        case ControlKind::List:
        case ControlKind::Report:
        case ControlKind::Grid:
            return MakeListView(node, mnemonics, std::move(sink));
        case ControlKind::Group:
            break;
    }
    return nullptr;
}

}  // namespace norva
