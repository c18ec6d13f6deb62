#pragma once

#include "norva/api.h"
#include "norva/file_util.h"
#include "norva/status.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace norva {

class CReplacementFile;
struct ExportChoices;
struct ExportJob;

/// What every exporter carries: the lists to choose from, the selected profiles, the output file.
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

    /// Runs an export that asks a person, and gives the fixed result with its reason as the last error.
    int RunAsked(std::function<Status(ExportJob& job)> const& run);

    /// Lets a person choose in the export window, or checks the settings that were given. After a success the job's
    /// settings name every line and channel to write, and the selected profiles are adjusted. The open store's own file
    /// as the output is refused before, unless m_mayReplaceStore says that the exporter writes a store.
    Status Choose(ExportJob& job, ExportChoices const& choices);
    /// The step that deletes an older output file. The older file stays until the new one is complete; what would
    /// keep it from being deleted is shown in the "Error" box, and the export goes on as far as it can.
    void CheckOldFile();
    /// Opens the file that is to take the output's place; a failure is silent. The open store's own file is never
    /// written in place.
    Status OpenOutput();
    /// False after a failure, which FinishOutput() tells.
    bool Write(std::string_view bytes);
    /// Puts the finished file in its place when everything was written; else the older file stays as it was.
    Status FinishOutput(Status written);
    bool IsStoreItself() const;

    CNorvaFileUtil* m_store;
    std::string m_outputFile;
    CWindow* m_owner;
    bool m_mayReplaceStore = false;
    std::unique_ptr<CReplacementFile> m_output;  ///< open from OpenOutput to FinishOutput
    std::vector<int> m_selectedProfiles;
    std::vector<int> m_profileIndexTable;

private:
    Status CheckSettings(ExportJob& job, ExportChoices const& choices) const;
};

}  // namespace norva
