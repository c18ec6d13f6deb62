#pragma once

#include "inspection/column_facts.h"
#include "norva/inspection.h"

#include <string>
#include <vector>

namespace norva {

/// Columns that may hold the names of the survey's lines: by their names, the first column too where there are none.
std::vector<std::size_t> FindLabelCandidates(std::vector<std::string> const& names);

/// The column whose changes start a line of the survey; -1 for none. Adds what is to be said of it.
int FindLabelColumn(std::vector<std::string> const& names, std::vector<CColumnFacts> const& columns,
                    std::vector<InspectionFinding>& findings);

}  // namespace norva
