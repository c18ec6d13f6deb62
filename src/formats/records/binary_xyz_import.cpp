#include "formats/records/binary_xyz_import.h"

#include "exchange/disk_space.h"
#include "exchange/report_draft.h"
#include "exchange/result.h"
#include "formats/records/binary_conversion.h"
#include "formats/records/binary_import_dlg.h"
#include "formats/records/records_format.h"
#include "norva/import_export.h"
#include "norva/toolkit.h"
#include "norva/values.h"
#include "platform/last_error.h"
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

int CBinaryXYZImport::Import(CNorvaFileUtil& store, CWindow* owner) {
    bool const isDone = !m_inputPath.empty() && OpenInput() && AskSettings() && IsRoom(store) && Describe(store) &&
                        ImportData(store, owner);
    if (isDone) Report();
    return isDone ? 1 : 0;
}

bool CBinaryXYZImport::OpenInput() {
    int error = IsFolder(m_inputPath) ? EISDIR : 0;
    if (error == 0 && !(m_file.Open(m_inputPath, CFile::Mode::Read) && m_file.Size(m_length))) error = m_file.Error();
    if (error == 0) return true;
    SetLastErrorText("Couldn't open the file : " + m_inputPath + "\n" + SystemErrorText(error));
    ShowMessage("File could not be open");
    return false;
}

bool CBinaryXYZImport::AskSettings() {
    CBinaryImportDlg dialog(m_inputPath, m_channels, m_length);
    if (dialog.DoModal() != kButtonOk) return false;
    m_records = std::max<std::int64_t>(dialog.TotalRecords(), 0);
    m_pointsPerLine = dialog.PointsPerLine();
    m_addFiducial = dialog.AddFiducial();
    m_frequency = dialog.Frequency();
    if (!dialog.LengthFits()) {
        ShowMessage("File has unknown format");
        ClearLastErrorText();  // a warning: the import goes on
    }
    return true;
}

/// Refuses what would fill the disk: a count of records may be typed that has nothing to do with the file.
bool CBinaryXYZImport::IsRoom(CNorvaFileUtil const& store) const {
    auto const records = static_cast<double>(m_records);
    double columns = 0;
    double widest = 0;
    for (BinaryChannelDef const& channel : m_channels) {
        double const size = records * static_cast<double>(ValueWidth(channel.dataType));
        columns += size;
        widest = std::max(widest, size);
    }
    double const stored = columns + (m_addFiducial ? records * static_cast<double>(ValueWidth(DataType::kFloat)) : 0);
    std::string const storePath = store.GetNorvaFileName();
    // On one disk a column file goes before the next column is written to the store.
    bool const isRoom = IsSameDisk(m_inputPath, storePath)
                            ? HasRoomFor(storePath, stored + widest)
                            : HasRoomFor(m_inputPath, columns) && HasRoomFor(storePath, stored);
    if (!isRoom) return false;
    std::int64_t const lines = CountLines(m_records, m_pointsPerLine);
    if (lines <= kMostLines) return true;
    ShowMessage(std::to_string(m_records) + " records of " + std::to_string(m_pointsPerLine) + " points a line make " +
                std::to_string(lines) + " lines; a store takes " + std::to_string(kMostLines) + " at most");
    return false;
}

bool CBinaryXYZImport::Describe(CNorvaFileUtil& store) const {
    std::int64_t const lines = CountLines(m_records, m_pointsPerLine);
    for (std::int64_t line = 0; line < lines; ++line) {
        store.AddProfileToStructure("LINE" + std::to_string(line + 1), LineLength(m_records, m_pointsPerLine, line));
    }
    constexpr int kUnset = -1;
    if (m_addFiducial) {
        store.AddChannelToStructure("Fid", "sec", DataType::kFloat, 0, 1, 0, DisplayFormat::kUnset, kUnset, kUnset);
    }
    for (BinaryChannelDef const& channel : m_channels) {
        store.AddChannelToStructure(channel.name, channel.units, channel.dataType, 0, channel.arraySize, 0,
                                    DisplayFormat::kUnset, kUnset, kUnset);
    }
    return store.SaveProfileStructure() != 0 && store.SaveChannelStructure() != 0 && store.StartWriteData() != 0;
}

/// After a failure neither the finish notice goes out nor the arrow cursor comes back.
bool CBinaryXYZImport::ImportData(CNorvaFileUtil& store, CWindow* owner) {
    CNotices notices(owner, m_records + static_cast<std::int64_t>(m_channels.size()));
    notices.Start();
    CurrentToolkit().SetCursor(CursorShape::Wait);
    CColumnFiles columns;
    bool const isDone =
        columns.Create(std::string(WithoutExtension(m_inputPath)), static_cast<int>(m_channels.size()), m_inputPath) &&
        ReadRecords(columns, notices) && WriteChannels(columns, store, notices) && store.EndWriteData() != 0;
    if (!isDone) return false;
    bool const isClosed = store.CloseCurFile() != 0;
    notices.Finish();
    CurrentToolkit().SetCursor(CursorShape::Arrow);
    m_file.Close();
    return isClosed;
}

