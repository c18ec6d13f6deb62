#pragma once

#include "exchange/import_format.h"
#include "norva/file_util.h"

#include <string>

namespace norva {

/// What one call of an exported function works with. Lives for that call.
class CExpImpContext {
public:
    CExpImpContext() = default;
    CExpImpContext(CExpImpContext const&) = delete;
    CExpImpContext& operator=(CExpImpContext const&) = delete;
    virtual ~CExpImpContext();

    /// Asks for the format, the input file and the name of the new store file and runs the importer.
    /// `storePath` receives the proposed and then the confirmed name.
    int ImportData(CNorvaFileUtil* store, std::string& storePath, CWindow* owner, int formatLevel);

    /// Asks for the output file, proposing `fileName`, and runs the exporter of its type. `newStoreFileName` is
    /// emptied once a name is confirmed and becomes that name for a native file, whatever the exporter's result.
    int ExportData(CNorvaFileUtil* store, std::string const& fileName, std::string& newStoreFileName, CWindow* owner);

private:
    int m_formatLevel = 0;
    CNorvaFileUtil* m_store = nullptr;
    std::string m_storeFileName;
    int m_gravityMeterMode = 0;
};

/// The store path that is proposed for an input file of a format.
std::string ProposedStorePath(std::string const& inputPath, ImportFormatCode code);

}  // namespace norva
