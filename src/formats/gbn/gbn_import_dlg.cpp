#include "formats/gbn/gbn_import_dlg.h"

#include "formats/gbn/gbn_import_template.h"
#include "ui/messages.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

namespace norva {

namespace {

using namespace ids::GbnImport;

std::string FormatName(int dataType) {
    switch (dataType) {
        case DataType::kFloat:
            return "FLOAT";
        case DataType::kDouble:
            return "DOUBLE";
        case DataType::kLong:
            return "LONG";
        case DataType::kText:
            return "BYTE";
        case DataType::kShort:
            return "INT";
        default:
            return "";
    }
}

int TypeOfRadio(int radio) {
    static constexpr std::array<std::pair<int, int>, 5> kTypes{{
        {kFloat, DataType::kFloat},
        {kShort, DataType::kShort},
        {kDouble, DataType::kDouble},
        {kLong, DataType::kLong},
        {kText, DataType::kText},
    }};
    return std::ranges::find(kTypes, radio, &std::pair<int, int>::first)->second;
}

/// Copies ticks into a table; the result is whether any is set.
template <class Entry>
bool CopyTicks(std::vector<bool> const& ticks, std::vector<Entry>& entries) {
    for (std::size_t i = 0; i < entries.size(); ++i) entries[i].selected = ticks[i] ? 1 : 0;
    return std::ranges::find(ticks, true) != ticks.end();
}

}  // namespace

CGbnImportDlg::CGbnImportDlg(std::vector<GbnChannelEntry>& channels, std::vector<GbnLineEntry>& lines, int addFiducial)
    : CDialog(4059), m_channels(channels), m_lines(lines), m_addFiducial(addFiducial), m_lastList(kChannels) {}

void CGbnImportDlg::OnInitDialog() {
    std::vector<std::vector<std::string>> rows;
    for (GbnChannelEntry const& entry : m_channels) {
        NorvaChannelStruct const& channel = entry.description;
        rows.push_back(
            {"", std::to_string(rows.size() + 1), channel.name, channel.units, FormatName(channel.dataType)});
    }
    SetRows(kChannels, std::move(rows));
    rows.clear();
    for (GbnLineEntry const& line : m_lines) {
        rows.push_back({"", std::to_string(rows.size() + 1), line.name, std::to_string(line.locationCount)});
    }
    SetRows(kLines, std::move(rows));
    for (int const list : {kChannels, kLines}) {
        CControl& control = Change(list);
        control.ticks.assign(control.rows.size(), true);
    }
    SetText(kLineCount, std::to_string(m_lines.size()));
    SetText(kChannelCount, std::to_string(m_channels.size()));
    CheckRadio(kLong, kLong);
    SetCheck(kFiducial, m_addFiducial != 0);
    EnableContinue();
}

void CGbnImportDlg::OnEvent(DialogEvent const& event) {
    if (event.control == kChannels || event.control == kLines) {
        m_lastList = event.control;
        if (event.kind == DialogEvent::Kind::EditCell) TakeCell(event);
        return;
    }
    if (event.kind == DialogEvent::Kind::Click) {
        if (event.control == kSetForSelected) {
            SetTypeOfSelected();
        } else if (event.control == kCheckSelection || event.control == kUncheckSelection) {
            TickSelected(event.control == kCheckSelection);
        } else if (event.control == kFiducial) {
            m_addFiducial = Get(kFiducial).checked ? 1 : 0;
        } else if (event.control == kButtonOk && !TakeTicks()) {
            return;
        }
    }
    CDialog::OnEvent(event);
}

void CGbnImportDlg::TakeCell(DialogEvent const& event) {
    auto const row = static_cast<std::size_t>(event.row);
    if (event.control == kLines) {
        m_lines[row].name = event.text;
    } else if (event.column == kNameColumn) {
        m_channels[row].description.name = event.text;
    } else {
        m_channels[row].description.units = event.text;
    }
    EnableContinue();
}

void CGbnImportDlg::SetTypeOfSelected() {
    int const dataType = TypeOfRadio(CheckedRadio(kFloat));
    for (int const row : Get(kChannels).selected) {
        m_channels[static_cast<std::size_t>(row)].description.dataType = dataType;
        SetCell(kChannels, row, kFormatColumn, FormatName(dataType));
    }
}

void CGbnImportDlg::TickSelected(bool on) {
    for (int const row : Get(m_lastList).selected) SetTick(m_lastList, row, on);
}

void CGbnImportDlg::EnableContinue() {
    bool const named =
        std::ranges::none_of(m_channels, [](GbnChannelEntry const& entry) { return entry.description.name.empty(); });
    Enable(kButtonOk, named && !m_channels.empty() && !m_lines.empty());
}

bool CGbnImportDlg::TakeTicks() {
    bool const channels = CopyTicks(Get(kChannels).ticks, m_channels);
    bool const lines = CopyTicks(Get(kLines).ticks, m_lines);
    if (!channels) ShowMessage("At least one channel should be selected");
    if (!lines) ShowMessage("At least one line should be selected");
    return channels && lines;
}

}  // namespace norva
