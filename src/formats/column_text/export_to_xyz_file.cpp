#include "norva/export_to_xyz_file.h"

#include "exchange/export_walk.h"
#include "formats/column_text/xyz_export_type.h"
#include "norva/converters.h"
#include "platform/numbers.h"
#include "platform/text.h"

namespace norva {

namespace {

constexpr std::size_t kFieldWidth = 20;
constexpr std::string_view kSeparator = "     ";
constexpr std::string_view kLineEnd = "\r\n";

/// Puts what was appended to `row` since `begin` right-justified into a field, and the separator behind it.
void CloseField(std::string& row, std::size_t begin) {
    std::size_t const length = row.size() - begin;
    if (length < kFieldWidth) row.insert(begin, kFieldWidth - length, ' ');
    row += kSeparator;
}

void AppendField(std::string& row, std::string_view text) {
    AppendRightAligned(row, text, kFieldWidth);
    row += kSeparator;
}

std::string JoinTokens(std::string_view text, std::string_view delimiters) {
    std::vector<std::string_view> tokens;
    GetTokens(text, tokens, delimiters);
    std::string joined;
    for (std::string_view const token : tokens) {
        if (!joined.empty()) joined += '_';
        joined += token;
    }
    return joined;
}

/// What splits names into the parts that "_" joins: a blank would start a new column, a line break a new row.
constexpr std::string_view kProfileDelimiters = " .:\r\n";
constexpr std::string_view kChannelDelimiters = " \r\n";

std::string WithoutBrackets(std::string_view text) {
    std::string out;
    for (char const c : text) {
        if (c != '(' && c != ')') out += c;
    }
    return out;
}

}  // namespace

CExportToXYZFile::CExportToXYZFile(CNorvaFileUtil* store, std::string outputFile, CWindow* owner)
    : CExporterBase(store, std::move(outputFile), owner) {}

CExportToXYZFile::~CExportToXYZFile() = default;

void CExportToXYZFile::SetInputEETFile(std::string inputFile) {
    m_inputFile = std::move(inputFile);
}

void CExportToXYZFile::SetInputEETFile(std::string inputFile, int channelCount, int const* channels) {
    m_inputFile = std::move(inputFile);
    SetChannelIndex(channelCount, channels);
}

void CExportToXYZFile::SetChannelIndex(int channelCount, int const* channels) {
    m_channelCount = channelCount;
    m_channels = channels;
}

void CExportToXYZFile::SetOutputXYZFile(std::string outputFile, int option) {
    m_outputFile = std::move(outputFile);
    m_option = option;
}

void CExportToXYZFile::FillChannelArray(std::vector<std::string>& names) {
    CExporterBase::FillChannelArray(names);
    m_exportUnits = 0;
    for (int k = 0; k < m_store->ChannelCount && m_exportUnits == 0; ++k) {
        if (!m_store->GetChannelUnits(m_store->GetFileChanIndex(k)).empty()) m_exportUnits = 1;
    }
}

std::string CExportToXYZFile::AdjustProfileName(std::string_view name) const {
    return JoinTokens(name, kProfileDelimiters);
}

std::string CExportToXYZFile::AdjustChannelName(std::string_view fullName) const {
    std::string label;
    if (fullName.ends_with(')')) {
        std::size_t const open = std::min(fullName.rfind('('), fullName.size());
        label = WithoutBrackets(fullName.substr(0, open));
        if (m_exportUnits == 1) label += fullName.substr(open);
    } else {
        label = WithoutBrackets(fullName);
    }
    return JoinTokens(label, kChannelDelimiters);
}

std::string CExportToXYZFile::RFormatString(std::string_view text, int width) const {
    std::string out;
    AppendRightAligned(out, text, width > 0 ? static_cast<std::size_t>(width) : 0);
    return out;
}

std::string CExportToXYZFile::MFormatString(std::string_view text, int width) const {
    int const missing = width - static_cast<int>(text.size());
    if (missing < 1) return std::string(text);
    std::string out(static_cast<std::size_t>(missing / 2), ' ');
    out += text;
    out.append(static_cast<std::size_t>(missing - missing / 2), ' ');
    return out;
}

int CExportToXYZFile::ExportToXYZFile() {
    return RunAsked([this](ExportJob& job) { return Run(job); });
}

/// Writes the rows that the walk hands out.
class CExportToXYZFile::RowsToText {
public:
    static constexpr bool kTellsChannels = false;

