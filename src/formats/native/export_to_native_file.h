#pragma once

#include "exchange/export_walk.h"
#include "norva/exporter_base.h"

#include <string_view>
#include <vector>

namespace norva {

/// Writes chosen lines and channels as a native file: the text sections PROFILES, CHANNELS and DATA, the last with the
/// values in binary form, channel after channel. The layout is that of a store ("docs/store-format.md").
///
/// Onto the open store's own file it writes a whole store: with hidden lines, deleted marks, all elements of arrays and
/// the exact names, which the layout alone cannot carry. Lines that could not be chosen follow those that were.
class CExportToNativeFile : public CExporterBase {
public:
    CExportToNativeFile(CNorvaFileUtil* store, std::string outputFile, CWindow* owner);
    virtual ~CExportToNativeFile();

    /// 1 when the file was written; 0 when the dialog was cancelled or the file could not be written.
    int Export();
    Status Run(ExportJob& job);

    /// `value` when it lies between -32767 and 32767, both excluded, else 32767.
    static int ClampShort(int value);

    // Values of the data section, as the walk hands them out.
    bool Packed(ExportChannel const& channel, std::string_view values);
    bool Single(ExportChannel const& channel, StoreValue const* value);

private:
    // Each writes its section and returns 1.
    int WriteProfiles();
    int WriteChannels(int count, int const* channels);
    int WriteDataStart();
    int WriteDataEnd();
    Status WriteData(ExportJob& job);
    void CountChangedNames(ExportReport& report, std::vector<ExportChannel> const& channels) const;

    std::vector<char> m_shorts;
};

}  // namespace norva
