#pragma once

#include "norva/api.h"
#include "norva/exporter_base.h"

namespace norva {

class CSpreadsheet;

/// Writes chosen lines and channels of a store as a worksheet in BIFF2 records: one header row, then one row per
/// location; numbers as numbers, everything else as text. Columns follow the store's channel order.
class NORVA_API CExportToExcel : public CExporterBase {
public:
    CExportToExcel(CNorvaFileUtil* store, std::string outputFile, CWindow* owner);
    virtual ~CExportToExcel();

    /// 1 when the file was written; 0 when the dialog was cancelled or the file could not be written.
    int Export();

    /// The same as the library's table of types asks for it: the job says who chooses.
    Status Run(ExportJob& job);

private:
    /// A sheet that readers of the format cannot hold whole is refused, unless the person or the settings want it.
    Status ConfirmSize(ExportJob& job) const;
    Status FillSheet(CSpreadsheet& sheet, ExportJob& job);
};

}  // namespace norva
