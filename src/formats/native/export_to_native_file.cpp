#include "formats/native/export_to_native_file.h"

#include "formats/native/native_export_type.h"
#include "formats/native/whole_store_writer.h"
#include "norva/toolkit.h"
#include "platform/files.h"
#include "store/store_layout.h"
#include "store/value_rules.h"

#include <cstdint>
#include <utility>

namespace norva {

CExportToNativeFile::CExportToNativeFile(CNorvaFileUtil* store, std::string outputFile, CWindow* owner)
    : CExporterBase(store, std::move(outputFile), owner) {
    m_mayReplaceStore = true;
}

CExportToNativeFile::~CExportToNativeFile() = default;

int CExportToNativeFile::ClampShort(int value) {
    return value > -32767 && value < 32767 ? value : 32767;
}

int CExportToNativeFile::Export() {
    return RunAsked([this](ExportJob& job) { return Run(job); });
}

Status CExportToNativeFile::Run(ExportJob& job) {
    ExportChoices choices;
    choices.pointId = false;
    FillProfileArray(choices.lines);
    FillChannelArray(choices.channels);
    if (Status status = Choose(job, choices); !status) return status;
    CheckOldFile();
    bool const isWholeStore = IsStoreItself() && m_store->GivesPackedValues();
    CWholeStoreWriter whole(*m_store);
    Status opened = isWholeStore ? whole.Open(m_outputFile) : OpenOutput();
    if (!opened) {
        MessageRequest request;
        request.text = "New order File could not be opened ";
        request.caption = "Save File";
        request.owner = m_owner;
        CurrentToolkit().ShowMessage(request);
        return opened;
    }
    return isWholeStore ? whole.Write(job, m_profileIndexTable) : FinishOutput(WriteData(job));
}

int CExportToNativeFile::WriteProfiles() {
    std::string section(kProfilesStartLine);
    for (int const profile : m_selectedProfiles) {
        std::string name;
        long locations = 0;
        int flag = 0;
        m_store->GetProfileInfo(profile, name, locations, flag);
        if (flag == 0) AppendProfileLine(section, name, m_store->GetProfileLocationNum(profile, 1));
    }
    Write(section.append(kProfilesEndLine));
    return 1;
}

int CExportToNativeFile::WriteChannels(int count, int const* channels) {
    std::string section(kChannelsStartLine);
    for (int i = 0; i < count; ++i) {
        int const index = m_store->GetFileChanIndex(channels[i]);
        if (index >= 0) AppendChannelLine(section, DescribedChannel(*m_store, index));
    }
    Write(section.append(kChannelsEndLine));
    return 1;
}

int CExportToNativeFile::WriteDataStart() {
    Write(kDataStartLine);
    return 1;
}

int CExportToNativeFile::WriteDataEnd() {
    Write(kDataEndLine);
    return 1;
}

void CExportToNativeFile::CountChangedNames(ExportReport& report, std::vector<ExportChannel> const& channels) const {
    for (int const profile : m_selectedProfiles) {
        std::string name;
        long locations = 0;
        int flag = 0;
        m_store->GetProfileInfo(profile, name, locations, flag);
        if (!IsProfileNameKept(name)) ++report.changedNames;
    }
    for (ExportChannel const& channel : channels) {
        bool const isKept = IsChannelNameKept(m_store->GetChannelName(channel.index)) &&
                            IsProfileNameKept(m_store->GetChannelUnits(channel.index));
        if (!isKept) ++report.changedNames;
    }
}

Status CExportToNativeFile::WriteData(ExportJob& job) {
    ExportWindow shown(m_outputFile);
    CExportWalk walk(job, shown.progress);
    CountChangedNames(job.report, walk.Channels());

    WriteProfiles();
    WriteChannels(static_cast<int>(job.settings.channels->size()), job.settings.channels->data());
    WriteDataStart();
    for (ExportChannel const& channel : walk.Channels()) {
        bool const isWritten = walk.Lines([&](ExportLine const& line) {
            if (line.flag != 0) return true;
            // Every location would send the same text; a listed profile has at least one.
            walk.ChannelPercent(channel.number);
            return walk.Column(channel, line, *this);
        });
        if (!isWritten) break;
    }
    WriteDataEnd();
    return walk.Result();
}

bool CExportToNativeFile::Packed(ExportChannel const& channel, std::string_view values) {
    if (channel.dataType != DataType::kShort) return Write(values);
    m_shorts.assign(values.begin(), values.end());
    for (std::size_t at = 0; at < m_shorts.size(); at += channel.width) {
        auto const value = static_cast<std::int16_t>(LoadLittle16(&m_shorts[at]));
        int const written = ClampShort(value);
        if (written != value) ++channel.report->replaced;
        StoreLittle16(&m_shorts[at], static_cast<std::uint16_t>(written));
    }
    return Write({m_shorts.data(), m_shorts.size()});
}

bool CExportToNativeFile::Single(ExportChannel const& channel, StoreValue const* value) {
    if (value == nullptr) return true;
    char bytes[8];
    switch (value->dataType) {
        case DataType::kFloat:
            StoreFloat(bytes, value->single);
            return Write({bytes, 4});
        case DataType::kDouble:
            StoreDouble(bytes, value->number);
            return Write({bytes, 8});
        case DataType::kInt:
        case DataType::kLong: {
            bool const fits = std::in_range<std::int32_t>(value->Whole());
            if (!fits) ++channel.report->replaced;
            std::int32_t const written = fits ? static_cast<std::int32_t>(value->Whole()) : kNoDataLong;
            StoreLittle32(bytes, static_cast<std::uint32_t>(written));
            return Write({bytes, 4});
        }
        case DataType::kText: {
            if (value->text.size() > channel.width) ++channel.report->cutTexts;
            std::string text = value->text;
            text.resize(channel.width, ' ');
            return Write(text);
        }
        case DataType::kShort: {
            int const written = ClampShort(value->integer);
            if (written != value->integer) ++channel.report->replaced;
            StoreLittle16(bytes, static_cast<std::uint16_t>(written));
            return Write({bytes, 2});
        }
        default:
            return true;
    }
}

Status ExportNativeFile(ExportJob& job) {
    return CExportToNativeFile(job.store, job.outputPath, job.owner).Run(job);
}

}  // namespace norva
