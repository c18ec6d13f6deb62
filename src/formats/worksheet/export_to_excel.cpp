#include "norva/export_to_excel.h"

#include "exchange/cell_text.h"
#include "exchange/exception_guard.h"
#include "exchange/export_selection_dlg.h"
#include "exchange/progress_dlg.h"
#include "exchange/result.h"
#include "formats/worksheet/spreadsheet.h"
#include "formats/worksheet/worksheet_export_type.h"
#include "platform/files.h"
#include "platform/last_error.h"
#include "platform/numbers.h"
#include "ui/messages.h"

namespace norva {

namespace {

// Built-in number formats of the sheet.
constexpr int kIntegerFormat = 2;
constexpr int kFloatFormat = 3;
// What readers of BIFF2 can hold.
constexpr long kReadableRows = 16384;
constexpr long kReadableColumns = 256;

}  // namespace

CExportToExcel::CExportToExcel(CNorvaFileUtil* store, std::string outputFile, CWindow* owner)
    : CExporterBase(store, std::move(outputFile), owner) {}

CExportToExcel::~CExportToExcel() = default;

bool CExportToExcel::ConfirmSize(ExportSelection const& selection, std::vector<int> const& channels) {
    long const columns = static_cast<long>(channels.size()) + selection.labelAsChannel + selection.pointIdAsChannel;
    long rows = 1;
    for (int const profile : m_selectedProfiles) {
        rows += m_store->GetProfileLocationNum(profile, 1) + (selection.labelAsChannel == 0 ? 1 : 0);
    }
    if (rows <= kReadableRows && columns <= kReadableColumns) return true;
    std::string const size = "The sheet will have " + std::to_string(rows) + " rows and " + std::to_string(columns) +
                             " columns.\nPrograms that read this format hold at most " + std::to_string(kReadableRows) +
                             " rows and " + std::to_string(kReadableColumns) + " columns.";
    if (AskYesNo(size + "\nDo you want to write it?")) return true;
    SetLastErrorText(size);
    return false;
}

int CExportToExcel::Export() {
    return GuardedResult("Couldn't write the file", m_outputFile, [this] {
        CExportSelectionDlg dialog;
        std::vector<std::string> channelNames;
        FillChannelArray(channelNames);
        ExportSelection selection;
        if (!RunSelection(dialog, channelNames, selection)) return 0;
        std::vector<int> channels;  // in the store's order, whatever the order of the export list
        int const selected = static_cast<int>(selection.channels.size());
        for (int k = 0; k < m_store->ChannelCount; ++k) {
            if (isChannelExported(k, selected, selection.channels.data()) == 1) channels.push_back(k);
        }
        if (!ConfirmSize(selection, channels)) return 0;
        CheckOldFile();
        if (!OpenOutput()) return 0;

        CSpreadsheet sheet;
        FillSheet(sheet, selection, channels);
        auto const sink = [](void* self, std::string_view bytes) {
            return static_cast<CExportToExcel*>(self)->Write(bytes);
        };
        sheet.Write(sink, this);
        return FinishOutput();
    });
}

void CExportToExcel::FillSheet(CSpreadsheet& sheet, ExportSelection const& selection,
                               std::vector<int> const& channels) {
    CProgressDlg window;
    window.Create();
    window.SetWindowTitle("Export");
    window.ResetBars();
    window.ShowFileName(m_outputFile);
    CProgressReporter progress(window);

    std::size_t column = 0;
    if (selection.labelAsChannel != 0) sheet.Cell(0, column++).SetText("LINE");
    if (selection.pointIdAsChannel != 0) sheet.Cell(0, column++).SetText("POINT_ID");
    std::vector<ExportChannel> exported;
    for (int const position : channels) {
        exported.push_back(ExportChannel::Of(*m_store, position));
        sheet.Cell(0, column++).SetText(m_store->GetChannelName(exported.back().index));
    }

    CCellText cells;
    StoreValue value;
    std::string text;
    std::size_t row = 1;
    int const profileCount = static_cast<int>(m_selectedProfiles.size());
    for (int i = 0; i < profileCount; ++i) {
        progress.FilePercent(static_cast<long long>(i) * 100 / profileCount);
        int const profile = m_selectedProfiles[static_cast<std::size_t>(i)];
        std::string name;
        long locations = 0;
        int flag = 0;
        m_store->GetProfileInfo(profile, name, locations, flag);
        if (selection.labelAsChannel == 0) sheet.Cell(row++, 0).SetText("LINE " + name);
        for (long j = 0; j < locations; ++j) {
            if (m_store->IsLocMarkedToDelete(profile, j) != 0) continue;
            column = 0;
            if (selection.labelAsChannel != 0) sheet.Cell(row, column++).SetText(name);
            if (selection.pointIdAsChannel != 0) {
                text.clear();
                AppendInteger(text, i + 1);
                text += '_';
                AppendInteger(text, j + 1);
                sheet.Cell(row, column++).SetText(text);
            }
            std::size_t next = 0;
            for (int k = 0; k < m_store->ChannelCount; ++k) {
                progress.ChannelPercent(static_cast<long long>(k) * 100 / m_store->ChannelCount);
                if (next == exported.size() || exported[next].position != k) continue;
                ExportChannel const& channel = exported[next++];
                if (!value.Read(*m_store, channel.index, profile, j)) continue;
                CSpreadsheetCell cell = sheet.Cell(row, column++);
                bool const floating = value.IsFloating();
                if (value.dataType == DataType::kText || value.IsMissing() || (floating && channel.HasTextForm())) {
                    text.clear();
                    cells.Append(text, channel, value);
                    cell.SetText(text);
                } else {
                    cell.SetNumber(floating ? value.Floating() : value.integer);
                    cell.SetFormatIndex(floating ? kFloatFormat : kIntegerFormat);
                }
            }
            ++row;
        }
    }
}

Status ExportWorksheet(ExportJob& job) {
    CExportToExcel exporter(job.store, job.outputPath, job.owner);
    return ResultOf(exporter.Export());
}

}  // namespace norva
