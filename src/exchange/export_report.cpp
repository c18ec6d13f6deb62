#include "norva/export_report.h"

namespace norva {

ExportKind const kExportKinds[] = {
    {"fewerDigits", "written with fewer digits than they have", &ExportReportChannel::fewerDigits},
    {"exponents", "written with an exponent and fewer digits than they have", &ExportReportChannel::exponents},
    {"cutTexts", "texts cut", &ExportReportChannel::cutTexts},
    {"splitTexts", "texts that are empty or hold blanks, no single column for a reader",
     &ExportReportChannel::splitTexts},
    {"replaced", "numbers that the file cannot hold, written as no-data", &ExportReportChannel::replaced},
    {"laterElements", "elements of arrays after the first, not written", &ExportReportChannel::laterElements},
    {"notGiven", "values that the store did not give", &ExportReportChannel::notGiven},
    {nullptr, nullptr, nullptr}};

std::uint64_t ExportReport::LossCount() const {
    std::uint64_t sum = 0;
    for (ExportReportChannel const& channel : channels) {
        for (ExportKind const* kind = kExportKinds; kind->name != nullptr; ++kind) sum += channel.*kind->count;
    }
    return sum;
}

}  // namespace norva
