#include "formats/gbn/gbn_import.h"

#include "exchange/progress_dlg.h"
#include "exchange/report_draft.h"
#include "exchange/result.h"
#include "formats/gbn/gbn_format.h"
#include "formats/gbn/gbn_import_dlg.h"
#include "norva/import_export.h"
#include "platform/last_error.h"
#include "platform/paths.h"
#include "store/value_rules.h"
#include "ui/messages.h"

#include <sys/file.h>

#include <algorithm>
#include <cerrno>
#include <limits>
#include <new>
#include <unordered_set>

namespace norva {

namespace {

/// A progress window that is open as long as this object lives.
class ProgressWindow {
public:
    ProgressWindow(char const* title, std::string const& fileText) : m_reporter(m_window) {
        m_window.Create();
        m_window.SetWindowTitle(title);
        m_window.ResetBars();
        m_window.ShowFileName(fileText);
    }
    ProgressWindow(ProgressWindow const&) = delete;
    ProgressWindow& operator=(ProgressWindow const&) = delete;
    ~ProgressWindow() { m_window.DestroyWindow(); }

    CProgressReporter& Reporter() { return m_reporter; }

private:
    CProgressDlg m_window;
    CProgressReporter m_reporter;
};

bool IsImported(GbnChannelEntry const& entry) {
    return entry.selected != 0 && entry.description.dataType != DataType::kSkipped;
}

std::size_t ValueSize(NorvaChannelStruct const& channel) {
    return ValueWidth(channel.dataType) * static_cast<std::size_t>(channel.arraySize);
}

}  // namespace

int CGbnImport::Import(CNorvaFileUtil* store) {
    m_store = store;
    if (m_inputPath.empty()) return 0;
    if (!OpenInput()) {
        ShowMessage("File could not be open");
        return 0;
    }
    if (!Scan() || !AskForContents()) return 0;
    // What was told so far did not end the import; what follows may.
    ClearLastErrorText();
    if (!Prepare() || !WriteData()) return 0;
    Report();
    return 1;
}

bool CGbnImport::OpenInput() {
    if (!m_input.Open(m_inputPath, CFile::Mode::Read) || !m_input.Size(m_length)) return false;
    // Whoever still writes the file holds it; a file system without locks has nobody to keep out.
    return flock(m_input.Descriptor(), LOCK_SH | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

bool CGbnImport::Scan() {
    GbnOpenFileSource source(m_input, m_length);
    GbnFile file(source);
    if (file.ReadSignature() != kGbnSignature) ShowMessage("File is not Oasis Binary");
    {
        CWaitCursor const wait;
        ProgressWindow window("Import GBN", m_inputPath);
        ReadGbnContents(file, m_contents, GbnValues::Keep,
                        [&window](int percent) { window.Reporter().FilePercent(percent); });
    }
    if (file.Failed()) {
        ShowMessage("Couldn't read the file : " + m_inputPath + "\n" + SystemErrorText(m_input.Error()));
        return false;
    }
    if (!m_contents.problem.empty()) ShowMessage(m_contents.problem);
    if (m_contents.blocksBeforeLines > 0) {
        ShowMessage("Data blocks before the first line, which were left out: " +
                    std::to_string(m_contents.blocksBeforeLines));
    }
    return true;
}

bool CGbnImport::AskForContents() {
    CGbnImportDlg dialog(m_contents.channels, m_contents.lines, m_addFiducial);
    if (dialog.DoModal() != kButtonOk) return false;
    m_addFiducial = dialog.AddFiducial();
    return true;
}

bool CGbnImport::Prepare() {
    ProgressWindow const window("Loading data from the file", "Please wait a second");
    auto const count = static_cast<int>(m_contents.channels.size());
    if (!m_columns.Create(std::string(WithoutExtension(m_inputPath)), count, m_inputPath)) return false;
    if (m_addFiducial != 0 && !m_fiducials.Create(m_inputPath)) return false;
    if (!WriteTemporaryFiles()) {
        ShowMessage(GetLastErrorText());
        return false;
    }
    m_contents.arena.Clear();
    m_contents.values.clear();
    return Describe();
}

bool CGbnImport::WriteTemporaryFiles() {
    m_tallies.assign(m_contents.channels.size(), {});
    for (std::size_t i = 0; i < m_contents.channels.size(); ++i) {
        GbnChannelEntry const& entry = m_contents.channels[i];
        if (!IsImported(entry)) continue;
        if (!WriteGbnColumn(m_contents, i, DescribedGbnChannel(entry), m_columns, m_tallies[i])) return false;
    }
    if (m_addFiducial == 0) return true;
    auto const first = std::ranges::find_if(m_contents.channels, IsImported) - m_contents.channels.begin();
    GbnChannelValues const& values = m_contents.values[static_cast<std::size_t>(first)];
    return m_fiducials.Write(values.fiducialStart, values.fiducialIncrement, m_contents.locationCount);
}

bool CGbnImport::Describe() {
    for (GbnLineEntry const& line : m_contents.lines) {
        if (line.selected != 0) m_store->AddProfileToStructure(line.name, static_cast<long>(line.locationCount));
    }
    if (m_addFiducial != 0) m_store->AddChannelToStructure("FIDUCIAL", "", DataType::kDouble, 0, 1, 0, -1, -1, -1);
    for (GbnChannelEntry const& entry : m_contents.channels) {
        if (IsImported(entry)) m_store->AddChannelToStructure(DescribedGbnChannel(entry));
    }
    return m_store->SaveProfileStructure() != 0 && m_store->SaveChannelStructure() != 0 &&
           m_store->StartWriteData() != 0;
}

bool CGbnImport::WriteData() {
    ProgressWindow window("Import GBN", m_inputPath);
    CProgressReporter& progress = window.Reporter();
    MakeRoomForLines();
    if (m_addFiducial != 0 && !WriteFiducials()) return false;
    std::size_t const count = m_contents.channels.size();
    for (std::size_t i = 0; i < count; ++i) {
        progress.ChannelName(m_contents.channels[i].description.name);
        progress.FilePercent(static_cast<long long>(100 * (i + 1) / count));
        progress.ChannelPercent(0);
        if (IsImported(m_contents.channels[i]) && !WriteChannel(i, progress)) return false;
        m_columns.Remove(static_cast<int>(i));
        progress.ChannelPercent(100);
    }
    if (m_store->EndWriteData() == 0) return false;
    m_store->CloseCurFile();
    return true;
}

void CGbnImport::MakeRoomForLines() {
    std::size_t largest = sizeof(double);
    for (GbnChannelEntry const& entry : m_contents.channels) {
        if (IsImported(entry)) largest = std::max(largest, ValueSize(DescribedGbnChannel(entry)));
    }
    std::size_t longest = 0;
    for (GbnLineEntry const& line : m_contents.lines) {
        if (line.selected != 0) longest = std::max(longest, static_cast<std::size_t>(line.locationCount));
    }
    if (longest > std::numeric_limits<std::size_t>::max() / largest) throw std::bad_alloc();
    m_lineValues = TakeGbnBytes(largest * longest);
}

bool CGbnImport::WriteFiducials() {
    std::int64_t first = 0;
    for (GbnLineEntry const& line : m_contents.lines) {
        if (line.selected != 0) {
            if (!m_fiducials.Read(first, line.locationCount, m_lineValues.get())) {
                ShowMessage(GetLastErrorText());
                return false;
            }
            std::size_t const size = static_cast<std::size_t>(line.locationCount) * sizeof(double);
            TallyStored<double>(m_lineValues.get(), static_cast<std::size_t>(line.locationCount), m_fiducialTally);
            if (m_store->WriteHuge(m_lineValues.get(), size) == 0) return false;
        }
        first += line.locationCount;
    }
    // What of it has not reached the disk yet need not any more.
    m_fiducials.Close();
    return true;
}

bool CGbnImport::WriteChannel(std::size_t channel, CProgressReporter& progress) {
    std::size_t const valueSize = ValueSize(DescribedGbnChannel(m_contents.channels[channel]));
    std::uint64_t offset = 0;
    std::size_t const count = m_contents.lines.size();
    for (std::size_t k = 0; k < count; ++k) {
        GbnLineEntry const& line = m_contents.lines[k];
        std::size_t const size = static_cast<std::size_t>(line.locationCount) * valueSize;
        if (line.selected != 0) {
            progress.ChannelPercent(static_cast<long long>(100 * k / count));
            if (!m_columns.Read(static_cast<int>(channel), offset, m_lineValues.get(), size)) {
                ShowMessage(GetLastErrorText());
                return false;
            }
            if (m_store->WriteHuge(m_lineValues.get(), size) == 0) return false;
        }
        offset += size;
    }
    return true;
}

ReportChannel CGbnImport::ReportOf(std::size_t channel, std::uint64_t locations) const {
    ReportChannel report;
    report.column = static_cast<int>(channel) + 1;
    report.settings = DescribedGbnChannel(m_contents.channels[channel]);
    report.values = locations;
    report.missing.count = locations - m_tallies[channel].present;
    m_tallies[channel].values.Fill(report);
    return report;
}

void CGbnImport::Report() const {
    ImportReport report;
    std::unordered_set<std::string> names;
    std::size_t linesLeftOut = 0;
    std::uint64_t locations = 0;
    for (GbnLineEntry const& line : m_contents.lines) {
        if (line.selected == 0) {
            ++linesLeftOut;
            continue;
        }
        auto const count = static_cast<std::uint64_t>(line.locationCount);
        report.lines.push_back({line.name, count, 0, !names.insert(line.name).second});
        locations += count;
    }
    report.settings = {{"fiducial", m_addFiducial != 0 ? "added" : "none"},
                       {"lines left out by choice", std::to_string(linesLeftOut)}};
    if (m_addFiducial != 0) {
        ReportChannel fiducial;
        fiducial.settings.name = "FIDUCIAL";
        fiducial.settings.dataType = DataType::kDouble;
        fiducial.values = locations;
        m_fiducialTally.Fill(fiducial);
        report.channels.push_back(std::move(fiducial));
    }
    for (std::size_t i = 0; i < m_contents.channels.size(); ++i) {
        bool const isImported = IsImported(m_contents.channels[i]);
        report.columns.push_back(DescribedGbnChannel(m_contents.channels[i]));
        if (isImported) report.channels.push_back(ReportOf(i, locations));
        if (!isImported) report.columns.back().dataType = DataType::kSkipped;
    }
    report.parts = m_contents.parts;
    for (ReportPart const& part : report.parts) {
        report.unitsRead += part.count;
        report.bytesRead += part.bytes;
    }
    report.leftOut.count = m_contents.recordsLeftOut;
    report.cutRecords.count = m_contents.problem.empty() ? 0 : 1;
    report.unit = "records";
    report.sourceSize = m_length;
    FinishReport(std::move(report));
}

Status ImportGbnFile(ImportJob& job) {
    CGbnImport importer;
    importer.SetInputFile(job.inputPath);
    if (job.store->SetFileName(job.storePath, kCreateStore, job.owner) == 0) return ResultOf(0);
    return ResultOf(importer.Import(job.store));
}

}  // namespace norva
