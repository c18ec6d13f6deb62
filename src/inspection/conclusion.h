#pragma once

#include "inspection/file_reading.h"
#include "inspection/sample.h"
#include "norva/inspection.h"

namespace norva {

/// The proposal that a reading of a file comes to: settings, findings with their evidence, lines that do not agree.
Inspection Conclude(Sample const& sample, InspectionOptions const& options, FileReading&& reading, FileSigns&& signs);

}  // namespace norva
