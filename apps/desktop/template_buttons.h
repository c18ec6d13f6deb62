#pragma once

#include "qt_dialog.h"

namespace norva {

/// Adds "Use template" and "Save as template" above the controls of a column dialog.
void AddTemplateButtons(CQtDialog& window);

}  // namespace norva
