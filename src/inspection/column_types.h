#pragma once

#include "inspection/column_facts.h"
#include "inspection/missing_numbers.h"
#include "norva/inspection.h"

#include <string>
#include <vector>

namespace norva {

/// What one column of a file becomes: one channel, or two where a cell holds date and time.
struct ColumnPlan {
    struct Channel {
        NorvaChannelStruct channel;
        ColumnReading reading;
    };
    std::vector<Channel> channels;
    std::vector<InspectionFinding> findings;
    std::vector<InspectedLine> spoilt;  ///< cells that are read as missing
};

struct ColumnNaming {
    std::string name;
    std::string units;
    bool isLabel = false;  ///< names the lines of the survey: stays text
};

/// The smallest type that gives back every written digit, over all rows.
ColumnPlan PlanColumn(CColumnFacts const& facts, ColumnLook const& look, int source, ColumnNaming const& naming,
                      MissingNumbers const& missing, TextReading const& reading, InspectionOptions const& options);

}  // namespace norva
