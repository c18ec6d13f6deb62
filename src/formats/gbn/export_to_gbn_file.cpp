#include "formats/gbn/export_to_gbn_file.h"

#include "exchange/export_selection_dlg.h"
#include "exchange/progress_dlg.h"
#include "exchange/result.h"
#include "formats/gbn/gbn_export_type.h"
#include "platform/files.h"
#include "platform/last_error.h"
#include "platform/numbers.h"
#include "platform/text.h"
#include "store/value_rules.h"
#include "ui/messages.h"

#include <sys/file.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <ctime>
#include <filesystem>
#include <limits>
#include <system_error>

namespace norva {

namespace {

constexpr std::size_t kValuesBuffer = std::size_t{256} * 1024;
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

/// Keeps other writers of this library away from a file that is to be replaced, as long as `older` is open. False,
/// with the last error set, when one is at work on it.
bool LockOlderFile(CFile& older, std::string const& path) {
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(path, ignored) || !older.Open(path, CFile::Mode::Read)) return true;
    // A file system without locks has nobody to keep out.
    if (flock(older.Descriptor(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK) return true;
    SetLastErrorText("Couldn't write the file : " + path + "\n" + SystemErrorText(EWOULDBLOCK));
    return false;
}

}  // namespace

CExportToGBNFile::CExportToGBNFile(CNorvaFileUtil* store, std::string outputFile, CWindow* owner)
    : CExporterBase(store, std::move(outputFile), owner) {}

CExportToGBNFile::~CExportToGBNFile() = default;

int CExportToGBNFile::Export() {
    GbnLineRecord line;
    SetToday(line);
    CExportSelectionDlg dialog;
    std::vector<std::string> channelNames;
    FillChannelArray(channelNames);
    ExportSelection selection;
    if (!RunSelection(dialog, channelNames, selection)) return 0;
    CheckOldFile();
    CFile older;
    if (!LockOlderFile(older, m_outputFile) || !OpenOutput()) return 0;

    GbnReplacementFileSink sink(*m_output);
    m_file = std::make_unique<GbnFile>(sink);
    m_file->line = line;
    CProgressDlg window;
    window.Create();
    window.SetWindowTitle("Export");
    window.ResetBars();
    window.ShowFileName(m_outputFile);
    CProgressReporter progress(window);

    m_file->WriteSignature();
    m_file->WriteHeaderEnd();
    for (int const position : selection.channels) WriteChannelRecord(position, m_channels.size() + 1);
    bool isWritten = true;
    for (std::size_t i = 0; isWritten && i < m_selectedProfiles.size(); ++i) {
        progress.FilePercent(static_cast<long long>(i * 100 / m_selectedProfiles.size()));
        isWritten = WriteLine(m_selectedProfiles[i], i + 1, progress);
    }
    if (isWritten) m_file->WriteEnd();
    m_file.reset();
    int const result = isWritten ? FinishOutput() : 0;
    window.DestroyWindow();
    return result;
}

void CExportToGBNFile::WriteChannelRecord(int position, std::size_t number) {
    Channel channel;
    channel.index = m_store->GetFileChanIndex(position);
    channel.dataType = m_store->GetChannelDataType(channel.index);
    int const arraySize = m_store->GetChannelArraySize(channel.index);
    channel.arraySize = static_cast<std::size_t>(std::max(arraySize, 1));
    channel.elementWidth = ValueWidth(channel.dataType) * (channel.dataType == DataType::kText ? channel.arraySize : 1);
    channel.storeWidth = m_store->GetChannelValueSize(channel.index);
    channel.valueType = GbnValueTypeOf(channel.dataType, std::max(arraySize, 1));
    m_channels.push_back(channel);

    GbnChannelRecord& record = m_file->channel;
    record.name = ChannelNameInFile(m_store->GetChannelName(channel.index), number);
    record.valueType = channel.valueType;
    int const format = m_store->GetChannelDisplayFormat(channel.index);
    record.displayFormat =
        format >= DisplayFormat::kExponent && format <= DisplayFormat::kGeographic ? format : DisplayFormat::kFixed;
    record.width = kPrintedWidth;
    int const decimals = m_store->GetChannelNumDecPlaces(channel.index);
    record.decimals = decimals == -1 ? kUsualDecimals : decimals;
    m_file->WriteChannelRecord();
}

bool CExportToGBNFile::WriteLine(int profile, std::size_t number, CProgressReporter& progress) {
    std::string name;
    long locations = 0;
    int flag = 0;
    m_store->GetProfileInfo(profile, name, locations, flag);
    m_kept.clear();
    long count = 0;
    for (long j = 0; j < locations; ++j) {
        if (m_store->IsLocMarkedToDelete(profile, j) != 0) continue;
        if (m_kept.empty() || m_kept.back().first + m_kept.back().count != j) m_kept.push_back({j, 0});
        ++m_kept.back().count;
        ++count;
    }
    if (count > std::numeric_limits<std::int32_t>::max()) {
        ShowMessage("A GBN file cannot hold the " + std::to_string(count) + " locations of line " + name);
        return false;
    }
    m_file->line.number = static_cast<std::int32_t>(number);
    m_file->line.colonSuffix = ColonSuffixOf(name);
    m_file->WriteLineRecord();

    for (std::size_t p = 0; p < m_channels.size(); ++p) {
        Channel const& channel = m_channels[p];
        GbnBlockRecord& block = m_file->block;
        block.channelNumber = static_cast<std::int32_t>(p);
        block.valueType = channel.valueType;
        block.fiducialStart = kFiducialStart;
        block.fiducialIncrement = kFiducialIncrement;
        block.valueCount = static_cast<std::int32_t>(count);
        m_file->WriteBlockHeader();
        if (count > 0) progress.ChannelPercent(static_cast<long long>(p) * 100 / m_store->ChannelCount);
        for (LocationRun const& run : m_kept) WriteRun(channel, profile, run);
        // A full disk: what is left would be written for nothing.
        if (m_file->Failed()) break;
    }
    return true;
}

void CExportToGBNFile::WriteRun(Channel const& channel, int profile, LocationRun run) {
    auto const atOnce = static_cast<long>(std::max<std::size_t>(
        1, kValuesBuffer / std::max<std::size_t>({1, channel.storeWidth, channel.elementWidth + 1})));
    while (run.count > 0 && !m_file->Failed()) {
        long const count = std::min(run.count, atOnce);
        m_values.resize(std::max(m_values.size(), static_cast<std::size_t>(count) * channel.storeWidth));
        // A store of the host's own may know single values only.
        if (channel.elementWidth > 0 && channel.storeWidth >= channel.elementWidth &&
            m_store->ReadColumn(channel.index, profile, run.first, count, m_values.data()) != 0) {
            WriteColumnValues(channel, count);
        } else {
            for (long j = 0; j < count; ++j) WriteSingleValue(channel, profile, run.first + j);
        }
        run.first += count;
        run.count -= count;
    }
}

void CExportToGBNFile::WriteColumnValues(Channel const& channel, long count) {
    auto const values = static_cast<std::size_t>(count);
    bool const isText = channel.dataType == DataType::kText;
    if (!isText && channel.storeWidth == channel.elementWidth) {
        m_file->WriteBytes(m_values.data(), values * channel.elementWidth);
        return;
    }
    m_bytes.clear();
    for (std::size_t i = 0; i < values; ++i) {
        std::string_view const value(m_values.data() + i * channel.storeWidth, channel.elementWidth);
        if (isText) {
            AppendText(channel, value);
        } else {
            m_bytes += value;
        }
    }
    m_file->WriteBytes(m_bytes.data(), m_bytes.size());
}

void CExportToGBNFile::WriteSingleValue(Channel const& channel, int profile, long location) {
    float single = kNoDataFloat;
    double number = kNoDataDouble;
    int integer = 0;
    long longInteger = 0;
    int dataType = DataType::kSkipped;
    m_text.clear();
    bool const given = m_store->GetData(channel.index, profile, location, single, number, integer, longInteger, m_text,
                                        dataType) != 0 &&
                       GbnStoreType(GbnValueTypeOf(dataType, 1)) == GbnStoreType(channel.valueType) &&
                       dataType >= DataType::kFloat && dataType <= DataType::kShort;
    switch (GbnStoreType(channel.valueType)) {
        case DataType::kFloat: {
            std::array<char, sizeof(float)> bytes;
            StoreFloat(bytes.data(), given ? single : kNoDataFloat);
            m_file->WriteBytes(bytes.data(), bytes.size());
            break;
        }
        case DataType::kLong:
            m_file->WriteInt32(given ? integer : kNoDataLong);
            break;
        case DataType::kShort:
            m_file->WriteInt16(given ? LowShort(integer) : kNoDataShort);
            break;
        case DataType::kText:
            m_bytes.clear();
            AppendText(channel, given ? std::string_view(m_text) : std::string_view());
            m_file->WriteBytes(m_bytes.data(), m_bytes.size());
            break;
        default:
            m_file->WriteDouble(given ? number : kNoDataDouble);
    }
}

void CExportToGBNFile::AppendText(Channel const& channel, std::string_view text) {
    text = text.substr(0, channel.arraySize);
    text = text.substr(0, text.find_last_not_of(' ') + 1);
    m_bytes += text;
    m_bytes.append(channel.arraySize + 1 - text.size(), '\0');
}

Status ExportGbnFile(ExportJob& job) {
    CExportToGBNFile exporter(job.store, job.outputPath, job.owner);
    return ResultOf(exporter.Export());
}

}  // namespace norva
