#pragma once

#include "inspection/sample.h"
#include "norva/settings.h"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/// Where the data begin, and the names and units above them.
namespace norva {

struct HeaderChoice {
    std::vector<std::string> names;  ///< one per column; "" where there is none
    std::vector<std::string> units;
    std::vector<std::uint64_t> nameLines;  ///< from above; two where names were joined
    std::uint64_t unitLine = 0;            ///< 0: none
    std::uint64_t firstDataLine = 1;
    std::uint64_t firstMarkerLine = 1;
    std::string headerText;  ///< the line of the names as it stands
    bool trailingSeparator = false;
    std::uint64_t textAbove = 0;  ///< last line of text above the data where no names were found
    bool byTextsAlone = false;    ///< no column is typed: told by what comes back in its column
    bool isUneven = false;        ///< the names are not as many as the columns
    bool lacksEnd = false;        ///< rows end in a separator, the names do not
    std::string problem;          ///< why the line that was told holds no names; else empty
};

/// `reading` has separators, quotes and comment marks set; `looks` loses its last column where every row ends in a
/// separator. Looks at the lines of the start of the file alone. `told`: the line of the names, where a person says it;
/// 0 for none.
HeaderChoice FindHeader(Sample const& sample, TextReading const& reading, std::vector<ColumnLook>& looks,
                        std::optional<std::uint64_t> told);

}  // namespace norva
