#pragma once

#include "formats/gbn/gbn_file.h"
#include "norva/exporter_base.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace norva {

class CProgressReporter;

/// Writes chosen lines and channels of a store as a GBN file.
class CExportToGBNFile : public CExporterBase {
public:
    CExportToGBNFile(CNorvaFileUtil* store, std::string outputFile, CWindow* owner);
    virtual ~CExportToGBNFile();

    /// 1 when the file was written; 0 when the user cancelled or the file could not be written.
    int Export();

private:
    /// A channel that is exported, as the store has it and as the file gets it.
    struct Channel {
        int index = 0;
        int dataType = 0;
        std::size_t arraySize = 0;
        std::size_t elementWidth = 0;  ///< of the text, or of the first element
        std::size_t storeWidth = 0;    ///< bytes of a location in the store; 0 when it does not tell
        std::int32_t valueType = 0;
    };
    /// Locations one after the other that are not marked deleted.
    struct LocationRun {
        long first = 0;
        long count = 0;
    };

    void WriteChannelRecord(int position, std::size_t number);
    /// False, with a message, when the format cannot hold the line.
    bool WriteLine(int profile, std::size_t number, CProgressReporter& progress);
    void WriteRun(Channel const& channel, int profile, LocationRun run);
    void WriteColumnValues(Channel const& channel, long count);
    /// Takes a value from the store on its own; one that the store does not give is written as no-data.
    void WriteSingleValue(Channel const& channel, int profile, long location);
    void AppendText(Channel const& channel, std::string_view text);

    std::unique_ptr<GbnFile> m_file;
    std::vector<Channel> m_channels;
    std::vector<LocationRun> m_kept;  ///< of the line at hand
    std::vector<char> m_values;       ///< as the store gives them
    std::string m_bytes;              ///< as the file takes them
    std::string m_text;
};

}  // namespace norva
