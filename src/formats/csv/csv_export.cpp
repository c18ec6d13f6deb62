#include "exchange/export_walk.h"
#include "formats/csv/csv_export_type.h"
#include "platform/numbers.h"
#include "platform/text.h"
#include "store/value_rules.h"

#include <algorithm>
#include <cmath>

namespace norva {

namespace {

constexpr std::string_view kLineTitle = "Line";
constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kNoDataText = "*";
constexpr int kIsoDate = 6;    ///< template YYYY-MM-DD
constexpr int kClockTime = 0;  ///< template HH:MM:SS, with decimals as far as needed

class CCsvExport : public CExporterBase {
public:
    explicit CCsvExport(ExportJob& job) : CExporterBase(job.store, job.outputPath, job.owner), m_job(job) {}

    Status Run() {
        ExportChoices choices;
        choices.pointId = false;
        FillProfileArray(choices.lines);
        FillChannelArray(choices.channels);
        choices.units = true;
        if (Status status = Choose(m_job, choices); !status) return status;
        std::erase_if(*m_job.settings.channels, [this](int position) { return RepeatsLineNames(position); });
        CheckOldFile();
        if (Status status = OpenOutput(); !status) return status;
        return FinishOutput(WriteLines());
    }

private:
    class Rows;

    /// A channel of texts called "Line" that holds the line's name everywhere is the first column already: it comes of
    /// an import that has kept its column of names.
    bool RepeatsLineNames(int position);
    void WriteHeader(std::vector<ExportChannel> const& channels);
    Status WriteLines();

    ExportJob& m_job;
};

bool CCsvExport::RepeatsLineNames(int position) {
    int const index = m_store->GetFileChanIndex(position);
    bool const isNamed = ToUpper(m_store->GetChannelName(index)) == ToUpper(kLineTitle);
    if (!isNamed || m_store->GetChannelDataType(index) != DataType::kText) return false;
    std::string name;
    StoreValue value;
    for (int const profile : *m_job.settings.lines) {
        long locations = 0;
        int flag = 0;
        m_store->GetProfileInfo(profile, name, locations, flag);
        for (long location = 0; location < locations; ++location) {
            if (m_store->IsLocMarkedToDelete(profile, location) != 0) continue;
            if (!value.Read(*m_store, index, profile, location) || value.text != name) return false;
        }
    }
    return true;
}

/// Writes the rows that the walk hands out. A value that the store does not give leaves its cell empty.
class CCsvExport::Rows {
public:
    static constexpr bool kTellsChannels = false;

    Rows(CCsvExport& exporter, std::vector<ExportChannel> const& channels)
        : m_exporter(exporter), m_columns(channels.size()) {
        for (ExportChannel const& channel : channels) m_formats.push_back(FormatOf(channel));
    }

    bool StartLine(ExportLine const& line) {
        m_name.clear();
        AppendCsvCell(m_name, line.name);
        return true;
    }

    void StartRow(ExportLine const& /*line*/, long /*location*/) {
        m_row = m_name;
        m_written = 0;
    }

    void Cell(ExportChannel const& channel, StoreValue const& value) {
        GoTo(channel.number + 1);
        if (value.dataType == DataType::kText) {
            if (value.text.empty()) ++channel.report->splitTexts;
            if (value.text != kNoDataText) AppendCsvCell(m_row, value.text);
        } else if (value.IsMissing()) {
            return;
        } else if (!value.IsFloating()) {
            AppendInteger(m_row, value.Whole());
        } else if (!std::isfinite(value.Floating())) {
            ++channel.report->replaced;
        } else if (m_formats[channel.number].HasTextForm()) {
            AppendTextForm(channel, value);
        } else if (value.dataType == DataType::kFloat) {
            AppendShortest(m_row, value.single);
        } else {
            AppendShortest(m_row, value.number);
        }
    }

    bool EndRow() {
        GoTo(m_columns);
        m_row += kLineEnd;
        return m_exporter.Write(m_row);
    }

private:
    /// Dates and times have a text of their own here, whatever the channel's display; positions are decimal degrees.
    static ValueFormat FormatOf(ExportChannel const& channel) {
        ValueFormat format;
        if (channel.format.displayFormat == DisplayFormat::kDate) format = {DisplayFormat::kDate, kIsoDate, 0};
        if (channel.format.displayFormat == DisplayFormat::kTime) format = {DisplayFormat::kTime, kClockTime, 0};
        return format;
    }

    void GoTo(std::size_t column) {
        m_row.append(column - m_written, ',');
        m_written = column;
    }

    void AppendTextForm(ExportChannel const& channel, StoreValue const& value) {
        ValueFormat& format = m_formats[channel.number];
        std::size_t const begin = m_row.size();
        if (!m_texts.AppendAndCheck(m_row, format, value)) CountLostDigits(channel);
        if (format.displayFormat != DisplayFormat::kTime) return;
        // The times that follow mostly need as many decimals, and are then written at the first try.
        std::size_t const point = m_row.find('.', begin);
        int const decimals = point == std::string::npos ? 0 : static_cast<int>(m_row.size() - point - 1);
        format.decimals = std::max(format.decimals, decimals);
    }

    CCsvExport& m_exporter;
    std::size_t m_columns;
    std::vector<ValueFormat> m_formats;
    CValueText m_texts{ValueDigits::Full};
    std::string m_name;
    std::string m_row;
    std::size_t m_written = 0;  ///< columns behind the first
};

void CCsvExport::WriteHeader(std::vector<ExportChannel> const& channels) {
    bool const hasRow = m_job.settings.unitRow;
    std::string names(kLineTitle);
    std::string unitRow;
    for (ExportChannel const& channel : channels) {
        std::string const units = m_store->GetChannelUnits(channel.index);
        std::string title = m_store->GetChannelName(channel.index);
        if (m_job.settings.units && !hasRow && !units.empty()) title += " [" + units + "]";
        names += ',';
        AppendCsvCell(names, title);
        unitRow += ',';
        AppendCsvCell(unitRow, units);
    }
    Write(names.append(kLineEnd));
    if (hasRow) Write(unitRow.append(kLineEnd));
}

Status CCsvExport::WriteLines() {
    ExportWindow shown(m_outputFile);
    CExportWalk walk(m_job, shown.progress);
    WriteHeader(walk.Channels());
    Rows rows(*this, walk.Channels());
    walk.Rows(rows);
    return walk.Result();
}

}  // namespace

Status ExportCsvFile(ExportJob& job) {
    return CCsvExport(job).Run();
}

}  // namespace norva
