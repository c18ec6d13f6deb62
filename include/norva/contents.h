#pragma once

#include "norva/api.h"
#include "norva/settings.h"
#include "norva/status.h"
#include "norva/values.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// What a source offers to choose from: the lists whose places GbnSettings and Cg3Settings hold. Nothing is shown, and
/// no values are kept.
namespace norva {

struct GbnListing {
    struct Line {
        std::string name;
        std::int64_t locations = 0;
    };

    std::vector<NorvaChannelStruct> channels;  ///< as an import describes them to the store when nothing is changed
    std::vector<Line> lines;
    std::string problem;  ///< why the file was read only in part, and up to where; else empty
};

/// Lists what a GBN file holds. Fails for a file that cannot be read or is of another format.
NORVA_API Status ListGbnFile(std::string const& path, GbnListing& listing);

struct Cg3Listing {
    std::vector<std::string> columns;  ///< titles; "A:" stands for the heights, which become a channel "Height"
    std::vector<int> usual;            ///< places of the columns that are imported when none are chosen
};

/// Lists the columns of a CG3 dump. Fails for a file that cannot be read or has no line of column titles.
NORVA_API Status ListCg3File(std::string const& path, Cg3Listing& listing);

/// "int32", "float", "double" or "int16"; empty for None.
NORVA_API std::string_view RecordFormatName(RecordChannel::Format format);
/// The format of such a name.
NORVA_API std::optional<RecordChannel::Format> FindRecordFormat(std::string_view name);
/// Bytes of a value in the record; 0 for None.
NORVA_API std::size_t RecordFormatWidth(RecordChannel::Format format);

}  // namespace norva