bool CBinaryXYZImport::ReadRecords(CColumnFiles& columns, CNotices& notices) {
    CBinaryRecordReader reader(m_file, m_channels);
    m_values.assign(m_channels.size(), {});
    auto const most = static_cast<std::int64_t>(reader.BlockRecords());
    for (std::int64_t record = 0; record < m_records;) {
        notices.Tell(record);
        // A block ends where the next notice is due.
        auto const count = static_cast<std::size_t>(std::min({m_records, record + most, notices.NextStep()}) - record);
        char const* const block = reader.Read(count);
        if (block == nullptr) {
            ShowMessage("Couldn't read the file : " + m_inputPath + "\n" + SystemErrorText(m_file.Error()));
            return false;
        }
        if (!ConvertBlock(reader, block, count, columns)) {
            ShowMessage(GetLastErrorText());
            return false;
        }
        record += static_cast<std::int64_t>(count);
    }
    m_bytesRead = reader.BytesRead();
    return true;
}

bool CBinaryXYZImport::ConvertBlock(CBinaryRecordReader const& reader, char const* block, std::size_t records,
                                    CColumnFiles& columns) {
    std::size_t const recordLength = reader.RecordLength();
    char const* value = block;
    for (std::size_t i = 0; i < m_channels.size(); ++i) {
        BinaryChannelDef const& channel = m_channels[i];
        ConvertValues const convert = FindConversion(channel.readFormat, channel.dataType);
        TallyValues const tally = FindTally(channel.readFormat, channel.dataType);
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
        value += ReadWidth(channel.readFormat);
    }
    return true;
}

/// Seconds since the first record, in single precision throughout.
float CBinaryXYZImport::FiducialOf(std::int64_t record) const {
    auto const spacing = static_cast<float>(1.0 / m_frequency);
    return static_cast<float>(record) * spacing;
}

bool CBinaryXYZImport::WriteFiducial(CNorvaFileUtil& store) const {
    constexpr std::size_t kWidth = 4;
    std::size_t const size = static_cast<std::size_t>(m_records) * kWidth;
    std::unique_ptr<char[]> const values(new (std::nothrow) char[size]);
    if (values == nullptr) {
        ShowMessage("Not enough memory for " + std::to_string(m_records) + " fiducials");
        return false;
    }
    char* out = values.get();
    for (std::int64_t n = 0; n < m_records; ++n, out += kWidth) StoreFloat(out, FiducialOf(n));
    return store.WriteHuge(values.get(), size) != 0;
}

bool CBinaryXYZImport::WriteChannels(CColumnFiles& columns, CNorvaFileUtil& store, CNotices& notices) const {
    if (m_addFiducial && !WriteFiducial(store)) return false;
    std::int64_t step = m_records;
    for (int i = 0; i < columns.Count(); ++i, ++step) {
        notices.TellAlways(step);
        if (!columns.HandOver(i, store)) return false;
    }
    return true;
}

std::vector<ReportChannel> CBinaryXYZImport::ReportChannels() const {
    auto const locations = static_cast<std::uint64_t>(m_records);
    std::vector<ReportChannel> channels;
    if (m_addFiducial) {
        ReportChannel fiducial;
        fiducial.settings.name = "Fid";
        fiducial.settings.units = "sec";
        fiducial.settings.dataType = DataType::kFloat;
        fiducial.values = locations;
        fiducial.hasRange = m_records > 0;
        if (fiducial.hasRange) fiducial.maximum = FiducialOf(m_records - 1);
        channels.push_back(std::move(fiducial));
    }
    for (std::size_t i = 0; i < m_channels.size(); ++i) {
        ReportChannel channel;
        channel.column = static_cast<int>(i) + 1;
        channel.settings.name = m_channels[i].name;
        channel.settings.units = m_channels[i].units;
        channel.settings.dataType = m_channels[i].dataType;
        channel.values = locations;
        channel.missing.count = locations - m_values[i].present;
        m_values[i].tally.Fill(channel);
        channels.push_back(std::move(channel));
    }
    return channels;
}

void CBinaryXYZImport::Report() const {
    ImportReport report;
    std::uint64_t const size = RecordSize(m_channels);
    std::uint64_t const whole = m_bytesRead / size;
    std::uint64_t const cut = m_bytesRead % size;
    RecordCount const held = CountRecords(m_length, size);
    std::uint64_t const left = m_records < held.records ? m_length - static_cast<std::uint64_t>(m_records) * size : 0;
    report.parts = {{"whole records", whole, whole * size},
                    {"partial records", cut > 0 ? 1U : 0U, cut},
                    {"records not asked for", static_cast<std::uint64_t>(CountRecords(left, size).records), left}};
    report.cutRecords.count = cut > 0 ? 1 : 0;
    report.settings = {{"points per line", std::to_string(m_pointsPerLine)},
                       {"fiducial", m_addFiducial ? std::to_string(m_frequency) + " Hz" : "none"}};
    report.channels = ReportChannels();
    for (ReportChannel const& channel : report.channels) {
        if (channel.column > 0) report.columns.push_back(channel.settings);
    }
    for (std::int64_t line = 0; line < CountLines(m_records, m_pointsPerLine); ++line) {
        auto const locations = static_cast<std::uint64_t>(LineLength(m_records, m_pointsPerLine, line));
        report.lines.push_back({"LINE" + std::to_string(line + 1), locations});
    }
    report.unit = "records";
    report.unitsRead = static_cast<std::uint64_t>(held.records);
    report.bytesRead = m_bytesRead + left;
    report.sourceSize = m_length;
    FinishReport(std::move(report));
}

Status ImportBinaryFile(ImportJob& job) {
    CBinaryXYZImport importer;
    importer.SetInputFileName(job.inputPath);
    if (job.store->SetFileName(job.storePath, kCreateStore, job.owner) == 0) return ResultOf(0);
    return ResultOf(importer.Import(*job.store, job.owner));
}

}  // namespace norva
