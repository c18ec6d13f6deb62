#pragma once

#include "control_views.h"

namespace norva {

/// View of a list box, a list with columns or a preview grid.
std::unique_ptr<CControlView> MakeListView(TemplateNode const& node, CMnemonics& mnemonics, EventSink sink);

}  // namespace norva
