#pragma once

#include "norva/controls.h"

#include <span>

namespace norva {

/// One template of a module: its number, and the function that makes it on first use.
struct TemplateEntry {
    int number = 0;
    DialogTemplate const& (*make)() = nullptr;
};

/// A module in the chain that FindDialogTemplate walks: there from construction to destruction.
class CTemplateModule {
public:
    explicit CTemplateModule(std::span<TemplateEntry const> entries);
    CTemplateModule(CTemplateModule const&) = delete;
    CTemplateModule& operator=(CTemplateModule const&) = delete;
    ~CTemplateModule();

private:
    friend DialogTemplate const* FindDialogTemplate(int number);

    std::span<TemplateEntry const> m_entries;
    CTemplateModule* m_next;
};

}  // namespace norva
