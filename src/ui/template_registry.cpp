#include "ui/template_registry.h"

#include "ui/template_builders.h"

#include <mutex>

namespace norva {

namespace {

// Both are initialised without code, so they are ready for a module of any object file.
constinit CTemplateModule* g_firstModule = nullptr;
constinit std::mutex g_chainMutex;

constexpr TemplateEntry kLibraryTemplates[] = {
    {4000, templates::Export4000},    {4003, templates::SetChannels4003},   {4004, templates::BinaryImport4004},
    {4053, templates::Progress4053},  {4059, templates::GbnImport4059},     {4060, templates::Delimiters4060},
    {4062, templates::CG3Import4062}, {4063, templates::ImportFormats4063},
};

/// Makes the library's templates known when it is loaded, and no longer once it is unloaded.
CTemplateModule const g_libraryModule{kLibraryTemplates};

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

std::span<TemplateEntry const> LibraryTemplates() {
    return kLibraryTemplates;
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
