#include "norva/exporter_base.h"

#include "exchange/export_selection_dlg.h"
#include "norva/import_export.h"
#include "platform/files.h"
#include "platform/last_error.h"
#include "platform/numbers.h"
#include "ui/messages.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace norva {

namespace {

/// 0 when this user may do that with the path, else the error number.
int AccessError(std::string const& path, int mode) {
    return faccessat(AT_FDCWD, path.c_str(), mode, AT_EACCESS) == 0 ? 0 : errno;
}

/// What would keep an existing file from being deleted, or a write-protected one from being replaced: 0 or the error
/// number.
int DeletionError(std::string const& path) {
    if (IsFolder(path)) return EISDIR;
    if (int const error = AccessError(path, W_OK)) return error;
    std::filesystem::path const folder = std::filesystem::path(path).parent_path() / ".";
    if (int const error = AccessError(folder.string(), W_OK | X_OK)) return error;
    // In a folder with the sticky bit a file can be deleted by its owner and the folder's alone.
    struct stat file {};
    struct stat around {};
    uid_t const user = geteuid();
    bool const known = lstat(path.c_str(), &file) == 0 && stat(folder.c_str(), &around) == 0;
    bool const isOthers = user != 0 && user != file.st_uid && user != around.st_uid;
    return known && isOthers && (around.st_mode & S_ISVTX) != 0 ? EPERM : 0;
}

}  // namespace

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

std::string CExporterBase::GetFormatString(int displayFormat, int decimals) {
    bool const isExponent = displayFormat == DisplayFormat::kExponent;
    std::string format = "%";
    if (decimals != -1 && (isExponent || displayFormat == DisplayFormat::kFixed)) {
        format += '.';
        AppendInteger(format, decimals);
    }
    return format += isExponent ? 'e' : 'f';
}

bool CExporterBase::RunSelection(CExportSelectionDlg& dialog, std::vector<std::string> const& channelNames,
                                 ExportSelection& selection) {
    if (!m_mayReplaceStore && IsStoreItself()) {
        ShowMessage("The open store cannot be exported onto itself : " + m_outputFile);
        return false;
    }
    std::vector<std::string> names;
    FillProfileArray(names);
    dialog.SetProfileNames(names);
    dialog.SetProfileIndexTable(m_profileIndexTable);
    dialog.SetChannelNames(channelNames);
    if (dialog.DoModal() != kButtonOk) return false;
    selection.profiles = dialog.GetSelectedProfiles();
    selection.channels = dialog.GetSelectedChannels();
    selection.labelAsChannel = dialog.labelAsChannel;
    selection.pointIdAsChannel = dialog.pointIdAsChannel;
    selection.exportUnits = dialog.exportUnits;
    AdjustProfileToSelected(static_cast<int>(selection.profiles.size()), selection.profiles.data());
    return true;
}

void CExporterBase::CheckOldFile() {
    if (!FileExists(m_outputFile)) return;
    if (int const error = DeletionError(m_outputFile)) ShowSystemError(error);
}

bool CExporterBase::IsStoreItself() const {
    return IsSameFile(m_outputFile, m_store->GetNorvaFileName());
}

bool CExporterBase::OpenOutput() {
    m_output = std::make_unique<CReplacementFile>();
    using InPlace = CReplacementFile::InPlace;
    if (m_output->Open(m_outputFile, IsStoreItself() ? InPlace::Never : InPlace::Allowed)) {
        ClearLastErrorText();  // what stands there at the end is a value that could not be read
        return true;
    }
    SetLastErrorText(FileErrorText("write", m_outputFile, m_output->Error()));
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
    if (!done) ShowMessage(FileErrorText("write", m_outputFile, error));
    return done ? 1 : 0;
}

}  // namespace norva
