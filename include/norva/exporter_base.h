#pragma once

#include "norva/api.h"
#include "norva/file_util.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace norva {

class CExportSelectionDlg;
class CReplacementFile;

/// The user's choice in the export dialog.
struct ExportSelection {
    std::vector<int> profiles;  ///< store profile numbers in output order
    std::vector<int> channels;  ///< positions in the store's channel order, in the order of the export list
    int labelAsChannel = 0;
    int pointIdAsChannel = 0;
    int exportUnits = 0;
};

/// What every exporter carries: the lists of the dialog, the selected profiles, the output file.
class NORVA_API CExporterBase {
public:
    CExporterBase(CExporterBase const&) = delete;
    CExporterBase& operator=(CExporterBase const&) = delete;

protected:
    CExporterBase(CNorvaFileUtil* store, std::string outputFile, CWindow* owner);
    /// Not virtual: an exporter is never deleted through this base.
    ~CExporterBase();

    /// Empties the profile index table, lists every profile that is shown and has a location not marked deleted.
    void FillProfileArray(std::vector<std::string>& names);
    void FillChannelArray(std::vector<std::string>& names);
    void AdjustProfileToSelected(int count, int const* profiles);
    int isProfExported(int profile) const;
    int isChannelExported(int channel, int count, int const* channels) const;
    /// printf's format for a floating value, which is how its cell text reads: "%.2f", "%e".
    static std::string GetFormatString(int displayFormat, int decimals);

    /// Fills the lists and runs the dialog, whose presets are the exporter's; false when it was cancelled. The
    /// selected profiles are adjusted. The open store's own file as the output is refused before, with a message,
    /// unless m_mayReplaceStore says that the exporter writes a store.
    bool RunSelection(CExportSelectionDlg& dialog, std::vector<std::string> const& channelNames,
                      ExportSelection& selection);

    /// The step that deletes an older output file. The older file stays until the new one is complete; what would
    /// keep it from being deleted is shown in the "Error" box, and the export goes on as far as it can.
    void CheckOldFile();
    /// Opens the file that is to take the output's place. False, without a message, with the last error set. The
    /// open store's own file is never written in place.
    bool OpenOutput();
    /// False after a failure; FinishOutput() then says why.
    bool Write(std::string_view bytes);
    /// Puts the finished file in its place: 1; else a message, 0, and the older file as it was.
    int FinishOutput();

    CNorvaFileUtil* m_store;
    std::string m_outputFile;
    CWindow* m_owner;
    bool m_mayReplaceStore = false;
    std::unique_ptr<CReplacementFile> m_output;  ///< open from OpenOutput to FinishOutput
    std::vector<int> m_selectedProfiles;
    std::vector<int> m_profileIndexTable;

private:
    bool IsStoreItself() const;
};

}  // namespace norva
