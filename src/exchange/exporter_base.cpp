#include "norva/exporter_base.h"

#include "exchange/exception_guard.h"
#include "exchange/export_selection_dlg.h"
#include "exchange/export_walk.h"
#include "norva/import_export.h"
#include "platform/files.h"
#include "platform/last_error.h"
#include "platform/numbers.h"
#include "ui/messages.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <numeric>

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

int CExporterBase::RunAsked(std::function<Status(ExportJob& job)> const& run) {
    ClearLastErrorText();
    Status const status = Guarded("Couldn't write the file", m_outputFile, [&] {
        ExportJob job;
        job.store = m_store;
        job.outputPath = m_outputFile;
        job.owner = m_owner;
        return run(job);
    });
    return ConcludeAlone(status);
}

Status CExporterBase::CheckSettings(ExportJob& job, ExportChoices const& choices) const {
    constexpr char const* kWhat = "Couldn't write the file";
    auto const refuse = [&](std::string reason) { return Status::Failure(kWhat, m_outputFile, std::move(reason)); };
    auto const check = [&](std::vector<int> const& numbers, std::string const& kind, int count) {
        if (numbers.empty()) return refuse("no " + kind + " is chosen");
        std::vector<bool> seen(static_cast<std::size_t>(count));
        for (int const number : numbers) {
            std::string const named = kind + " " + std::to_string(number);
            if (number < 0 || number >= count) {
                return refuse("there is no " + named + ": the store has " + std::to_string(count) + ", counted from 0");
            }
            if (seen[static_cast<std::size_t>(number)]) return refuse(named + " is chosen twice");
            seen[static_cast<std::size_t>(number)] = true;
        }
        return Status();
    };

    ExportSettings& settings = job.settings;
    if (!settings.lines) {
        if (m_profileIndexTable.empty()) return refuse("the store has no line that is shown and has locations");
        settings.lines = m_profileIndexTable;
    }
    if (Status status = check(*settings.lines, "line", m_store->ProfileCount); !status) return status;
    for (int const profile : *settings.lines) {
        if (!std::ranges::binary_search(m_profileIndexTable, profile)) {
            return refuse("line " + std::to_string(profile) + " is hidden or has no locations");
        }
    }
    if (!settings.channels) {
        settings.channels.emplace(choices.channels.size());
        std::iota(settings.channels->begin(), settings.channels->end(), 0);
    }
    if (Status status = check(*settings.channels, "channel", m_store->ChannelCount); !status) return status;
    settings.pointId = settings.pointId && choices.pointId;
    settings.units = settings.units && choices.units;
    return {};
}

Status CExporterBase::Choose(ExportJob& job, ExportChoices const& choices) {
    job.report = {};
    if (!m_mayReplaceStore && IsStoreItself()) {
        return Status::Failure("The open store cannot be exported onto itself", m_outputFile);
    }
    if (job.asks) {
        CExportSelectionDlg dialog;
        dialog.settings = job.settings;
        dialog.settings.units = choices.units;
        dialog.SetProfileNames(choices.lines);
        dialog.SetProfileIndexTable(m_profileIndexTable);
        dialog.SetChannelNames(choices.channels);
        dialog.EnablePointId(choices.pointId ? 1 : 0);
        if (dialog.DoModal() != kButtonOk) return Status::Cancelled();
        job.settings = dialog.settings;
    } else if (Status status = CheckSettings(job, choices); !status) {
        return status;
    }
    AdjustProfileToSelected(static_cast<int>(job.settings.lines->size()), job.settings.lines->data());
    return {};
}

void CExporterBase::CheckOldFile() {
    if (!FileExists(m_outputFile)) return;
    if (int const error = DeletionError(m_outputFile)) ShowSystemError(error);
}

bool CExporterBase::IsStoreItself() const {
    return IsSameFile(m_outputFile, m_store->GetNorvaFileName());
}

Status CExporterBase::OpenOutput() {
    m_output = std::make_unique<CReplacementFile>();
    using InPlace = CReplacementFile::InPlace;
    if (m_output->Open(m_outputFile, IsStoreItself() ? InPlace::Never : InPlace::Allowed)) return {};
    int const error = m_output->Error();
    m_output.reset();
    return Status::FileFailure("write", m_outputFile, error).Silent();
}

bool CExporterBase::Write(std::string_view bytes) {
    return m_output->Write(bytes);
}

Status CExporterBase::FinishOutput(Status written) {
    std::unique_ptr<CReplacementFile> const output = std::move(m_output);
    if (!written || output->Commit()) return written;
    return Status::FileFailure("write", m_outputFile, output->Error());
}

}  // namespace norva
