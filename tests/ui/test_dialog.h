#pragma once

#include "norva/dialog.h"

#include <functional>
#include <string>
#include <vector>

namespace norva {

/// A dialog on any template whose behaviour a test gives; what is protected is open.
class TestDialog : public CDialog {
public:
    explicit TestDialog(int number) : CDialog(number) {}

    using CDialog::Change;
    using CDialog::CheckedRadio;
    using CDialog::CheckRadio;
    using CDialog::Enable;
    using CDialog::EndDialog;
    using CDialog::Get;
    using CDialog::SelectAllRows;
    using CDialog::SelectRow;
    using CDialog::SetColumns;
    using CDialog::SetItems;
    using CDialog::SetRows;

    std::function<void()> onInit;
    std::function<void(DialogEvent const&)> onEvent;
    std::vector<DialogEvent> events;
    bool staysOpen = false;  ///< no button ends the dialog

    bool Do(DialogEvent const& event) {
        why.clear();
        return Perform(event, why);
    }
    std::string why;

protected:
    void OnInitDialog() override {
        if (onInit) onInit();
    }
    void OnEvent(DialogEvent const& event) override {
        events.push_back(event);
        if (onEvent) onEvent(event);
        if (!IsEnded() && !staysOpen) CDialog::OnEvent(event);
    }
};

}  // namespace norva
