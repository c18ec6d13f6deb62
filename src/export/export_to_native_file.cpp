#include "export/export_to_native_file.h"

#include "entry/export_types.h"
#include "entry/progress_dlg.h"
#include "export/cell_text.h"
#include "export/export_selection_dlg.h"
#include "norva/toolkit.h"
#include "platform/files.h"
#include "platform/numbers.h"
#include "store/value_rules.h"

#include <algorithm>

namespace norva {

namespace {

void AppendNumberField(std::string& line, int value) {
    line += ',';
    AppendInteger(line, value);
}

}  // namespace

CExportToNativeFile::CExportToNativeFile(CNorvaFileUtil* store, std::string outputFile, CWindow* owner)
    : CExporterBase(store, std::move(outputFile), owner) {}

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
    StoreValue value;
    char bytes[8];
    int const profileCount = static_cast<int>(m_selectedProfiles.size());
    for (std::size_t p = 0; p < selection.channels.size() && going; ++p) {
        int const index = m_store->GetFileChanIndex(selection.channels[p]);
        auto const textSize = static_cast<std::size_t>(std::max(m_store->GetChannelArraySize(index), 0));
        auto const percent = static_cast<long long>(p) * 100 / m_store->ChannelCount;
        for (int i = 0; i < profileCount && going; ++i) {
            progress.FilePercent(static_cast<long long>(i) * 100 / profileCount);
            int const profile = m_selectedProfiles[static_cast<std::size_t>(i)];
            std::string name;
            long locations = 0;
            int flag = 0;
            m_store->GetProfileInfo(profile, name, locations, flag);
            if (flag != 0) continue;
            for (long j = 0; j < locations && going; ++j) {
                if (m_store->IsLocMarkedToDelete(profile, j) != 0) continue;
                progress.ChannelPercent(percent);
                if (!value.Read(*m_store, index, profile, j)) continue;
                switch (value.dataType) {
                    case DataType::kFloat:
                        StoreFloat(bytes, value.single);
                        going = Write({bytes, 4});
                        break;
                    case DataType::kDouble:
                        StoreDouble(bytes, value.number);
                        going = Write({bytes, 8});
                        break;
                    case DataType::kText:
                        value.text.resize(textSize, ' ');
                        going = Write(value.text);
                        break;
                    case DataType::kShort:
                        StoreLittle16(bytes, static_cast<std::uint16_t>(ClampShort(value.integer)));
                        going = Write({bytes, 2});
                        break;
                    default:
                        StoreLittle32(bytes, static_cast<std::uint32_t>(value.integer));
                        going = Write({bytes, 4});
                        break;
                }
            }
        }
    }
    WriteDataEnd();
}

int RunNativeExport(ExportJob const& job) {
    CExportToNativeFile exporter(job.store, job.outputPath, job.owner);
    return exporter.Export();
}

}  // namespace norva
