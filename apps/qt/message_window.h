#pragma once

#include "norva/toolkit.h"

class QWidget;

namespace norva {

/// Shows a message box of the library and waits for its answer.
MessageAnswer ShowMessageWindow(QWidget* parent, MessageRequest const& request);

/// Presses a button of the message box that is open, as a person would.
void PressMessageButton(MessageAnswer answer);

}  // namespace norva
