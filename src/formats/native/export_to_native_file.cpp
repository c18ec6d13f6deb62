#include "formats/native/export_to_native_file.h"

#include "exchange/cell_text.h"
#include "exchange/export_selection_dlg.h"
#include "exchange/progress_dlg.h"
#include "exchange/result.h"
#include "formats/native/native_export_type.h"
#include "norva/toolkit.h"
#include "norva/traced_store.h"
#include "platform/files.h"
#include "platform/last_error.h"
#include "platform/numbers.h"
#include "store/value_rules.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <typeinfo>

namespace norva {

namespace {

constexpr std::size_t kBlockBytes = 256 * 1024;

/// A host's own store is asked value by value: what it gives need not be what the file below it holds.
bool GivesPackedValues(CNorvaFileUtil const& store) {
    return typeid(store) == typeid(CNorvaFileUtil) || typeid(store) == typeid(CTracedStore);
}

void AppendNumberField(std::string& line, int value) {
    line += ',';
    AppendInteger(line, value);
}

}  // namespace

CExportToNativeFile::CExportToNativeFile(CNorvaFileUtil* store, std::string outputFile, CWindow* owner)
    : CExporterBase(store, std::move(outputFile), owner) {
    m_mayReplaceStore = true;
}

CExportToNativeFile::~CExportToNativeFile() = default;

int CExportToNativeFile::ClampShort(int value) {
    return value > -32767 && value < 32767 ? value : 32767;
}

int CExportToNativeFile::Export() {
    CExportSelectionDlg dialog;
    dialog.EnablePointId(0);
    std::vector<std::string> channelNames;
    FillChannelArray(channelNames);
    ExportSelection selection;
    if (!RunSelection(dialog, channelNames, selection)) return 0;
    CheckOldFile();
    if (!OpenOutput()) {
        MessageRequest request;
        request.text = "New order File could not be opened ";
        request.caption = "Save File";
        request.owner = m_owner;
        CurrentToolkit().ShowMessage(request);
        return 0;
    }
    WriteData(selection);
    return FinishOutput();
}

int CExportToNativeFile::WriteProfiles() {
    std::string section = "PROFILES START\n";
    for (int const profile : m_selectedProfiles) {
        std::string name;
        long locations = 0;
        int flag = 0;
        m_store->GetProfileInfo(profile, name, locations, flag);
        if (flag != 0) continue;
        section += name + ',';
        AppendInteger(section, m_store->GetProfileLocationNum(profile, 1));
        section += '\n';
    }
    Write(section += "PROFILES END\n");
    return 1;
}

int CExportToNativeFile::WriteChannels(int count, int const* channels) {
    std::string section = "CHANNELS START\n";
    for (int i = 0; i < count; ++i) {
        int const index = m_store->GetFileChanIndex(channels[i]);
        if (index < 0) continue;
        section += m_store->GetChannelName(index) + ',' + m_store->GetChannelUnits(index);
        AppendNumberField(section, m_store->GetChannelRecordType(index));
        AppendNumberField(section, m_store->GetChannelArraySize(index));
        AppendNumberField(section, m_store->GetChannelDataType(index));
        AppendNumberField(section, m_store->GetChannelDisplayFormat(index));
        AppendNumberField(section, m_store->GetChannelNumDecPlaces(index));
        AppendNumberField(section, m_store->GetChannelTemplateFormat(index));
        section += '\n';
    }
    Write(section += "CHANNELS END\n");
    return 1;
}

int CExportToNativeFile::WriteDataStart() {
    Write("DATA START\n");
    return 1;
}

int CExportToNativeFile::WriteDataEnd() {
    Write("DATA END\n");
    return 1;
}

void CExportToNativeFile::WriteData(ExportSelection const& selection) {
    CProgressDlg window;
    window.Create();
    window.SetWindowTitle("Export");
    window.ResetBars();
    window.ShowFileName(m_outputFile);
    CProgressReporter progress(window);

    WriteProfiles();
    WriteChannels(static_cast<int>(selection.channels.size()), selection.channels.data());
    bool going = WriteDataStart() == 1;
    int const profileCount = static_cast<int>(m_selectedProfiles.size());
    for (std::size_t p = 0; p < selection.channels.size() && going; ++p) {
        Column const column = ColumnAt(selection.channels[p]);
        for (int i = 0; i < profileCount && going; ++i) {
            progress.FilePercent(static_cast<long long>(i) * 100 / profileCount);
            int const profile = m_selectedProfiles[static_cast<std::size_t>(i)];
            std::string name;
            long locations = 0;
            int flag = 0;
            m_store->GetProfileInfo(profile, name, locations, flag);
            if (flag != 0) continue;
            // Every location would send the same text; a listed profile has at least one.
            progress.ChannelPercent(static_cast<long long>(p) * 100 / m_store->ChannelCount);
            going = column.blockWidth > 0 ? WriteBlocks(column, profile, locations)
                                          : WriteValues(column, profile, locations);
        }
    }
    WriteDataEnd();
}

CExportToNativeFile::Column CExportToNativeFile::ColumnAt(int position) {
    Column column;
    column.index = m_store->GetFileChanIndex(position);
    column.dataType = m_store->GetChannelDataType(column.index);
    int const arraySize = m_store->GetChannelArraySize(column.index);
    bool const isText = column.dataType == DataType::kText;
    column.textSize = static_cast<std::size_t>(std::max(arraySize, 0));
    std::size_t const width = ValueWidth(column.dataType) * (isText ? column.textSize : 1);
    bool const isArray = m_store->GetChannelValueSize(column.index) != width;
    if (GivesPackedValues(*m_store) && !isArray) column.blockWidth = width;
    return column;
}

bool CExportToNativeFile::WriteBlocks(Column const& column, int profile, long locations) {
    std::size_t const width = column.blockWidth;
    long const atOnce = static_cast<long>(std::max<std::size_t>(kBlockBytes / width, 1));
    bool const isWhole = m_store->GetProfileLocationNum(profile, 1) == locations;
    for (long first = 0; first < locations; first += atOnce) {
        long const count = std::min(atOnce, locations - first);
        m_block.resize(static_cast<std::size_t>(count) * width);
        if (m_store->ReadColumn(column.index, profile, first, count, m_block.data()) == 0) {
            // The store has said why, as a rule; a file that lacks values must not pass for a whole one.
            SetLastErrorText("Couldn't read the store : " + m_store->GetNorvaFileName());
            return false;
        }
        std::size_t kept = m_block.size();
        if (!isWhole) {
            kept = 0;
            for (long j = 0; j < count; ++j) {
                if (m_store->IsLocMarkedToDelete(profile, first + j) != 0) continue;
                std::memmove(m_block.data() + kept, m_block.data() + static_cast<std::size_t>(j) * width, width);
                kept += width;
            }
        }
        if (column.dataType == DataType::kShort) {
            for (std::size_t at = 0; at < kept; at += width) {
                auto const value = static_cast<std::int16_t>(LoadLittle16(&m_block[at]));
                StoreLittle16(&m_block[at], static_cast<std::uint16_t>(ClampShort(value)));
            }
        }
        if (!Write({m_block.data(), kept})) return false;
    }
    return true;
}

bool CExportToNativeFile::WriteValues(Column const& column, int profile, long locations) {
    StoreValue value;
    char bytes[8];
    bool going = true;
    for (long j = 0; j < locations && going; ++j) {
        if (m_store->IsLocMarkedToDelete(profile, j) != 0) continue;
        if (!value.Read(*m_store, column.index, profile, j)) continue;
        switch (value.dataType) {
            case DataType::kFloat:
                StoreFloat(bytes, value.single);
                going = Write({bytes, 4});
                break;
            case DataType::kDouble:
                StoreDouble(bytes, value.number);
                going = Write({bytes, 8});
                break;
            case DataType::kInt:
            case DataType::kLong:
                StoreLittle32(bytes, static_cast<std::uint32_t>(value.integer));
                going = Write({bytes, 4});
                break;
            case DataType::kText:
                value.text.resize(column.textSize, ' ');
                going = Write(value.text);
                break;
            case DataType::kShort:
                StoreLittle16(bytes, static_cast<std::uint16_t>(ClampShort(value.integer)));
                going = Write({bytes, 2});
                break;
            default:
                break;
        }
    }
    return going;
}

Status ExportNativeFile(ExportJob& job) {
    CExportToNativeFile exporter(job.store, job.outputPath, job.owner);
    return ResultOf(exporter.Export());
}

}  // namespace norva
