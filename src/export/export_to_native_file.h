#pragma once

#include "norva/exporter_base.h"

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
};

}  // namespace norva
