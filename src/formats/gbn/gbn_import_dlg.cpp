#include "formats/gbn/gbn_import_dlg.h"

#include "formats/gbn/gbn_import_template.h"
#include "formats/gbn/gbn_settings.h"
#include "ui/messages.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <utility>
#include <vector>

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

/// The places that are ticked; none for all of them.
std::optional<std::vector<int>> Ticked(std::vector<bool> const& ticks) {
    std::vector<int> places;
    for (std::size_t i = 0; i < ticks.size(); ++i) {
        if (ticks[i]) places.push_back(static_cast<int>(i));
    }
    return places.size() == ticks.size() ? std::nullopt : std::optional(std::move(places));
}

}  // namespace

CGbnImportDlg::CGbnImportDlg(GbnContents const& contents, GbnSettings& settings)
    : CDialog(4059), m_contents(contents), m_settings(settings), m_lastList(kChannels) {}

void CGbnImportDlg::OnInitDialog() {
    std::vector<std::vector<std::string>> rows;
    for (GbnChannelEntry const& entry : m_contents.channels) {
        NorvaChannelStruct const& channel = entry.description;
        rows.push_back(
            {"", std::to_string(rows.size() + 1), channel.name, channel.units, FormatName(channel.dataType)});
    }
    SetRows(kChannels, std::move(rows));
    rows.clear();
    for (GbnLineEntry const& line : m_contents.lines) {
        rows.push_back({"", std::to_string(rows.size() + 1), line.name, std::to_string(line.locationCount)});
    }
    SetRows(kLines, std::move(rows));
    for (int const list : {kChannels, kLines}) {
        CControl& control = Change(list);
        control.ticks.assign(control.rows.size(), true);
    }
    SetText(kLineCount, std::to_string(m_contents.lines.size()));
    SetText(kChannelCount, std::to_string(m_contents.channels.size()));
    CheckRadio(kLong, kLong);
    SetCheck(kFiducial, m_settings.fiducial);
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
            m_settings.fiducial = Get(kFiducial).checked;
        } else if (event.control == kButtonOk && !TakeTicks()) {
            return;
        }
    }
    CDialog::OnEvent(event);
}

void CGbnImportDlg::TakeCell(DialogEvent const& event) {
    if (event.control == kLines) {
        RenameLine(m_settings, event.row, event.text);
    } else if (event.column == kNameColumn) {
        ChangeOf(m_settings, event.row).name = event.text;
    } else {
        ChangeOf(m_settings, event.row).units = event.text;
    }
    EnableContinue();
}

void CGbnImportDlg::SetTypeOfSelected() {
    int const dataType = TypeOfRadio(CheckedRadio(kFloat));
    for (int const row : Get(kChannels).selected) {
        ChangeOf(m_settings, row).dataType = dataType;
        SetCell(kChannels, row, kFormatColumn, FormatName(dataType));
    }
}

void CGbnImportDlg::TickSelected(bool on) {
    for (int const row : Get(m_lastList).selected) SetTick(m_lastList, row, on);
}

void CGbnImportDlg::EnableContinue() {
    auto const& channels = Get(kChannels).rows;
    bool const named = std::ranges::none_of(channels, [](auto const& row) { return row[kNameColumn].empty(); });
    Enable(kButtonOk, named && !channels.empty() && !Get(kLines).rows.empty());
}

bool CGbnImportDlg::TakeTicks() {
    m_settings.channels = Ticked(Get(kChannels).ticks);
    m_settings.lines = Ticked(Get(kLines).ticks);
    bool const channels = !m_settings.channels || !m_settings.channels->empty();
    bool const lines = !m_settings.lines || !m_settings.lines->empty();
    if (!channels) ShowMessage("At least one channel should be selected");
    if (!lines) ShowMessage("At least one line should be selected");
    return channels && lines;
}

}  // namespace norva
