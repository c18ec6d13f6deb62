#include "norva/export_to_excel.h"

#include "exchange/export_walk.h"
#include "formats/worksheet/spreadsheet.h"
#include "formats/worksheet/worksheet_export_type.h"
#include "platform/numbers.h"
#include "ui/messages.h"

#include <algorithm>

namespace norva {

namespace {

// Built-in number formats of the sheet.
constexpr int kIntegerFormat = 2;
constexpr int kFloatFormat = 3;
// What readers of BIFF2 can hold.
constexpr long kReadableRows = 16384;
constexpr long kReadableColumns = 256;
constexpr std::size_t kLongestText = 255;

/// Lays out the rows that the walk hands out.
class RowsToSheet {
public:
    static constexpr bool kTellsChannels = true;

    RowsToSheet(CSpreadsheet& sheet, ExportJob& job)
        : m_sheet(sheet),
          m_settings(job.settings),
          m_report(job.report),
          m_cells(job.settings.fullDigits ? ValueDigits::Full : ValueDigits::AsFormatted) {}

    void Header(CNorvaFileUtil& store, std::vector<ExportChannel> const& channels) {
        if (m_settings.labelAsChannel) AddText("LINE");
        if (m_settings.pointId) AddText("POINT_ID");
        for (ExportChannel const& channel : channels) AddName(store.GetChannelName(channel.index));
    }

    bool StartLine(ExportLine const& line) {
        m_name = line.name;
        std::string const marker = m_settings.labelAsChannel ? m_name : "LINE " + m_name;
        if (marker.size() > kLongestText) ++m_report.changedNames;
        if (m_settings.labelAsChannel) return true;
        NextRow();
        AddText(marker);
        return true;
    }

    void StartRow(ExportLine const& line, long location) {
        NextRow();
        if (m_settings.labelAsChannel) AddText(m_name);
        if (!m_settings.pointId) return;
        m_text.clear();
        AppendInteger(m_text, line.number + 1);
        m_text += '_';
        AppendInteger(m_text, location + 1);
        AddText(m_text);
    }

    void Cell(ExportChannel const& channel, StoreValue const& value) {
        bool const isFloating = value.IsFloating();
        if (value.dataType == DataType::kText) {
            if (value.text.size() > kLongestText) ++channel.report->cutTexts;
            AddText(value.text);
        } else if (value.IsMissing() || (isFloating && channel.format.HasTextForm())) {
            m_text.clear();
            if (!m_cells.AppendAndCheck(m_text, channel.format, value)) CountLostDigits(channel);
            AddText(m_text);
        } else {
            CSpreadsheetCell cell = m_sheet.Cell(m_row, m_column++);
            cell.SetNumber(isFloating ? value.Floating() : static_cast<double>(value.Whole()));
            cell.SetFormatIndex(isFloating ? kFloatFormat : kIntegerFormat);
        }
    }

    bool EndRow() { return true; }

private:
    void NextRow() {
        ++m_row;
        m_column = 0;
    }
    void AddText(std::string_view text) { m_sheet.Cell(m_row, m_column++).SetText(text); }
    void AddName(std::string const& name) {
        if (name.size() > kLongestText) ++m_report.changedNames;
        AddText(name);
    }

    CSpreadsheet& m_sheet;
    ExportSettings const& m_settings;
    ExportReport& m_report;
    CValueText m_cells;
    std::size_t m_row = 0;
    std::size_t m_column = 0;
    std::string m_name;
    std::string m_text;
};

}  // namespace

CExportToExcel::CExportToExcel(CNorvaFileUtil* store, std::string outputFile, CWindow* owner)
    : CExporterBase(store, std::move(outputFile), owner) {}

CExportToExcel::~CExportToExcel() = default;

Status CExportToExcel::ConfirmSize(ExportJob& job) const {
    ExportSettings const& settings = job.settings;
    long const columns =
        static_cast<long>(settings.channels->size()) + (settings.labelAsChannel ? 1 : 0) + (settings.pointId ? 1 : 0);
    long rows = 1;
    for (int const profile : m_selectedProfiles) {
        rows += m_store->GetProfileLocationNum(profile, 1) + (settings.labelAsChannel ? 0 : 1);
    }
    if (rows <= kReadableRows && columns <= kReadableColumns) return {};
    job.report.rowsBeyond =
        static_cast<std::uint64_t>(std::max(rows - kReadableRows, 0L) + std::max(columns - kReadableColumns, 0L));
    std::string const size = "The sheet will have " + std::to_string(rows) + " rows and " + std::to_string(columns) +
                             " columns.\nPrograms that read this format hold at most " + std::to_string(kReadableRows) +
                             " rows and " + std::to_string(kReadableColumns) + " columns.";
    if (!job.asks)
        return settings.writeOversized ? Status() : Status::Failure("Couldn't write the file", m_outputFile, size);
    return AskYesNo(size + "\nDo you want to write it?") ? Status() : Status::Failure(size).Silent();
}

int CExportToExcel::Export() {
    return RunAsked([this](ExportJob& job) { return Run(job); });
}

Status CExportToExcel::Run(ExportJob& job) {
    ExportChoices choices;
    FillProfileArray(choices.lines);
    FillChannelArray(choices.channels);
    if (Status status = Choose(job, choices); !status) return status;
    // Columns stand in the store's order, whatever the order of choosing.
    std::ranges::sort(*job.settings.channels);
    if (Status status = ConfirmSize(job); !status) return status;
    CheckOldFile();
    if (Status status = OpenOutput(); !status) return status;

    CSpreadsheet sheet;
    Status filled = FillSheet(sheet, job);
    auto const sink = [](void* self, std::string_view bytes) {
        return static_cast<CExportToExcel*>(self)->Write(bytes);
    };
    if (filled) sheet.Write(sink, this);
    return FinishOutput(std::move(filled));
}

Status CExportToExcel::FillSheet(CSpreadsheet& sheet, ExportJob& job) {
    ExportWindow shown(m_outputFile);
    CExportWalk walk(job, shown.progress);
    RowsToSheet rows(sheet, job);
    rows.Header(*m_store, walk.Channels());
    walk.Rows(rows);
    return walk.Result();
}

Status ExportWorksheet(ExportJob& job) {
    return CExportToExcel(job.store, job.outputPath, job.owner).Run(job);
}

}  // namespace norva