    RowsToText(CExportToXYZFile& exporter, ExportJob& job)
        : m_exporter(exporter),
          m_settings(job.settings),
          m_report(job.report),
          m_cells(job.settings.fullDigits ? ValueDigits::Full : ValueDigits::AsFormatted) {}

    bool StartLine(ExportLine const& line) {
        m_name = m_exporter.AdjustProfileName(line.name);
        if (m_name != line.name) ++m_report.changedNames;
        if (m_settings.labelAsChannel) return true;
        return m_exporter.Write("LINE " + m_name + std::string(kLineEnd));
    }

    void StartRow(ExportLine const& line, long location) {
        m_row.assign("  ");
        if (m_settings.labelAsChannel) AppendField(m_row, m_name);
        if (!m_settings.pointId) return;
        std::size_t const begin = m_row.size();
        AppendInteger(m_row, line.number + 1);
        m_row += '_';
        AppendInteger(m_row, location + 1);
        CloseField(m_row, begin);
    }

    void Cell(ExportChannel const& channel, StoreValue const& value) {
        std::size_t const begin = m_row.size();
        if (value.dataType == DataType::kText) {
            AppendText(channel, value.text);
        } else if (!m_cells.AppendAndCheck(m_row, channel.format, value)) {
            CountLostDigits(channel);
        }
        CloseField(m_row, begin);
    }

    bool EndRow() {
        m_row += kLineEnd;
        return m_exporter.Write(m_row);
    }

private:
    void AppendText(ExportChannel const& channel, std::string_view text) {
        std::size_t const begin = m_row.size();
        m_row += text;
        if (!text.empty() && text.find_first_of(" \t\r\n") == std::string_view::npos) return;
        ++channel.report->splitTexts;
        for (std::size_t at = begin; at < m_row.size(); ++at) {
            if (m_row[at] == '\r' || m_row[at] == '\n') m_row[at] = ' ';
        }
    }

    CExportToXYZFile& m_exporter;
    ExportSettings const& m_settings;
    ExportReport& m_report;
    CValueText m_cells;
    std::string m_name;
    std::string m_row;
};

Status CExportToXYZFile::Run(ExportJob& job) {
    ExportChoices choices;
    FillProfileArray(choices.lines);
    FillChannelArray(choices.channels);
    choices.units = m_exportUnits == 1;
    if (Status status = Choose(job, choices); !status) return status;
    CheckOldFile();
    if (Status status = OpenOutput(); !status) return status;

    m_exportUnits = job.settings.units ? 1 : 0;
    return FinishOutput(WriteLines(job));
}

std::string CExportToXYZFile::HeaderLine(ExportJob& job) const {
    std::string line = "/ ";
    if (job.settings.labelAsChannel) AppendField(line, "LINE");
    if (job.settings.pointId) AppendField(line, "POINT_ID");
    for (int const position : *job.settings.channels) {
        int const index = m_store->GetFileChanIndex(position);
        AppendField(line, AdjustChannelName(m_store->GetChannelFullName(index)));
        std::string const name = m_store->GetChannelName(index);
        if (JoinTokens(WithoutBrackets(name), kChannelDelimiters) != name) ++job.report.changedNames;
    }
    line += kLineEnd;
    return line;
}

Status CExportToXYZFile::WriteLines(ExportJob& job) {
    ExportWindow shown("Please wait a second");
    bool const going = Write(HeaderLine(job));
    shown.window.ShowFileName(m_outputFile);
    CExportWalk walk(job, shown.progress);
    RowsToText rows(*this, job);
    if (going) walk.Rows(rows);
    return walk.Result();
}

Status ExportXyzFile(ExportJob& job) {
    return CExportToXYZFile(job.store, job.outputPath, job.owner).Run(job);
}

}  // namespace norva
