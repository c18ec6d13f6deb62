#include "formats/records/binary_xyz_import.h"

#include "exchange/disk_space.h"
#include "exchange/exception_guard.h"
#include "exchange/store_call.h"
#include "formats/records/binary_conversion.h"
#include "formats/records/binary_import_dlg.h"
#include "formats/records/record_settings.h"
#include "formats/records/records_format.h"
#include "norva/toolkit.h"
#include "norva/values.h"
#include "platform/paths.h"
#include "store/value_rules.h"
#include "ui/messages.h"

#include <algorithm>
#include <cerrno>
#include <memory>
#include <new>
#include <utility>

namespace norva {

/// A step is a record read or a channel written.
class CBinaryXYZImport::CNotices {
public:
    CNotices(CWindow* owner, std::int64_t steps) : m_owner(owner), m_steps(steps) {}

    void Start() const {
        SendOwnerNotice(m_owner, "START", "0");
        SendImporting(0);
    }
    void Finish() const { SendOwnerNotice(m_owner, "FINISH", "0"); }

    /// The first step before which a notice is due.
    std::int64_t NextStep() const { return ((m_last + 1) * m_steps + 99) / 100; }
    /// Before a step: tells when there is a new percentage.
    void Tell(std::int64_t step) {
        std::int64_t const percent = step * 100 / m_steps;
        if (percent > m_last) SendImporting(m_last = percent);
    }
    void TellAlways(std::int64_t step) const { SendImporting(step * 100 / m_steps); }

private:
    void SendImporting(std::int64_t percent) const {
        SendOwnerNotice(m_owner, "Importing...", std::to_string(percent));
    }

