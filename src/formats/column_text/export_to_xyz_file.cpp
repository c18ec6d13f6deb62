#include "norva/export_to_xyz_file.h"

#include "exchange/cell_text.h"
#include "exchange/exception_guard.h"
#include "exchange/export_selection_dlg.h"
#include "exchange/progress_dlg.h"
#include "exchange/result.h"
#include "formats/column_text/xyz_export_type.h"
#include "norva/converters.h"
#include "platform/files.h"
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
    return JoinTokens(name, " .:");
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
    return JoinTokens(label, " ");
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
    return GuardedResult("Couldn't write the file", m_outputFile, [this] {
        CExportSelectionDlg dialog;
        std::vector<std::string> channelNames;
        FillChannelArray(channelNames);
        dialog.exportUnits = m_exportUnits;
        ExportSelection selection;
        if (!RunSelection(dialog, channelNames, selection)) return 0;
        CheckOldFile();
        if (!OpenOutput()) return 0;

        m_exportUnits = selection.exportUnits;
        WriteLines(selection);
        return FinishOutput();
    });
}

std::string CExportToXYZFile::HeaderLine(ExportSelection const& selection) const {
    std::string line = "/ ";
    if (selection.labelAsChannel != 0) AppendField(line, "LINE");
    if (selection.pointIdAsChannel != 0) AppendField(line, "POINT_ID");
    for (int const position : selection.channels) {
        AppendField(line, AdjustChannelName(m_store->GetChannelFullName(m_store->GetFileChanIndex(position))));
    }
    line += kLineEnd;
    return line;
}

void CExportToXYZFile::WriteLines(ExportSelection const& selection) {
    CProgressDlg window;
    window.Create();
    window.SetWindowTitle("Export");
    window.ResetBars();
    window.ShowFileName("Please wait a second");
    CProgressReporter progress(window);

    bool going = Write(HeaderLine(selection));
    window.ShowFileName(m_outputFile);

    std::vector<ExportChannel> channels;
    for (int const position : selection.channels) channels.push_back(ExportChannel::Of(*m_store, position));
    CCellText cells;
    StoreValue value;
    std::string row;
    int const count = static_cast<int>(m_selectedProfiles.size());
    for (int i = 0; i < count && going; ++i) {
        progress.FilePercent(static_cast<long long>(i) * 100 / count);
        int const profile = m_selectedProfiles[static_cast<std::size_t>(i)];
        std::string name;
        long locations = 0;
        int flag = 0;
        m_store->GetProfileInfo(profile, name, locations, flag);
        name = AdjustProfileName(name);
        if (selection.labelAsChannel == 0) going = Write("LINE " + name + std::string(kLineEnd));
        for (long j = 0; j < locations && going; ++j) {
            progress.Row();
            if (m_store->IsLocMarkedToDelete(profile, j) != 0) continue;
            row.assign("  ");
            if (selection.labelAsChannel != 0) AppendField(row, name);
            if (selection.pointIdAsChannel != 0) {
                std::size_t const begin = row.size();
                AppendInteger(row, i + 1);
                row += '_';
                AppendInteger(row, j + 1);
                CloseField(row, begin);
            }
            for (ExportChannel const& channel : channels) {
                if (!value.Read(*m_store, channel.index, profile, j)) continue;
                std::size_t const begin = row.size();
                cells.Append(row, channel, value);
                CloseField(row, begin);
            }
            row += kLineEnd;
            going = Write(row);
        }
    }
}

Status ExportXyzFile(ExportJob& job) {
    CExportToXYZFile exporter(job.store, job.outputPath, job.owner);
    return ResultOf(exporter.ExportToXYZFile());
}

}  // namespace norva
