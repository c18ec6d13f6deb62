#include "norva/exporter_base.h"

#include "export/export_selection_dlg.h"
#include "norva/import_export.h"
#include "platform/files.h"
#include "platform/last_error.h"
#include "platform/paths.h"
#include "ui/messages.h"

#include <unistd.h>
#include <algorithm>
#include <cerrno>

namespace norva {

CExporterBase::CExporterBase(CNorvaFileUtil* store, std::string outputFile, CWindow* owner)
    : m_store(store), m_outputFile(std::move(outputFile)), m_owner(owner) {}

CExporterBase::~CExporterBase() = default;

void CExporterBase::FillProfileArray(std::vector<std::string>& names) {
    m_profileIndexTable.clear();
    for (int profile = 0; profile < m_store->ProfileCount; ++profile) {
        std::string name;
        long count = 0;
        int flag = 0;
        m_store->GetProfileInfo(profile, name, count, flag);
        if (flag != 0) continue;
        long location = 0;
        while (location < count && m_store->IsLocMarkedToDelete(profile, location) != 0) ++location;
        if (location >= count) continue;
        names.push_back(std::move(name));
        m_profileIndexTable.push_back(profile);
    }
}

void CExporterBase::FillChannelArray(std::vector<std::string>& names) {
    for (int k = 0; k < m_store->ChannelCount; ++k) {
        names.push_back(m_store->GetChannelName(m_store->GetFileChanIndex(k)));
    }
}

void CExporterBase::AdjustProfileToSelected(int count, int const* profiles) {
    m_selectedProfiles.clear();
    if (count > 0) m_selectedProfiles.assign(profiles, profiles + count);
}

int CExporterBase::isProfExported(int profile) const {
    return std::find(m_selectedProfiles.begin(), m_selectedProfiles.end(), profile) != m_selectedProfiles.end() ? 1 : 0;
}

int CExporterBase::isChannelExported(int channel, int count, int const* channels) const {
    if (count < 1) return 0;
    return std::find(channels, channels + count, channel) != channels + count ? 1 : 0;
}

bool CExporterBase::RunSelection(CExportSelectionDlg& dialog, std::vector<std::string> const& channelNames,
                                 ExportSelection& selection) {
    std::vector<std::string> names;
    FillProfileArray(names);
    dialog.SetProfileNames(names);
    dialog.SetProfileIndexTable(m_profileIndexTable);
    dialog.SetChannelNames(channelNames);
    if (dialog.DoModal() != kButtonOk) return false;
    selection = dialog.Selection();
    AdjustProfileToSelected(static_cast<int>(selection.profiles.size()), selection.profiles.data());
    return true;
}

void CExporterBase::CheckOldFile() {
    if (!FileExists(m_outputFile)) return;
    int error = 0;
    std::string const folder(FolderOf(m_outputFile));
    if (IsFolder(m_outputFile)) {
        error = EISDIR;
    } else if (access(folder.empty() ? "." : folder.c_str(), W_OK | X_OK) != 0) {
        error = errno;
    }
    if (error != 0) ShowSystemError(error);
}

bool CExporterBase::OpenOutput() {
    m_output = std::make_unique<CReplacementFile>();
    if (m_output->Open(m_outputFile)) {
        ClearLastErrorText();  // what stands there at the end is a value that could not be read
        return true;
    }
    SetLastErrorText("Couldn't write the file : " + m_outputFile + "\n" + SystemErrorText(m_output->Error()));
    m_output.reset();
    return false;
}

bool CExporterBase::Write(std::string_view bytes) {
    return m_output->Write(bytes);
}

int CExporterBase::FinishOutput() {
    if (std::string const unread = GetLastErrorText(); !unread.empty()) {
        m_output.reset();
        ShowMessage(unread);
        return 0;
    }
    bool const done = m_output->Commit();
    int const error = m_output->Error();
    m_output.reset();
    if (!done) ShowMessage("Couldn't write the file : " + m_outputFile + "\n" + SystemErrorText(error));
    return done ? 1 : 0;
}

}  // namespace norva