    CWindow* m_owner;
    std::int64_t m_steps;
    std::int64_t m_last = 0;
};

Status CBinaryXYZImport::Import() {
    if (m_job.inputPath.empty()) return Status::Failure("There is no file to open").Silent();
    for (auto const step : {&CBinaryXYZImport::OpenInput, &CBinaryXYZImport::ObtainSettings}) {
        if (Status status = (this->*step)(); !status) return status;
    }
    if (Status status = RequireRoom(); !status) return status;
    for (auto const step : {&CBinaryXYZImport::Describe, &CBinaryXYZImport::ImportData}) {
        if (Status status = (this->*step)(); !status) return status;
    }
    m_job.report = Report();
    m_job.settings = std::move(m_settings);
    return {};
}

Status CBinaryXYZImport::OpenInput() {
    int error = IsFolder(m_job.inputPath) ? EISDIR : 0;
    if (error == 0 && !(m_file.Open(m_job.inputPath, CFile::Mode::Read) && m_file.Size(m_length))) {
        error = m_file.Error();
    }
    if (error == 0) return {};
    return ShownAs("File could not be open", Status::FileFailure("open", m_job.inputPath, error));
}

Status CBinaryXYZImport::ObtainSettings() {
    if (m_job.asks) {
        CBinaryImportDlg dialog(m_job.inputPath, m_settings, m_length);
        if (dialog.DoModal() != kButtonOk) return Status::Cancelled();
    } else {
        if (Status status = m_job.TakeSettings(m_settings); !status) return status;
        if (Status status = CompleteRecordSettings(m_settings, m_job.inputPath, m_length); !status) return status;
    }
    // A warning: the import goes on.
    if (!CountRecords(m_length, RecordSize(m_settings.channels)).fits) ShowMessage("File has unknown format");
    return {};
}

/// Refuses what would fill the disk: a count of records may be typed that has nothing to do with the file.
Status CBinaryXYZImport::RequireRoom() const {
    auto const records = static_cast<double>(Records());
    ImportRoom room;
    for (RecordChannel const& channel : m_settings.channels) {
        double const size = records * static_cast<double>(ValueWidth(channel.dataType));
        room.temporary += size;
        room.widest = std::max(room.widest, size);
    }
    room.stored = room.temporary;
    if (m_settings.fiducial) room.stored += records * static_cast<double>(ValueWidth(DataType::kFloat));
    Status status = HasRoomForImport(m_job.inputPath, m_store.GetNorvaFileName(), room);
    if (!status) return status;
    std::int64_t const lines = CountLines(Records(), PointsPerLine());
    if (lines <= kMostLines) return {};
    return Status::Failure(std::to_string(Records()) + " records of " + std::to_string(PointsPerLine()) +
                           " points a line make " + std::to_string(lines) + " lines; a store takes " +
                           std::to_string(kMostLines) + " at most");
}

Status CBinaryXYZImport::Describe() {
    std::int64_t const lines = CountLines(Records(), PointsPerLine());
    for (std::int64_t line = 0; line < lines; ++line) {
        m_store.AddProfileToStructure("LINE" + std::to_string(line + 1), LineLength(Records(), PointsPerLine(), line));
    }
    constexpr int kUnset = -1;
    if (m_settings.fiducial) {
        m_store.AddChannelToStructure("Fid", "sec", DataType::kFloat, 0, 1, 0, DisplayFormat::kUnset, kUnset, kUnset);
    }
    for (RecordChannel const& channel : m_settings.channels) {
        m_store.AddChannelToStructure(channel.name, channel.units, channel.dataType, 0, 1, 0, DisplayFormat::kUnset,
                                      kUnset, kUnset);
    }
    return CallStore(m_store, [this] {
        bool const isSaved = m_store.SaveProfileStructure() != 0 && m_store.SaveChannelStructure() != 0;
        return isSaved ? m_store.StartWriteData() : 0;
    });
}

/// After a failure neither the finish notice goes out nor the arrow cursor comes back.
Status CBinaryXYZImport::ImportData() {
    CNotices notices(m_job.owner, Records() + static_cast<std::int64_t>(m_settings.channels.size()));
    notices.Start();
    CurrentToolkit().SetCursor(CursorShape::Wait);
    CColumnFiles columns;
    std::string const base(WithoutExtension(m_job.inputPath));
    Status created = columns.Create(base, static_cast<int>(m_settings.channels.size()), m_job.inputPath);
    if (!created) return std::move(created).Silent();
    if (Status status = ReadRecords(columns, notices); !status) return status;
    if (Status status = WriteChannels(columns, notices); !status) return status;
    if (Status status = CallStore(m_store, [this] { return m_store.EndWriteData(); }); !status) return status;
    Status closed = CallStore(m_store, [this] { return m_store.CloseCurFile(); });
    notices.Finish();
    CurrentToolkit().SetCursor(CursorShape::Arrow);
    m_file.Close();
    return closed;
}

Status CBinaryXYZImport::ReadRecords(CColumnFiles& columns, CNotices& notices) {
    CBinaryRecordReader reader(m_file, m_settings.channels);
    m_values.assign(m_settings.channels.size(), {});
    auto const most = static_cast<std::int64_t>(reader.BlockRecords());
    for (std::int64_t record = 0; record < Records();) {
        notices.Tell(record);
        // A block ends where the next notice is due.
        auto const count = static_cast<std::size_t>(std::min({Records(), record + most, notices.NextStep()}) - record);
        char const* const block = reader.Read(count);
        if (block == nullptr) return Status::FileFailure("read", m_job.inputPath, m_file.Error());
        if (!ConvertBlock(reader, block, count, columns)) return columns.Error();
        record += static_cast<std::int64_t>(count);
    }
    m_bytesRead = reader.BytesRead();
    return {};
}

bool CBinaryXYZImport::ConvertBlock(CBinaryRecordReader const& reader, char const* block, std::size_t records,
                                    CColumnFiles& columns) {
    std::size_t const recordLength = reader.RecordLength();
    char const* value = block;
    for (std::size_t i = 0; i < m_settings.channels.size(); ++i) {
        RecordChannel const& channel = m_settings.channels[i];
        ConvertValues const convert = FindConversion(channel.format, channel.dataType);
        TallyValues const tally = FindTally(channel.format, channel.dataType);
        std::size_t const present = reader.Present(i);
        m_values[i].present += present;
        std::size_t const width = ValueWidth(channel.dataType);
        std::size_t const most = CColumnFiles::kBufferSize / width;
        for (std::size_t done = 0; done < records;) {
            std::size_t const count = std::min(records - done, most);
            char* const out = columns.Append(static_cast<int>(i), count * width);
            if (out == nullptr) return false;
            char const* const in = value + done * recordLength;
            convert(in, recordLength, count, out);
            std::size_t const counted = std::min(present - std::min(present, done), count);
            tally(in, recordLength, counted, out, m_values[i].tally);
            done += count;
        }
        value += RecordFormatWidth(channel.format);
    }
    return true;
}

/// Seconds since the first record, in single precision throughout.
float CBinaryXYZImport::FiducialOf(std::int64_t record) const {
    auto const spacing = static_cast<float>(1.0 / m_settings.frequency);
    return static_cast<float>(record) * spacing;
}

Status CBinaryXYZImport::WriteFiducial() {
    constexpr std::size_t kWidth = 4;
    std::size_t const size = static_cast<std::size_t>(Records()) * kWidth;
    std::unique_ptr<char[]> const values(new (std::nothrow) char[size]);
    if (values == nullptr) return Status::Failure("Not enough memory for " + std::to_string(Records()) + " fiducials");
    char* out = values.get();
    for (std::int64_t n = 0; n < Records(); ++n, out += kWidth) StoreFloat(out, FiducialOf(n));
    return CallStore(m_store, [&] { return m_store.WriteHuge(values.get(), size); });
}

Status CBinaryXYZImport::WriteChannels(CColumnFiles& columns, CNotices& notices) {
    if (m_settings.fiducial) {
        if (Status status = WriteFiducial(); !status) return status;
    }
    std::int64_t step = Records();
    for (int i = 0; i < columns.Count(); ++i, ++step) {
        notices.TellAlways(step);
        if (Status status = columns.HandOver(i, m_store); !status) return status;
    }
    return {};
}

std::vector<ReportChannel> CBinaryXYZImport::ReportChannels() const {
    auto const locations = static_cast<std::uint64_t>(Records());
    std::vector<ReportChannel> channels;
    if (m_settings.fiducial) {
        ReportChannel fiducial;
        fiducial.settings.name = "Fid";
        fiducial.settings.units = "sec";
        fiducial.settings.dataType = DataType::kFloat;
        fiducial.values = locations;
        fiducial.hasRange = Records() > 0;
        if (fiducial.hasRange) fiducial.maximum = FiducialOf(Records() - 1);
        channels.push_back(std::move(fiducial));
    }
    for (std::size_t i = 0; i < m_settings.channels.size(); ++i) {
        ReportChannel channel;
        channel.column = static_cast<int>(i) + 1;
        channel.settings.name = m_settings.channels[i].name;
        channel.settings.units = m_settings.channels[i].units;
        channel.settings.dataType = m_settings.channels[i].dataType;
        channel.values = locations;
        channel.missing.count = locations - m_values[i].present;
        m_values[i].tally.Fill(channel);
        channels.push_back(std::move(channel));
    }
    return channels;
}

ImportReport CBinaryXYZImport::Report() const {
    ImportReport report;
    std::uint64_t const size = RecordSize(m_settings.channels);
    std::uint64_t const whole = m_bytesRead / size;
    std::uint64_t const cut = m_bytesRead % size;
    RecordCount const held = CountRecords(m_length, size);
    std::uint64_t const left = Records() < held.records ? m_length - static_cast<std::uint64_t>(Records()) * size : 0;
    report.parts = {{"whole records", whole, whole * size},
                    {"partial records", cut > 0 ? 1U : 0U, cut},
                    {"records not asked for", static_cast<std::uint64_t>(CountRecords(left, size).records), left}};
    report.cutRecords.count = cut > 0 ? 1 : 0;
    report.settings = {{"points per line", std::to_string(PointsPerLine())},
                       {"fiducial", m_settings.fiducial ? std::to_string(m_settings.frequency) + " Hz" : "none"}};
    report.channels = ReportChannels();
    for (ReportChannel const& channel : report.channels) {
        if (channel.column > 0) report.columns.push_back(channel.settings);
    }
    for (std::int64_t line = 0; line < CountLines(Records(), PointsPerLine()); ++line) {
        auto const locations = static_cast<std::uint64_t>(LineLength(Records(), PointsPerLine(), line));
        report.lines.push_back({"LINE" + std::to_string(line + 1), locations});
    }
    report.unit = "records";
    report.unitsRead = static_cast<std::uint64_t>(held.records);
    report.bytesRead = m_bytesRead + left;
    report.sourceSize = m_length;
    return report;
}

Status ImportBinaryFile(ImportJob& job) {
    Status status =
        CallStore(*job.store, [&] { return job.store->SetFileName(job.storePath, kCreateStore, job.owner); });
    return status ? CBinaryXYZImport(job).Import() : status;
}

}  // namespace norva
