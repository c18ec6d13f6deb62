#include "norva/tki_file_read.h"

#include "exchange/disk_space.h"
#include "exchange/exception_guard.h"
#include "exchange/progress_dlg.h"
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
    ClearLastErrorText();
    m_report = {};
    m_failure = Guarded("Couldn't import the file", m_tkiPath, [&] {
        if (store == nullptr) return Status::Failure("There is no store to import into").Silent();
        return Load(*store, window);
    });
    return Conclude(m_failure);
}

Status CTkiFileRead::Load(CNorvaFileUtil& store, CWindow* window) {
    if (Status status = ReadDescriptors(); !status) return status;
    if (Status status = FindInterpolation(); !status) return status;
    if (Status status = FindProfiles(); !status) return status;
    if (m_profiles.empty()) {
        return Status::Failure("Couldn't read the file", m_tkiPath, "it describes no channels or has no records")
            .Silent();
    }
    Status status = WriteStore(store, window);
    if (status) m_report = MakeReport();
    return status;
}

int CTkiFileRead::GetTkiDataChannels() {
    Conclude(ReadDescriptors());
    return static_cast<int>(m_channels.size());
}

Status CTkiFileRead::ReadDescriptors() {
    Status status = m_tkiPath.empty() ? Status::Failure("There is no file to open").Silent()
                                      : ReadTkiDescriptors(m_tkiPath, m_channels);
    if (!status) m_channels.clear();
    m_recordLength = 0;
    m_textChannels = m_arrayChannels = m_otherChannels = 0;
    for (TkiChannelDesc const& channel : m_channels) {
        m_recordLength += channel.Size();
        TkiType const* const type = FindTkiType(channel.type);
        ++(type->isArray ? m_arrayChannels : type->IsText() ? m_textChannels : m_otherChannels);
    }
    if (!status || !m_channels.empty()) return status;
    return Status::Failure("Couldn't read the file", m_tkiPath, "The header holds no channel between BEGIN and END.")
        .Silent();
}

int CTkiFileRead::GetMaxInterpRecords() {
    Conclude(FindInterpolation());
    return m_interpolation;
}

Status CTkiFileRead::FindInterpolation() {
    std::int64_t common = 1;
    m_interpolation = 0;
    for (TkiChannelDesc const& channel : m_channels) {
        std::int64_t const samples = FindTkiType(channel.type)->IsScalar() ? channel.count : 1;
        std::int64_t const before = samples > common ? std::exchange(common, samples) : samples;
        if (common % before != 0) common *= before;
        if (common > kMostLocations) {
            return Status::Failure(m_tkiPath + ", line " + std::to_string(channel.line) + ": \"" + channel.name +
                                   "\", " + std::to_string(channel.count) +
                                   " samples in a record\na record would have " + std::to_string(common) +
                                   " locations; " + std::to_string(kMostLocations) + " at most are possible");
        }
    }
    m_interpolation = static_cast<int>(common);
    return {};
}

int CTkiFileRead::GetProfiles() {
    return Conclude(FindProfiles());
}

Status CTkiFileRead::FindProfiles() {
    m_profiles.clear();
    m_headerLength = m_recordCount = 0;
    m_hasNoRecords = false;
    auto const none = [this] {
        return Status::Failure("Couldn't read the file", m_tkiPath, "it describes no channels or has no records")
            .Silent();
    };
    if (m_recordLength == 0 || m_interpolation == 0) return none();
    CFile file;
    std::uint64_t size = 0;
    if (!file.Open(m_tkiPath, CFile::Mode::Read) || !file.Size(size)) {
        return Status::FileFailure("open", m_tkiPath, file.Error()).Silent();
    }
    bool const hasEnd = FindTkiHeaderEnd(file, m_headerLength);
    if (file.Error() != 0) return Status::FileFailure("read", m_tkiPath, file.Error()).Silent();
    m_hasNoRecords = !hasEnd || size <= m_headerLength + 1;
    if (m_hasNoRecords) return none();
    m_fileLength = size;
    TkiRecords const records{m_headerLength + 1, m_recordLength, (size - m_headerLength - 1) / m_recordLength};
    m_recordCount = records.count;
    auto const line = std::ranges::find_if(m_channels, IsLineChannel);
    if (line == m_channels.end()) {
        if (records.count > 0) m_profiles.push_back({"", LocationsOf(records.count, m_interpolation)});
        return {};
    }
    CTkiColumnReader reader(file, records, m_channels);
    reader.SelectAlone(static_cast<std::size_t>(line - m_channels.begin()));
    auto const width = static_cast<std::size_t>(line->Size());
    std::uint64_t first = 0;  // record of the profile
    for (std::uint64_t record = 0; record < records.count; ++record) {
        char const* const value = reader.Next();
        if (value == nullptr) return Status(reader.Failure()).Silent();
        std::string name = TkiText(std::string_view(value, width));
        if (record > 0 && name == m_profiles.back().name) continue;
        if (m_profiles.size() == static_cast<std::size_t>(kMostProfiles)) {
            return Status::Failure(m_tkiPath + " has more than " + std::to_string(kMostProfiles) + " lines");
        }
        if (record > 0) m_profiles.back().locations = LocationsOf(record - first, m_interpolation);
        m_profiles.push_back({std::move(name), 0});
        first = record;
    }
    if (records.count > 0) m_profiles.back().locations = LocationsOf(records.count - first, m_interpolation);
    return {};
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
    return Conclude(WriteStore(*store, window));
}

