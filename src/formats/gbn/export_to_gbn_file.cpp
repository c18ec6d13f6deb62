#include "formats/gbn/export_to_gbn_file.h"

#include "formats/gbn/gbn_export_type.h"
#include "platform/files.h"
#include "platform/numbers.h"
#include "platform/text.h"
#include "store/value_rules.h"

#include <sys/file.h>

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <filesystem>
#include <limits>
#include <system_error>
#include <utility>

namespace norva {

namespace {

constexpr std::size_t kLongestName = kGbnNameSize - 1;
constexpr std::int32_t kPrintedWidth = 12;
constexpr std::int32_t kUsualDecimals = 6;
constexpr double kFiducialStart = 1000.0;
constexpr double kFiducialIncrement = 1.0;

/// Cuts a name to what its field holds, not inside a UTF-8 character.
void CutName(std::string& name) {
    if (name.size() <= kLongestName) return;
    std::size_t end = kLongestName;
    auto const continues = [&name](std::size_t at) { return (static_cast<unsigned char>(name[at]) & 0xC0U) == 0x80U; };
    while (end > kLongestName - 3 && continues(end)) --end;
    name.resize(continues(end) ? kLongestName : end);
}

std::string ChannelNameInFile(std::string const& name, std::size_t number) {
    std::string cleaned(Trim(name));
    if (cleaned.empty()) cleaned = "Ch" + std::to_string(number);
    std::ranges::replace(cleaned, ':', '_');
    std::ranges::replace(cleaned, '.', '_');
    CutName(cleaned);
    return cleaned;
}

/// The number in a line's name: 10025 for "L1002.5", 7 for "LINE 7", 0 for "North".
std::int32_t ColonSuffixOf(std::string const& lineName) {
    std::string text = ReplaceAll(ToUpper(lineName), "LINE", "");
    text = ReplaceAll(text, ".", "");
    return ReadInt(ReplaceAll(text, "L", ""));
}

void SetToday(GbnLineRecord& record) {
    std::time_t const now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    record.year = local.tm_year + 1900;
    record.month = local.tm_mon + 1;
    record.day = local.tm_mday;
}

/// Keeps other writers of this library away from a file that is to be replaced, as long as `older` is open. Fails, in
/// silence, when one is at work on it.
Status LockOlderFile(CFile& older, std::string const& path) {
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(path, ignored) || !older.Open(path, CFile::Mode::Read)) return {};
    // A file system without locks has nobody to keep out.
    if (flock(older.Descriptor(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK) return {};
    return Status::FileFailure("write", path, EWOULDBLOCK).Silent();
}

std::size_t TextSize(ExportChannel const& channel) {
    return static_cast<std::size_t>(std::max(channel.arraySize, 1));
}

std::int32_t ValueTypeIn(ExportChannel const& channel) {
    return GbnValueTypeOf(channel.dataType, std::max(channel.arraySize, 1));
}

/// False for a value of another type than the channel's, and for an integer of more than 32 bits.
bool IsWritable(ExportChannel const& channel, StoreValue const& value) {
    if (value.dataType < DataType::kFloat || value.dataType > DataType::kShort) return false;
    if (GbnStoreType(GbnValueTypeOf(value.dataType, 1)) != GbnStoreType(ValueTypeIn(channel))) return false;
    return value.IsFloating() || value.dataType == DataType::kText || std::in_range<std::int32_t>(value.Whole());
}

void WriteChannelRecord(GbnFile& file, CNorvaFileUtil& store, ExportChannel const& channel, ExportReport& report) {
    GbnChannelRecord& record = file.channel;
    std::string const name = store.GetChannelName(channel.index);
    record.name = ChannelNameInFile(name, channel.number + 1);
    if (record.name != name) ++report.changedNames;
    record.valueType = ValueTypeIn(channel);
    int const format = channel.format.displayFormat;
    record.displayFormat =
        format >= DisplayFormat::kExponent && format <= DisplayFormat::kGeographic ? format : DisplayFormat::kFixed;
    record.width = kPrintedWidth;
    record.decimals = channel.format.decimals == -1 ? kUsualDecimals : channel.format.decimals;
    file.WriteChannelRecord();
}

}  // namespace

CExportToGBNFile::CExportToGBNFile(CNorvaFileUtil* store, std::string outputFile, CWindow* owner)
    : CExporterBase(store, std::move(outputFile), owner) {}

CExportToGBNFile::~CExportToGBNFile() = default;

int CExportToGBNFile::Export() {
    return RunAsked([this](ExportJob& job) { return Run(job); });
}

Status CExportToGBNFile::Run(ExportJob& job) {
    GbnLineRecord today;
    SetToday(today);
    ExportChoices choices;
    FillProfileArray(choices.lines);
    FillChannelArray(choices.channels);
    if (Status status = Choose(job, choices); !status) return status;
    CheckOldFile();
    CFile older;
    if (Status status = LockOlderFile(older, m_outputFile); !status) return status;
    if (Status status = OpenOutput(); !status) return status;
    return FinishOutput(WriteRecords(job, today));
}

Status CExportToGBNFile::WriteRecords(ExportJob& job, GbnLineRecord const& today) {
    GbnReplacementFileSink sink(*m_output);
    GbnFile file(sink);
    file.line = today;
    ExportWindow shown(m_outputFile);
    CExportWalk walk(job, shown.progress);
    CGbnValueWriter values(file);

    file.WriteSignature();
    file.WriteHeaderEnd();
    for (ExportChannel const& channel : walk.Channels()) WriteChannelRecord(file, *m_store, channel, job.report);
    Status refused;
    bool const isWhole = walk.Lines([&](ExportLine const& line) {
        long const count = walk.Kept(line);
        if (!std::in_range<std::int32_t>(count)) {
            refused = Status::Failure("A GBN file cannot hold the " + std::to_string(count) + " locations of line " +
                                      line.name);
            return false;
        }
        file.line.number = line.number + 1;
        file.line.colonSuffix = ColonSuffixOf(line.name);
        std::string const read = std::to_string(file.line.number) + ":" + std::to_string(file.line.colonSuffix);
        if (line.name != read) ++job.report.changedNames;
        file.WriteLineRecord();
        for (ExportChannel const& channel : walk.Channels()) {
            GbnBlockRecord& block = file.block;
            block.channelNumber = static_cast<std::int32_t>(channel.number);
            block.valueType = ValueTypeIn(channel);
            block.fiducialStart = kFiducialStart;
            block.fiducialIncrement = kFiducialIncrement;
            block.valueCount = static_cast<std::int32_t>(count);
            file.WriteBlockHeader();
            if (count > 0) walk.ChannelPercent(channel.number);
            if (!walk.Column(channel, line, values)) return false;
        }
        return true;
    });
    if (isWhole) file.WriteEnd();
    return refused ? walk.Result() : std::move(refused);
}

bool CGbnValueWriter::Packed(ExportChannel const& channel, std::string_view values) {
    if (channel.dataType != DataType::kText) {
        m_file.WriteBytes(values.data(), values.size());
        return !m_file.Failed();
    }
    m_bytes.clear();
    for (std::size_t at = 0; at < values.size(); at += channel.width) {
        AppendText(channel, values.substr(at, channel.width));
    }
    m_file.WriteBytes(m_bytes.data(), m_bytes.size());
    return !m_file.Failed();
}

bool CGbnValueWriter::Single(ExportChannel const& channel, StoreValue const* value) {
    bool const given = value != nullptr && IsWritable(channel, *value);
    if (value != nullptr && !given) ++channel.report->replaced;
    char bytes[sizeof(double)];
    switch (GbnStoreType(ValueTypeIn(channel))) {
        case DataType::kFloat:
            StoreFloat(bytes, given ? value->single : kNoDataFloat);
            m_file.WriteBytes(bytes, sizeof(float));
            break;
        case DataType::kLong:
            m_file.WriteInt32(given ? static_cast<std::int32_t>(value->Whole()) : kNoDataLong);
            break;
        case DataType::kShort:
            m_file.WriteInt16(given ? LowShort(value->integer) : kNoDataShort);
            break;
        case DataType::kText:
            m_bytes.clear();
            AppendText(channel, given ? std::string_view(value->text) : std::string_view());
            m_file.WriteBytes(m_bytes.data(), m_bytes.size());
            break;
        default:
            m_file.WriteDouble(given ? value->number : kNoDataDouble);
    }
    return !m_file.Failed();
}

void CGbnValueWriter::AppendText(ExportChannel const& channel, std::string_view text) {
    std::size_t const size = TextSize(channel);
    // A zero byte ends the text for its reader.
    if (text.size() > size || text.find('\0') != std::string_view::npos) ++channel.report->cutTexts;
    text = text.substr(0, size);
    text = text.substr(0, text.find_last_not_of(' ') + 1);
    m_bytes += text;
    m_bytes.append(size + 1 - text.size(), '\0');
}

Status ExportGbnFile(ExportJob& job) {
    return CExportToGBNFile(job.store, job.outputPath, job.owner).Run(job);
}

}  // namespace norva
