#pragma once

#include "norva/import_report.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace norva {

/// Values of points that no column takes, counted by the names of their elements.
class CLeftOutValues {
public:
    void Add(std::string_view name);
    /// Adds the counts to the report of the source.
    void Report(ImportReport& report) const;
    /// "hdop 12, sat 40".
    std::string Names() const;

private:
    /// The last stands for all names that came later.
    std::vector<std::pair<std::string, std::uint64_t>> m_names;
};

/// Accounts for every point of a source: those written as rows, those left out, and those that the file ends in.
void ReportPoints(std::uint64_t points, std::uint64_t rows, std::uint64_t leftOut, ImportReport& report);

}  // namespace norva
