#pragma once

#include "ui/template_registry.h"

#include <span>

namespace norva {

/// The templates of this library's dialogs, in ascending order.
std::span<TemplateEntry const> LibraryTemplates();

}  // namespace norva
