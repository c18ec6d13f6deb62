#include "ui/template_registry.h"

#include <mutex>

namespace norva {

namespace {

// Both are initialised without code, so they are ready for a module of any object file.
constinit CTemplateModule* g_firstModule = nullptr;
constinit std::mutex g_chainMutex;

}  // namespace

CTemplateModule::CTemplateModule(std::span<TemplateEntry const> entries) : m_entries(entries) {
    std::lock_guard lock(g_chainMutex);
    m_next = g_firstModule;
    g_firstModule = this;
}

CTemplateModule::~CTemplateModule() {
    std::lock_guard lock(g_chainMutex);
    for (CTemplateModule** link = &g_firstModule; *link != nullptr; link = &(*link)->m_next) {
        if (*link == this) {
            *link = m_next;
            return;
        }
    }
}

DialogTemplate const* FindDialogTemplate(int number) {
    std::lock_guard lock(g_chainMutex);
    for (CTemplateModule const* module = g_firstModule; module != nullptr; module = module->m_next) {
        for (TemplateEntry const& entry : module->m_entries) {
            if (entry.number == number) return &entry.make();
        }
    }
    return nullptr;
}

}  // namespace norva
