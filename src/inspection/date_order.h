#pragma once

#include "inspection/column_facts.h"

#include <optional>
#include <string>

namespace norva {

/// In which order the parts of a column's dates stand.
struct DateOrder {
    unsigned order = 0;  ///< one bit; 0: no order suits every row
    std::string evidence;
    bool isDoubt = false;
    unsigned rivals = 0;  ///< bits of the other orders that suit
};

/// What every row allows decides; then the steps from row to row; then day first.
DateOrder FindDateOrder(CColumnFacts const& facts, std::optional<std::string> const& settled);

/// "dmy".
std::string OrderName(unsigned order);
unsigned OrderBit(std::string_view name);
/// "DD/MM/YYYY".
std::string DateFormText(unsigned order, char separator, bool isShortYear);

}  // namespace norva
