#pragma once

#include "norva/dialog.h"

#include <QString>
#include <QWidget>

#include <functional>
#include <memory>

class QLayout;

namespace norva {

inline QString ToQString(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// Hands an act of the person to the dialog; the views are refreshed afterwards.
using EventSink = std::function<void(DialogEvent const& event)>;

/// One control of a dialog as widgets.
class CControlView {
public:
    explicit CControlView(EventSink sink) : m_sink(std::move(sink)) {}
    CControlView(CControlView const&) = delete;
    CControlView& operator=(CControlView const&) = delete;
    virtual ~CControlView();

    /// The widget that takes the person's acts.
    virtual QWidget* Widget() const = 0;
    /// The widget that stands in the layout; with a label, more than Widget().
    virtual QWidget* Outer() const { return Widget(); }
    /// Shows the control's state.
    virtual void Refresh(CControl const& control) = 0;
    /// Where a click on a row or, in a grid, a column lands, in coordinates of Target().
    virtual QPoint RowPoint(int row, int column) const;
    virtual QWidget* Target() const { return Widget(); }

    /// Revision of the state that is shown.
    unsigned Shown() const { return m_shown; }
    void SetShown(unsigned revision) { m_shown = revision; }

protected:
    void Send(DialogEvent const& event) const { m_sink(event); }

private:
    EventSink m_sink;
    unsigned m_shown = ~0U;
};

/// Gives every label of a dialog a mnemonic of its own, as long as there are letters.
class CMnemonics {
public:
    QString Assign(std::string_view label);

private:
    QString m_used;
};

/// The view of a control; null for a group, which is a layout matter.
std::unique_ptr<CControlView> MakeControlView(TemplateNode const& node, CMnemonics& mnemonics, EventSink sink);

}  // namespace norva
