#pragma once

#include "norva/import_report.h"

#include <gtest/gtest.h>

#include <string>

namespace norva::test {

/// The last import's report as "2 losses; X: no_data 1, missing 2; left out 1"; fails the test where it does not
/// account for all `size` bytes of the source.
inline std::string FindingsOfLastImport(std::uint64_t size) {
    ImportReport report;
    EXPECT_EQ(GetImportReport(report, 0), 1);
    EXPECT_TRUE(report.IsAccounted());
    EXPECT_EQ(report.sourceSize, size);
    std::string text = std::to_string(report.LossCount()) + " losses";
    for (ReportChannel const& channel : report.channels) {
        std::string separator = "; " + channel.settings.name + ": ";
        for (ReportKind const* kind = kReportKinds; kind->name != nullptr; ++kind) {
            std::uint64_t const count = (channel.*kind->finding).count;
            if (count == 0) continue;
            text += separator + kind->name + " " + std::to_string(count);
            separator = ", ";
        }
    }
    if (report.leftOut.count > 0) text += "; left out " + std::to_string(report.leftOut.count);
    if (report.cutRecords.count > 0) text += "; cut " + std::to_string(report.cutRecords.count);
    return text;
}

}  // namespace norva::test
