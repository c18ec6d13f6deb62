#pragma once

#include "norva/api.h"
#include "norva/exporter_base.h"

namespace norva {

class CSpreadsheet;

/// Writes chosen lines and channels of a store as a worksheet in BIFF2 records: one header row, then one row a
/// location; numbers as numbers, everything else as text. Columns follow the store's channel order.
class NORVA_API CExportToExcel : public CExporterBase {
public:
    CExportToExcel(CNorvaFileUtil* store, std::string outputFile, CWindow* owner);
    virtual ~CExportToExcel();

    /// 1 when the file was written; 0 when the dialog was cancelled or the file could not be written.
    int Export();

private:
    /// Asks whether to write a sheet that readers of the format cannot hold whole; true when it fits.
    bool ConfirmSize(ExportSelection const& selection, std::vector<int> const& channels);
    void FillSheet(CSpreadsheet& sheet, ExportSelection const& selection, std::vector<int> const& channels);
};

}  // namespace norva
