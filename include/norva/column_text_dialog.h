#pragma once

#include "norva/column_text.h"
#include "norva/dialog.h"

#include <functional>

namespace norva {

/// The dialog "Import: Set Channels", for a toolkit that has settings of its own to offer (templates). A toolkit finds
/// it by dynamic_cast from the dialog that it shows.
class NORVA_API CColumnTextDialog : public CDialog {
public:
    using CDialog::CDialog;
    ~CColumnTextDialog() override;

    virtual CColumnTextDraft const& Draft() const = 0;
    /// Makes the choices that lead from the present settings to others, as a person would: `onEvent`, unless null, is
    /// told of each before it is made, which is what a recorder needs. The selected column stays.
    virtual Status TakeSettings(ColumnTextSettings const& settings,
                                std::function<void(DialogEvent const& event)> const& onEvent) = 0;
};

}  // namespace norva
