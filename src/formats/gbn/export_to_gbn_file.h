#pragma once

#include "exchange/export_walk.h"
#include "formats/gbn/gbn_file.h"
#include "norva/exporter_base.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace norva {

/// Writes chosen lines and channels of a store as a GBN file.
class CExportToGBNFile : public CExporterBase {
public:
    CExportToGBNFile(CNorvaFileUtil* store, std::string outputFile, CWindow* owner);
    virtual ~CExportToGBNFile();

    /// 1 when the file was written; 0 when the user cancelled or the file could not be written.
    int Export();
    Status Run(ExportJob& job);

private:
    Status WriteRecords(ExportJob& job, GbnLineRecord const& today);
};

/// Writes the values of data blocks.
class CGbnValueWriter {
public:
    explicit CGbnValueWriter(GbnFile& file) : m_file(file) {}

    bool Packed(ExportChannel const& channel, std::string_view values);
    /// A value that the store does not give is written as no-data: the block counts it.
    bool Single(ExportChannel const& channel, StoreValue const* value);

private:
    void AppendText(ExportChannel const& channel, std::string_view text);

    GbnFile& m_file;
    std::string m_bytes;
};

}  // namespace norva
