#pragma once

#include "norva/exporter_base.h"

#include <cstddef>
#include <vector>

namespace norva {

/// Writes chosen lines and channels as a native file: the text sections PROFILES, CHANNELS and DATA, the last with the
/// values in binary form, channel after channel. The layout is that of a store ("docs/store-format.md").
class CExportToNativeFile : public CExporterBase {
public:
    CExportToNativeFile(CNorvaFileUtil* store, std::string outputFile, CWindow* owner);
    virtual ~CExportToNativeFile();

    /// 1 when the file was written; 0 when the dialog was cancelled or the file could not be written.
    int Export();

    /// `value` when it lies between -32767 and 32767, both excluded, else 32767.
    static int ClampShort(int value);

private:
    // Each writes its section and returns 1.
    int WriteProfiles();
    int WriteChannels(int count, int const* channels);
    int WriteDataStart();
    int WriteDataEnd();
    void WriteData(ExportSelection const& selection);

    struct Column {
        int index = 0;  ///< as the store's calls take it
        int dataType = 0;
        std::size_t textSize = 0;
        std::size_t blockWidth = 0;  ///< bytes of a value in the store's packed columns; 0: to be read one by one
    };
    Column ColumnAt(int position);
    // The values of a profile's locations, less the deleted ones. False after a failure.
    bool WriteBlocks(Column const& column, int profile, long locations);
    bool WriteValues(Column const& column, int profile, long locations);

    std::vector<char> m_block;
};

}  // namespace norva
