#include "formats/gbn/gbn_import.h"

#include "exchange/disk_space.h"
#include "exchange/exception_guard.h"
#include "exchange/progress_dlg.h"
#include "exchange/store_call.h"
#include "formats/gbn/gbn_format.h"
#include "formats/gbn/gbn_import_dlg.h"
#include "formats/gbn/gbn_settings.h"
#include "platform/paths.h"
#include "store/value_rules.h"
#include "ui/messages.h"

#include <sys/file.h>

#include <algorithm>
#include <cerrno>
#include <limits>
#include <new>
#include <unordered_set>
#include <utility>

namespace norva {

namespace {

bool IsImported(GbnChannelEntry const& entry) {
    return entry.selected != 0 && entry.description.dataType != DataType::kSkipped;
}

std::size_t ValueSize(NorvaChannelStruct const& channel) {
    return ValueWidth(channel.dataType) * static_cast<std::size_t>(channel.arraySize);
}

}  // namespace

Status CGbnImport::Import() {
    if (m_inputPath.empty()) return Status::Failure("There is no file to open").Silent();
    for (auto const step : {&CGbnImport::OpenInput, &CGbnImport::Scan, &CGbnImport::ObtainSettings,
                            &CGbnImport::RequireRoom, &CGbnImport::Prepare, &CGbnImport::WriteData}) {
        if (Status status = (this->*step)(); !status) return status;
    }
    m_job.report = Report();
    m_job.settings = std::move(m_settings);
    return {};
}

Status CGbnImport::OpenInput() {
    int error = 0;
    if (!m_input.Open(m_inputPath, CFile::Mode::Read) || !m_input.Size(m_length)) {
        error = m_input.Error();
    } else if (flock(m_input.Descriptor(), LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
        // Whoever still writes the file holds it; a file system without locks has nobody to keep out.
        error = EWOULDBLOCK;
    }
    if (error == 0) return {};
    return ShownAs("File could not be open", Status::FileFailure("open", m_inputPath, error));
}

Status CGbnImport::Scan() {
    GbnOpenFileSource source(m_input, m_length);
    GbnFile file(source);
    if (file.ReadSignature() != kGbnSignature) ShowMessage("File is not Oasis Binary");
    {
        CWaitCursor const wait;
        CProgressWindow window("Import GBN", m_inputPath);
        ReadGbnContents(file, m_contents, GbnValues::Keep,
                        [&window](int percent) { window.Reporter().FilePercent(percent); });
    }
    if (file.Failed()) return Status::FileFailure("read", m_inputPath, m_input.Error());
    if (!m_contents.problem.empty()) ShowMessage(m_contents.problem);
    if (m_contents.blocksBeforeLines > 0) {
        ShowMessage("Data blocks before the first line, which were left out: " +
                    std::to_string(m_contents.blocksBeforeLines));
    }
    return {};
}

Status CGbnImport::ObtainSettings() {
    if (m_job.asks) {
        CGbnImportDlg dialog(m_contents, m_settings);
        if (dialog.DoModal() != kButtonOk) return Status::Cancelled();
    } else if (Status status = m_job.TakeSettings(m_settings); !status) {
        return status;
    }
    return ApplyGbnSettings(m_settings, m_inputPath, m_contents);
}

Status CGbnImport::RequireRoom() {
    double selected = 0;
    for (GbnLineEntry const& line : m_contents.lines) {
        if (line.selected != 0) selected += static_cast<double>(line.locationCount);
    }
    ImportRoom room;
    auto const add = [&](double width) {
        double const size = width * static_cast<double>(m_contents.locationCount);
        room.temporary += size;
        room.widest = std::max(room.widest, size);
        room.stored += width * selected;
    };
    if (m_settings.fiducial) add(sizeof(double));
    for (GbnChannelEntry const& entry : m_contents.channels) {
        if (IsImported(entry)) add(static_cast<double>(ValueSize(DescribedGbnChannel(entry))));
    }
    return HasRoomForImport(m_inputPath, m_store.GetNorvaFileName(), room);
}

Status CGbnImport::Prepare() {
    CProgressWindow const window("Loading data from the file");
    auto const count = static_cast<int>(m_contents.channels.size());
    Status created = m_columns.Create(std::string(WithoutExtension(m_inputPath)), count, m_inputPath);
    if (!created) return std::move(created).Silent();
    if (m_settings.fiducial) {
        if (Status status = m_fiducials.Create(m_inputPath); !status) return std::move(status).Silent();
    }
    if (Status status = WriteTemporaryFiles(); !status) return Shown(std::move(status));
    m_contents.arena.Clear();
    m_contents.values.clear();
    return Describe();
}

Status CGbnImport::WriteTemporaryFiles() {
    m_tallies.assign(m_contents.channels.size(), {});
    for (std::size_t i = 0; i < m_contents.channels.size(); ++i) {
        GbnChannelEntry const& entry = m_contents.channels[i];
        if (!IsImported(entry)) continue;
        if (!WriteGbnColumn(m_contents, i, DescribedGbnChannel(entry), m_columns, m_tallies[i])) {
            return m_columns.Error();
        }
    }
    if (!m_settings.fiducial) return {};
    auto const first = std::ranges::find_if(m_contents.channels, IsImported) - m_contents.channels.begin();
    GbnChannelValues const& values = m_contents.values[static_cast<std::size_t>(first)];
    return m_fiducials.Write(values.fiducialStart, values.fiducialIncrement, m_contents.locationCount);
}

Status CGbnImport::Describe() {
    for (GbnLineEntry const& line : m_contents.lines) {
        if (line.selected != 0) m_store.AddProfileToStructure(line.name, static_cast<long>(line.locationCount));
    }
    if (m_settings.fiducial) m_store.AddChannelToStructure("FIDUCIAL", "", DataType::kDouble, 0, 1, 0, -1, -1, -1);
    for (GbnChannelEntry const& entry : m_contents.channels) {
        if (IsImported(entry)) m_store.AddChannelToStructure(DescribedGbnChannel(entry));
    }
    return CallStore(m_store, [this] {
        bool const isSaved = m_store.SaveProfileStructure() != 0 && m_store.SaveChannelStructure() != 0;
        return isSaved ? m_store.StartWriteData() : 0;
    });
}

Status CGbnImport::WriteData() {
    CProgressWindow window("Import GBN", m_inputPath);
    CProgressReporter& progress = window.Reporter();
    MakeRoomForLines();
    if (m_settings.fiducial) {
        if (Status status = WriteFiducials(); !status) return status;
    }
    std::size_t const count = m_contents.channels.size();
    for (std::size_t i = 0; i < count; ++i) {
        progress.ChannelName(m_contents.channels[i].description.name);
        progress.FilePercent(static_cast<long long>(100 * (i + 1) / count));
        progress.ChannelPercent(0);
        if (IsImported(m_contents.channels[i])) {
            if (Status status = WriteChannel(i, progress); !status) return status;
        }
        m_columns.Remove(static_cast<int>(i));
        progress.ChannelPercent(100);
    }
    if (Status status = CallStore(m_store, [this] { return m_store.EndWriteData(); }); !status) return status;
    return CallStore(m_store, [this] { return m_store.CloseCurFile(); });
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

Status CGbnImport::WriteFiducials() {
    std::int64_t first = 0;
    for (GbnLineEntry const& line : m_contents.lines) {
        if (line.selected != 0) {
            Status read = m_fiducials.Read(first, line.locationCount, m_lineValues.get());
            if (!read) return Shown(std::move(read));
            std::size_t const size = static_cast<std::size_t>(line.locationCount) * sizeof(double);
            TallyStored<double>(m_lineValues.get(), static_cast<std::size_t>(line.locationCount), m_fiducialTally);
            Status status = CallStore(m_store, [&] { return m_store.WriteHuge(m_lineValues.get(), size); });
            if (!status) return status;
        }
        first += line.locationCount;
    }
    // What of it has not reached the disk yet need not any more.
    m_fiducials.Close();
    return {};
}

Status CGbnImport::WriteChannel(std::size_t channel, CProgressReporter& progress) {
    std::size_t const valueSize = ValueSize(DescribedGbnChannel(m_contents.channels[channel]));
    std::uint64_t offset = 0;
    std::size_t const count = m_contents.lines.size();
    for (std::size_t k = 0; k < count; ++k) {
        GbnLineEntry const& line = m_contents.lines[k];
        std::size_t const size = static_cast<std::size_t>(line.locationCount) * valueSize;
        if (line.selected != 0) {
            progress.ChannelPercent(static_cast<long long>(100 * k / count));
            Status read = m_columns.Read(static_cast<int>(channel), offset, m_lineValues.get(), size);
            if (!read) return Shown(std::move(read));
            Status status = CallStore(m_store, [&] { return m_store.WriteHuge(m_lineValues.get(), size); });
            if (!status) return status;
        }
        offset += size;
    }
    return {};
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

ImportReport CGbnImport::Report() const {
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
    report.settings = {{"fiducial", m_settings.fiducial ? "added" : "none"},
                       {"lines left out by choice", std::to_string(linesLeftOut)}};
    if (m_settings.fiducial) {
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
    return report;
}

Status ImportGbnFile(ImportJob& job) {
    Status status =
        CallStore(*job.store, [&] { return job.store->SetFileName(job.storePath, kCreateStore, job.owner); });
    return status ? CGbnImport(job).Import() : status;
}

}  // namespace norva
