#include "formats/records/binary_import_dlg.h"

#include "formats/records/binary_import_template.h"
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
    int readFormat;
    int writeButton;  ///< the write format of the same kind
};

constexpr ReadRadio kReadRadios[] = {
    {kReadInt32, ReadFormat::kInt32, kWriteLong},
    {kReadInt16, ReadFormat::kInt16, kWriteShort},
    {kReadFloat64, ReadFormat::kDouble, kWriteDouble},
    {kReadFloat32, ReadFormat::kFloat, kWriteFloat},
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

CBinaryImportDlg::CBinaryImportDlg(std::string const& inputPath, std::vector<BinaryChannelDef>& channels,
                                   std::uint64_t fileLength)
    : CDialog(4004), m_channels(channels), m_fileLength(fileLength) {
    SetTitle(Title() + "File: " + inputPath);
}

std::int64_t CBinaryImportDlg::TotalRecords() const {
    return ReadInteger(Get(kTotalRecords).text);
}

std::int64_t CBinaryImportDlg::PointsPerLine() const {
    return ReadInteger(Get(kPointsPerLine).text);
}

bool CBinaryImportDlg::AddFiducial() const {
    return Get(kAddFiducial).checked;
}

int CBinaryImportDlg::Frequency() const {
    return ReadInt(Get(kFrequency).text);
}

void CBinaryImportDlg::OnInitDialog() {
    m_channels.clear();
    SetText(kChannelCount, "0");
    SetText(kTotalRecords, "0");
    SetText(kPointsPerLine, "0");
    SetText(kFrequency, "1");
    SetCheck(kAddFiducial, true);
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
            return Enable(kFrequency, AddFiducial());
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
    if (count > kMostChannels) {
        return ShowMessage("A record can have " + std::to_string(kMostChannels) + " channels at most");
    }
    for (int const control : kNeedsRows) Enable(control, count > 0);
    auto const rows = static_cast<std::size_t>(count);
    std::size_t row = m_channels.size();
    m_channels.resize(rows);
    for (; row < rows; ++row) m_channels[row].name = "Ch" + std::to_string(row + 1);
    FillList();
    RefreshState();
}

void CBinaryImportDlg::SetFormatsOfSelected() {
    ReadRadio const* const read = FindRadio(kReadRadios, CheckedRadio(kReadInt32));
    WriteRadio const* const write = FindRadio(kWriteRadios, CheckedRadio(kWriteLong));
    if (read == nullptr || write == nullptr) return;
    for (int const row : Get(kChannels).selected) {
        BinaryChannelDef& channel = m_channels[static_cast<std::size_t>(row)];
        channel.readFormat = read->readFormat;
        channel.dataType = write->dataType;
    }
    FillList();
    RefreshState();
}

void CBinaryImportDlg::WriteBack(DialogEvent const& event) {
    BinaryChannelDef& channel = m_channels[static_cast<std::size_t>(event.row)];
    (event.column == kNameColumn ? channel.name : channel.units) = event.text;
}

void CBinaryImportDlg::FillList() {
    std::vector<std::vector<std::string>> rows;
    rows.reserve(m_channels.size());
    for (BinaryChannelDef const& channel : m_channels) {
        rows.push_back({std::to_string(rows.size() + 1), channel.name, channel.units,
                        std::string(ReadFormatText(channel.readFormat))});
    }
    SetRows(kChannels, std::move(rows));
}

bool CBinaryImportDlg::IsReady() const {
    return !m_channels.empty() && std::ranges::all_of(m_channels, [](BinaryChannelDef const& channel) {
        return !channel.name.empty() && channel.readFormat != ReadFormat::kNone;
    });
}

void CBinaryImportDlg::RefreshState() {
    bool const isReady = IsReady();
    for (int const control : {kButtonOk, kTotalRecords, kPointsPerLine}) Enable(control, isReady);
    RecordCount count;
    std::int64_t points = 0;
    if (isReady) {
        count = CountRecords(m_fileLength, RecordSize(m_channels));
        m_lengthFits = count.fits;
        points = PointsPerLine();
        if (points == 0 || points > count.records) points = count.records;
    }
    SetText(kTotalRecords, std::to_string(count.records));
    SetText(kPointsPerLine, std::to_string(points));
}

bool CBinaryImportDlg::CheckSettings() const {
    char const* problem = nullptr;
    if (PointsPerLine() < 1) {
        problem = "Set Number of points in a line";
    } else if (!std::ranges::all_of(m_channels, [](BinaryChannelDef const& channel) {
                   return !channel.name.empty() && channel.dataType != DataType::kSkipped &&
                          channel.readFormat != ReadFormat::kNone;
               })) {
        problem = "Check settings for data column";
    } else if (AddFiducial() && Frequency() < 1) {
        problem = "Set the Sampling Frequency";
    }
    if (problem != nullptr) ShowMessage(problem);
    return problem == nullptr;
}

}  // namespace norva
