#include "formats/records/binary_import_dlg.h"

#include "formats/records/binary_import_template.h"
#include "formats/records/binary_record.h"
#include "formats/records/record_settings.h"
#include "norva/values.h"
#include "platform/numbers.h"
#include "ui/messages.h"

#include <algorithm>
#include <utility>

namespace norva {

namespace {

using namespace ids::BinaryImport;

struct ReadRadio {
    int button;
    RecordChannel::Format readFormat;
    int writeButton;  ///< the write format of the same kind
};

constexpr ReadRadio kReadRadios[] = {
    {kReadInt32, RecordChannel::Format::Int32, kWriteLong},
    {kReadInt16, RecordChannel::Format::Int16, kWriteShort},
    {kReadFloat64, RecordChannel::Format::Double, kWriteDouble},
    {kReadFloat32, RecordChannel::Format::Float, kWriteFloat},
};

struct WriteRadio {
    int button;
    int dataType;
};

constexpr WriteRadio kWriteRadios[] = {
    {kWriteFloat, DataType::kFloat},
    {kWriteDouble, DataType::kDouble},
    {kWriteShort, DataType::kShort},
    {kWriteLong, DataType::kLong},
};

/// Disabled while the record has no channels.
constexpr int kNeedsRows[] = {kChannels,   kReadInt32,   kReadInt16,  kReadFloat64, kReadFloat32,
                              kWriteFloat, kWriteDouble, kWriteShort, kWriteLong};

template <typename Radio, std::size_t size>
Radio const* FindRadio(Radio const (&radios)[size], int button) {
    auto const* const found = std::ranges::find(radios, button, &Radio::button);
    return found == std::end(radios) ? nullptr : found;
}

}  // namespace

CBinaryImportDlg::CBinaryImportDlg(std::string const& inputPath, RecordSettings& settings, std::uint64_t fileLength)
    : CDialog(4004), m_settings(settings), m_fileLength(fileLength) {
    SetTitle(Title() + "File: " + inputPath);
}

void CBinaryImportDlg::OnInitDialog() {
    m_settings.channels.clear();
    SetText(kChannelCount, "0");
    SetText(kTotalRecords, "0");
    SetText(kPointsPerLine, "0");
    SetText(kFrequency, std::to_string(m_settings.frequency));
    SetCheck(kAddFiducial, m_settings.fiducial);
    CheckRadio(kReadInt32, kReadInt32);
    CheckRadio(kWriteLong, kWriteLong);
    SetChannelCount();
}

void CBinaryImportDlg::OnEvent(DialogEvent const& event) {
    if (event.kind == DialogEvent::Kind::EditCell) return WriteBack(event);
    bool const isClick = event.kind == DialogEvent::Kind::Click;
    if (isClick && event.control != kButtonCancel) return OnClick(event.control);
    CDialog::OnEvent(event);
}

void CBinaryImportDlg::OnClick(int control) {
    switch (control) {
        case kSetCount:
            return SetChannelCount();
        case kSelectAll:
            return SelectAllRows(kChannels);
        case kSetForSelected:
            return SetFormatsOfSelected();
        case kAddFiducial:
            return Enable(kFrequency, Get(kAddFiducial).checked);
        case kHelp:
            return ShowHelpTopic("%s::/html/binary_import.htm");
        case kButtonOk:
            if (CheckSettings()) EndDialog(kButtonOk);
            return;
        default:
            if (ReadRadio const* radio = FindRadio(kReadRadios, control)) CheckRadio(kWriteLong, radio->writeButton);
    }
}

void CBinaryImportDlg::SetChannelCount() {
    int const count = std::max(ReadInt(Get(kChannelCount).text), 0);
    if (count > kMostRecordChannels) {
        return ShowMessage("A record can have " + std::to_string(kMostRecordChannels) + " channels at most");
    }
    for (int const control : kNeedsRows) Enable(control, count > 0);
    norva::SetChannelCount(m_settings, static_cast<std::size_t>(count));
    FillList();
    RefreshState();
}

void CBinaryImportDlg::SetFormatsOfSelected() {
    ReadRadio const* const read = FindRadio(kReadRadios, CheckedRadio(kReadInt32));
    WriteRadio const* const write = FindRadio(kWriteRadios, CheckedRadio(kWriteLong));
    if (read == nullptr || write == nullptr) return;
    for (int const row : Get(kChannels).selected) {
        RecordChannel& channel = m_settings.channels[static_cast<std::size_t>(row)];
        channel.format = read->readFormat;
        channel.dataType = write->dataType;
    }
    FillList();
    RefreshState();
}

void CBinaryImportDlg::WriteBack(DialogEvent const& event) {
    RecordChannel& channel = m_settings.channels[static_cast<std::size_t>(event.row)];
    (event.column == kNameColumn ? channel.name : channel.units) = event.text;
}

void CBinaryImportDlg::FillList() {
    std::vector<std::vector<std::string>> rows;
    rows.reserve(m_settings.channels.size());
    for (RecordChannel const& channel : m_settings.channels) {
        rows.push_back({std::to_string(rows.size() + 1), channel.name, channel.units,
                        std::string(ReadFormatText(channel.format))});
    }
    SetRows(kChannels, std::move(rows));
}

void CBinaryImportDlg::TakeNumbers() {
    m_settings.records = std::max<std::int64_t>(ReadInteger(Get(kTotalRecords).text), 0);
    m_settings.pointsPerLine = ReadInteger(Get(kPointsPerLine).text);
    m_settings.fiducial = Get(kAddFiducial).checked;
    m_settings.frequency = ReadInt(Get(kFrequency).text);
}

void CBinaryImportDlg::RefreshState() {
    bool const isReady = IsRecordKnown(m_settings);
    for (int const control : {kButtonOk, kTotalRecords, kPointsPerLine}) Enable(control, isReady);
    TakeNumbers();
    FitToFile(m_settings, m_fileLength);
    SetText(kTotalRecords, std::to_string(*m_settings.records));
    SetText(kPointsPerLine, std::to_string(*m_settings.pointsPerLine));
}

bool CBinaryImportDlg::CheckSettings() {
    TakeNumbers();
    Status const status = CheckRecordSettings(m_settings);
    if (!status) ShowMessage(status.Text());
    return status.IsGood();
}

}  // namespace norva
