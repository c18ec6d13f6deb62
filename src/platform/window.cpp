#include "norva/window.h"

namespace norva {

CWindow::~CWindow() = default;

std::intptr_t CWindow::SendMessage(unsigned /*message*/, std::intptr_t /*first*/, std::intptr_t /*second*/) {
    return 0;
}

}  // namespace norva
