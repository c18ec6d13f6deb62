#include "norva/controls.h"

namespace norva {

std::vector<int> CControl::ChosenRows() const {
    if (selectedWithModifier) return selected;
    if (caret < 0 || caret >= RowCount()) return {};
    return {caret};
}

}  // namespace norva
