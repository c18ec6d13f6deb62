#pragma once

#include "inspection/column_facts.h"
#include "norva/inspection.h"

#include <string>
#include <vector>

namespace norva {

/// Which numbers stand for missing values in one column.
struct MissingNumbers {
    struct Doubt {
        DummySeen dummy;
        std::string reason;
    };
    std::vector<DummySeen> missing;
    std::vector<DummySeen> kept;
    std::vector<Doubt> doubts;  ///< among the kept ones
};

/// A number of that shape is missing when it comes twice or more in the table and stands apart in its column: of the
/// other sign than all other values, or far outside, or 1e30 and beyond.
std::vector<MissingNumbers> FindMissingNumbers(std::vector<CColumnFacts> const& columns,
                                               InspectionOptions const& options);

}  // namespace norva
