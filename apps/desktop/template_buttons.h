#pragma once

#include "norva/column_text_dialog.h"
#include "qt_dialog.h"

namespace norva {

/// Adds "Use template" and "Save as template" above the controls of a column dialog, which the window shows.
void AddTemplateButtons(CQtDialog& window, CColumnTextDialog& dialog);

}  // namespace norva
