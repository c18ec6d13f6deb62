#pragma once

#include "control_views.h"

#include <QDialog>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

class QBoxLayout;

namespace norva {

/// Draws any dialog of the library: its template's tree as layouts, its controls as widgets.
class CQtDialog : public QDialog {
public:
    explicit CQtDialog(CDialog& dialog, QWidget* parent = nullptr);
    ~CQtDialog() override;

    CDialog& Dialog() { return m_dialog; }
    /// Shows every control whose state has changed; closes the window when the dialog has ended.
    void RefreshAll();
    /// The same for a window of progress, which some importers change at every value: false when the last picture is
    /// too fresh to be drawn again. With `now` it is always drawn, and before this returns.
    bool RefreshProgress(bool now);
    CControlView* View(int control) const;
    /// Gives a further button of the window a letter of its own.
    QString WithMnemonic(std::string_view label) { return m_mnemonics.Assign(label); }

    /// Told of every act that the dialog took, before it acts on it (a recorder).
    std::function<void(DialogEvent const& event)> onEvent;

    void reject() override;

private:
    void Build(TemplateNode const& node, QBoxLayout& layout);
    void Take(DialogEvent const& event);

    struct Item {
        int id;
        std::unique_ptr<CControlView> view;
    };

    CDialog& m_dialog;
    CMnemonics m_mnemonics;
    std::vector<Item> m_items;
    std::chrono::milliseconds m_refreshed{};
    bool m_closing = false;
};

}  // namespace norva
