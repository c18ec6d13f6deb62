#include "norva/toolkit.h"

#include <utility>

namespace norva {

CModelessDialog::~CModelessDialog() {
    DestroyWindow();
}

void CModelessDialog::Create() {
    if (m_created) return;
    Open();
    m_created = true;
    CurrentToolkit().WindowCreated(*this);
}

void CModelessDialog::SetWindowTitle(std::string title) {
    SetTitle(std::move(title));
    if (m_created) CurrentToolkit().WindowTitled(*this);
}

void CModelessDialog::ShowWindow() {
    if (m_created) CurrentToolkit().WindowShown(*this);
}

void CModelessDialog::DestroyWindow() {
    if (!m_created) return;
    m_created = false;
    CurrentToolkit().WindowDestroyed(*this);
}

void CModelessDialog::Changed() {
    if (m_created) CurrentToolkit().WindowChanged(*this, false);
}

void CModelessDialog::UpdateWindow() {
    if (m_created) CurrentToolkit().WindowChanged(*this, true);
}

}  // namespace norva
