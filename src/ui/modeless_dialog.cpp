#include "norva/toolkit.h"

#include <utility>

namespace norva {

CModelessDialog::~CModelessDialog() {
    DestroyWindow();
}

void CModelessDialog::Create() {
    if (IsCreated()) return;
    Open();
    m_toolkit = &CurrentToolkit();
    m_toolkit->WindowCreated(*this);
}

void CModelessDialog::SetWindowTitle(std::string title) {
    SetTitle(std::move(title));
    if (m_toolkit != nullptr) m_toolkit->WindowTitled(*this);
}

void CModelessDialog::ShowWindow() {
    if (m_toolkit != nullptr) m_toolkit->WindowShown(*this);
}

void CModelessDialog::DestroyWindow() {
    if (CToolkit* const toolkit = std::exchange(m_toolkit, nullptr)) toolkit->WindowDestroyed(*this);
}

void CModelessDialog::Changed() {
    if (m_toolkit != nullptr) m_toolkit->WindowChanged(*this, false);
}

void CModelessDialog::UpdateWindow() {
    if (m_toolkit != nullptr) m_toolkit->WindowChanged(*this, true);
}

}  // namespace norva
