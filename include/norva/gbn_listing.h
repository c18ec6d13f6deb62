#pragma once

#include "norva/api.h"
#include "norva/values.h"

#include <string>
#include <vector>

namespace norva {

/// What stands in a GBN file, without its values.
struct GbnListing {
    struct Line {
        std::string name;
        long locationCount = 0;
    };

    std::vector<NorvaChannelStruct> channels;  ///< as an import would describe them
    std::vector<Line> lines;
    std::string problem;  ///< why reading stopped before the end of the data, and where; else empty
};

/// Lists a GBN file without importing it. 0, with the reason in GetLastErrorText(), when it cannot be read or has
/// another signature.
NORVA_API int ListGbnFile(std::string const& path, GbnListing& listing);

}  // namespace norva
