#include "norva/tki_file_read.h"

#include "exchange/disk_space.h"
#include "exchange/exception_guard.h"
#include "exchange/progress_dlg.h"
#include "exchange/result.h"
#include "exchange/store_call.h"
#include "formats/tki/tki_column_reader.h"
#include "formats/tki/tki_format.h"
#include "formats/tki/tki_header.h"
#include "formats/tki/tki_types.h"
#include "formats/tki/tki_value_writer.h"
#include "platform/files.h"
#include "platform/last_error.h"
#include "platform/text.h"
#include "store/value_rules.h"
#include "ui/messages.h"

#include <algorithm>
#include <initializer_list>
#include <limits>
#include <unordered_set>
#include <utility>

namespace norva {

namespace {

bool IsLineChannel(TkiChannelDesc const& channel) {
    return ToUpper(channel.name) == "LINE";
}

std::uint64_t RecordsOf(TkiProfile const& profile, int locations) {
    return static_cast<std::uint64_t>((profile.locations - 1) / locations) + 1;
}

/// A profile's last record has one location, every other `locations`.
long LocationsOf(std::uint64_t records, int locations) {
    auto const most = static_cast<std::uint64_t>(std::numeric_limits<long>::max() - 1);
    auto const each = static_cast<std::uint64_t>(locations);
    return static_cast<long>(std::min(records - 1, most / each) * each) + 1;
}

}  // namespace

CTkiFileRead::CTkiFileRead() = default;

CTkiFileRead::CTkiFileRead(std::string tkiPath, std::string storePath)
    : m_tkiPath(std::move(tkiPath)), m_storePath(std::move(storePath)) {}

CTkiFileRead::~CTkiFileRead() = default;

void CTkiFileRead::SetTKIFileName(std::string path) {
    m_tkiPath = std::move(path);
}

void CTkiFileRead::SetEETFileName(std::string path) {
    m_storePath = std::move(path);
}

int CTkiFileRead::LoadFile(CNorvaFileUtil* store, CWindow* window) {
    return GuardedResult("Couldn't import the file", m_tkiPath, [&] {
        m_report = {};
        if (store == nullptr || ReadContents() == 0 || WriteToEETFile(store, window) == 0) return 0;
        m_report = MakeReport();
        return 1;
    });
}

int CTkiFileRead::ReadContents() {
    bool const isRead = !m_tkiPath.empty() && GetTkiDataChannels() > 0 && GetMaxInterpRecords() > 0 &&
                        GetProfiles() != 0 && !m_profiles.empty();
    if (!isRead)
        SetLastErrorText("Couldn't read the file : " + m_tkiPath + "\nit describes no channels or has no records");
    return isRead ? 1 : 0;
}

int CTkiFileRead::GetTkiDataChannels() {
    std::string problem;
    ReadTkiDescriptors(m_tkiPath, m_channels, problem);
    if (!problem.empty()) ShowMessage(problem);
    m_recordLength = 0;
    m_textChannels = m_arrayChannels = m_otherChannels = 0;
    for (TkiChannelDesc const& channel : m_channels) {
        m_recordLength += channel.Size();
        TkiType const* const type = FindTkiType(channel.type);
        ++(type->isArray ? m_arrayChannels : type->IsText() ? m_textChannels : m_otherChannels);
    }
    return static_cast<int>(m_channels.size());
}

int CTkiFileRead::GetMaxInterpRecords() {
    std::int64_t common = 1;
    for (TkiChannelDesc const& channel : m_channels) {
        std::int64_t const samples = FindTkiType(channel.type)->IsScalar() ? channel.count : 1;
        std::int64_t const before = samples > common ? std::exchange(common, samples) : samples;
        if (common % before != 0) common *= before;
        if (common > kMostLocations) {
            ShowMessage(m_tkiPath + ", line " + std::to_string(channel.line) + ": \"" + channel.name + "\", " +
                        std::to_string(channel.count) + " samples in a record\na record would have " +
                        std::to_string(common) + " locations; " + std::to_string(kMostLocations) +
                        " at most are possible");
            return m_interpolation = 0;
        }
    }
    return m_interpolation = static_cast<int>(common);
}

int CTkiFileRead::GetProfiles() {
    m_profiles.clear();
    m_headerLength = m_recordCount = 0;
    CFile file;
    std::uint64_t size = 0;
    if (m_recordLength == 0 || m_interpolation == 0 || !file.Open(m_tkiPath, CFile::Mode::Read) || !file.Size(size) ||
        !FindTkiHeaderEnd(file, m_headerLength) || size <= m_headerLength + 1) {
        return 0;
    }
    m_fileLength = size;
    TkiRecords const records{m_headerLength + 1, m_recordLength, (size - m_headerLength - 1) / m_recordLength};
    m_recordCount = records.count;
    auto const line = std::ranges::find_if(m_channels, IsLineChannel);
    if (line == m_channels.end()) {
        if (records.count > 0) m_profiles.push_back({"", LocationsOf(records.count, m_interpolation)});
        return 1;
    }
    CTkiColumnReader reader(file, records, m_channels);
    reader.SelectAlone(static_cast<std::size_t>(line - m_channels.begin()));
    auto const width = static_cast<std::size_t>(line->Size());
    std::uint64_t first = 0;  // record of the profile
    for (std::uint64_t record = 0; record < records.count; ++record) {
        char const* const value = reader.Next();
        if (value == nullptr) return 0;
        std::string_view const name = Trim(std::string_view(value, width));
        if (record > 0 && name == m_profiles.back().name) continue;
        if (m_profiles.size() == static_cast<std::size_t>(kMostProfiles)) {
            ShowMessage(m_tkiPath + " has more than " + std::to_string(kMostProfiles) + " lines");
            return 0;
        }
        if (record > 0) m_profiles.back().locations = LocationsOf(record - first, m_interpolation);
        m_profiles.push_back({std::string(name), 0});
        first = record;
    }
    if (records.count > 0) m_profiles.back().locations = LocationsOf(records.count - first, m_interpolation);
    return 1;
}

NorvaChannelStruct CTkiFileRead::GetNorvaChannels(int channel) const {
    TkiChannelDesc const& from = m_channels.at(static_cast<std::size_t>(channel));
    TkiType const* const type = FindTkiType(from.type);
    NorvaChannelStruct described;
    described.name = from.name;
    described.units = from.units;
    if (type->IsScalar()) {
        described.dataType = DataType::kDouble;
        return described;
    }
    described.dataType = DataType::kSkipped;
    if (type->IsText()) described.dataType = DataType::kText;
    if (type->IsIntegerArray()) described.dataType = DataType::kLong;
    described.recordType = 1;
    described.arraySize = from.count;
    return described;
}

/// Refuses what would fill the disk: a few bytes can ask for very many locations.
Status CTkiFileRead::RequireRoom(CNorvaFileUtil const& store) const {
    double width = 0;
    for (int i = 0; i < static_cast<int>(m_channels.size()); ++i) {
        NorvaChannelStruct const channel = GetNorvaChannels(i);
        width += static_cast<double>(ValueWidth(channel.dataType)) * channel.arraySize;
    }
    double locations = 0;
    for (TkiProfile const& profile : m_profiles) locations += static_cast<double>(profile.locations);
    std::string const path = store.GetNorvaFileName();
    return HasRoomFor(path.empty() ? m_storePath : path, locations * width);
}

int CTkiFileRead::WriteToEETFile(CNorvaFileUtil* store, CWindow* window) {
    if (Status const room = RequireRoom(*store); !room) return Conclude(room);
    for (TkiProfile const& profile : m_profiles) store->AddProfileToStructure(profile.name, profile.locations);
    if (store->SaveProfileStructure() == 0) return 0;
    for (int i = 0; i < static_cast<int>(m_channels.size()); ++i) {
        NorvaChannelStruct const channel = GetNorvaChannels(i);
        constexpr int kUnset = -1;
        store->AddChannelToStructure(channel.name, channel.units, channel.dataType, channel.recordType,
                                     channel.arraySize, channel.reserved1, DisplayFormat::kUnset, kUnset, kUnset);
    }
    bool const isWritten = store->SaveChannelStructure() != 0 && store->StartWriteData() != 0 &&
                           WriteData(store, window) != 0 && store->EndWriteData() != 0 && store->CloseCurFile() != 0;
    return isWritten ? 1 : 0;
}

ImportReport CTkiFileRead::MakeReport() {
    ImportReport report;
    std::unordered_set<std::string> names;
    std::uint64_t locations = 0;
    for (TkiProfile const& profile : m_profiles) {
        auto const count = static_cast<std::uint64_t>(profile.locations);
        report.lines.push_back({profile.name, count, 0, !names.insert(profile.name).second});
        locations += count;
    }
    for (std::size_t i = 0; i < m_channels.size(); ++i) {
        report.columns.push_back(GetNorvaChannels(static_cast<int>(i)));
        ReportChannel& channel = m_reported[i];
        channel.column = static_cast<int>(i) + 1;
        channel.settings = report.columns.back();
        channel.values = locations;
        if (channel.settings.dataType != DataType::kSkipped)
            report.channels.push_back(std::move(channel));
        else
            report.leftOut.count += m_recordCount;
    }
    std::uint64_t const header = m_headerLength + 1;
    std::uint64_t const whole = m_recordCount * m_recordLength;
    std::uint64_t const cut = m_fileLength - header - whole;
    report.parts = {
        {"header", 1, header}, {"records", m_recordCount, whole}, {"partial records", cut > 0 ? 1U : 0U, cut}};
    report.cutRecords.count = cut > 0 ? 1 : 0;
    report.settings = {{"locations of a record", std::to_string(m_interpolation)}};
    report.unit = "records";
    report.unitsRead = 1 + m_recordCount + (cut > 0 ? 1 : 0);
    report.bytesRead = header + whole + cut;
    report.sourceSize = m_fileLength;
    return report;
}

int CTkiFileRead::WriteData(CNorvaFileUtil* store, CWindow* /*window*/) {
    CFile file;
    if (!file.Open(m_tkiPath, CFile::Mode::Read)) {
        SetLastErrorText("Couldn't open the file : " + m_tkiPath + "\n" + SystemErrorText(file.Error()));
        return 0;
    }
    std::vector<std::uint64_t> profiles;
    profiles.reserve(m_profiles.size());
    for (TkiProfile const& profile : m_profiles) profiles.push_back(RecordsOf(profile, m_interpolation));

    CProgressDlg window;
    window.Create();
    window.SetWindowTitle("Import");
    window.ResetBars();
    window.ShowFileName(m_tkiPath);
    CProgressReporter progress(window);
    CTkiColumnReader reader(file, {m_headerLength + 1, m_recordLength, m_recordCount}, m_channels);
    CTkiValueWriter writer(*store, progress, m_interpolation);
    bool isWritten = true;
    m_reported.assign(m_channels.size(), {});
    for (std::size_t i = 0; i < m_channels.size() && isWritten; ++i) {
        progress.ChannelName(m_channels[i].name);
        progress.FilePercent(static_cast<long long>(100 * (i + 1) / m_channels.size()));
        isWritten = reader.Select(i) && writer.Write(m_channels[i], reader, profiles, m_reported[i]);
    }
    window.DestroyWindow();
    return isWritten ? 1 : 0;
}

namespace {

/// The value as a number when the code is known and the bytes are all there, else 0.
double Decode(char const* record, std::size_t offset, std::size_t length, TkiType const* type) {
    bool const isWhole = type != nullptr && length >= static_cast<std::size_t>(type->size);
    return isWhole ? LoadTkiNumber(type->element, record + offset) : 0;
}

bool IsOneOf(TkiType const* type, std::initializer_list<TkiElement> elements) {
    return type != nullptr && std::ranges::find(elements, type->element) != elements.end();
}

}  // namespace

int CTkiFileRead::ConvertByteToInt(char const* record, std::size_t offset, std::size_t length,
                                   std::string_view type) const {
    TkiType const* const found = FindTkiType(type);
    if (!IsOneOf(found, {TkiElement::UnsignedByte, TkiElement::SignedByte, TkiElement::Short})) return 0;
    return static_cast<int>(Decode(record, offset, length, found));
}

long CTkiFileRead::ConvertByteToLong(char const* record, std::size_t offset, std::size_t length,
                                     std::string_view type) const {
    TkiType const* const found = FindTkiType(type);
    if (!IsOneOf(found, {TkiElement::Long, TkiElement::Word})) return 0;
    return static_cast<long>(Decode(record, offset, length, found));
}

float CTkiFileRead::ConvertByteToFloat(char const* record, std::size_t offset, std::size_t length,
                                       std::string_view type) const {
    TkiType const* const found = FindTkiType(type);
    return IsOneOf(found, {TkiElement::Float}) ? static_cast<float>(Decode(record, offset, length, found)) : 0;
}

double CTkiFileRead::ConvertByteToDouble(char const* record, std::size_t offset, std::size_t length,
                                         std::string_view type) const {
    TkiType const* const found = FindTkiType(type);
    return IsOneOf(found, {TkiElement::Double}) ? Decode(record, offset, length, found) : 0;
}

double CTkiFileRead::ConvertByte(char const* record, std::size_t offset, std::size_t length,
                                 std::string_view type) const {
    return Decode(record, offset, length, FindTkiType(type));
}

std::string CTkiFileRead::GetCharacter(char const* record, std::size_t offset, std::size_t length,
                                       std::string_view type) const {
    if (!IsOneOf(FindTkiType(type), {TkiElement::Character})) return {};
    return std::string(Trim(std::string_view(record + offset, length)));
}

Status ImportTkiFile(ImportJob& job) {
    Status status =
        CallStore(*job.store, [&] { return job.store->SetFileName(job.storePath, kCreateStore, job.owner); });
    std::monostate none;
    if (status) status = job.TakeSettings(none);
    if (!status) return status;
    CTkiFileRead importer(job.inputPath, job.storePath);
    status = ResultOf(importer.LoadFile(job.store, job.owner));
    job.report = importer.Report();
    return status;
}

}  // namespace norva