Status CTkiFileRead::WriteStore(CNorvaFileUtil& store, CWindow* /*window*/) {
    if (Status status = RequireRoom(store); !status) return status;
    for (TkiProfile const& profile : m_profiles) store.AddProfileToStructure(profile.name, profile.locations);
    if (Status status = CallStore(store, [&] { return store.SaveProfileStructure(); }); !status) return status;
    for (int i = 0; i < static_cast<int>(m_channels.size()); ++i) {
        NorvaChannelStruct const channel = GetNorvaChannels(i);
        constexpr int kUnset = -1;
        store.AddChannelToStructure(channel.name, channel.units, channel.dataType, channel.recordType,
                                    channel.arraySize, channel.reserved1, DisplayFormat::kUnset, kUnset, kUnset);
    }
    Status status = CallStore(store, [&] { return store.SaveChannelStructure() != 0 ? store.StartWriteData() : 0; });
    if (status) status = WriteValues(store);
    if (status) status = CallStore(store, [&] { return store.EndWriteData(); });
    return status ? CallStore(store, [&] { return store.CloseCurFile(); }) : status;
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
    return Conclude(WriteValues(*store));
}

Status CTkiFileRead::WriteValues(CNorvaFileUtil& store) {
    CFile file;
    if (!file.Open(m_tkiPath, CFile::Mode::Read)) {
        return Status::FileFailure("open", m_tkiPath, file.Error()).Silent();
    }
    std::vector<std::uint64_t> profiles;
    profiles.reserve(m_profiles.size());
    for (TkiProfile const& profile : m_profiles) profiles.push_back(RecordsOf(profile, m_interpolation));

    CProgressWindow window("Import", m_tkiPath);
    CProgressReporter& progress = window.Reporter();
    CTkiColumnReader reader(file, {m_headerLength + 1, m_recordLength, m_recordCount}, m_channels);
    CTkiValueWriter writer(store, progress, m_interpolation);
    m_reported.assign(m_channels.size(), {});
    for (std::size_t i = 0; i < m_channels.size(); ++i) {
        progress.ChannelName(m_channels[i].name);
        progress.FilePercent(static_cast<long long>(100 * (i + 1) / m_channels.size()));
        bool const isSelected = reader.Select(i);
        Status status = CallStore(
            store, [&] { return isSelected && writer.Write(m_channels[i], reader, profiles, m_reported[i]) ? 1 : 0; });
        if (!reader.Failure()) return Status(reader.Failure()).Silent();
        if (!status) return status;
    }
    return {};
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
    return TkiText(std::string_view(record + offset, length));
}

Status ImportTkiFile(ImportJob& job) {
    Status status =
        CallStore(*job.store, [&] { return job.store->SetFileName(job.storePath, kCreateStore, job.owner); });
    std::monostate none;
    if (status) status = job.TakeSettings(none);
    if (!status) return status;
    CTkiFileRead importer(job.inputPath, job.storePath);
    if (importer.LoadFile(job.store, job.owner) == 0) return Status(importer.Failure()).Silent();
    job.report = importer.Report();
    return {};
}

}  // namespace norva
