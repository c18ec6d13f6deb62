#pragma once

#include "inspection/source_lines.h"

#include <cstdint>
#include <string>
#include <vector>

namespace norva {

struct SampleLine {
    std::string text;
    std::uint64_t number = 0;  ///< line of the file; 0 where it is not known
};

/// Lines from everywhere in the file: the first ones, then stretches evenly through it. A preamble of some hundred
/// lines is seen as such, and so are data that change their look.
struct Sample {
    std::vector<SampleLine> lines;
    std::size_t headLines = 0;  ///< of the start of the file
    bool isWhole = false;       ///< every line of the file is in it
};

/// False after a read error.
bool TakeSample(CSourceLines& source, Sample& sample);

}  // namespace norva
