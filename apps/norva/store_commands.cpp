#include "commands.h"
#include "common/command_error.h"
#include "common/names.h"
#include "common/store_values.h"
#include "jobs.h"
#include "norva/file_util.h"
#include "norva/import_export.h"

#include <charconv>
#include <iostream>
#include <memory>

namespace norva {

namespace {

struct LineInfo {
    std::string name;
    long locations = 0;
    int flag = 0;
};

LineInfo LineOf(CNorvaFileUtil& store, int profile) {
    LineInfo line;
    store.GetProfileInfo(profile, line.name, line.locations, line.flag);
    return line;
}

struct ShowJob {
    std::string store;
    bool json = false;
    bool csv = false;
    bool fullDigits = false;
    std::vector<std::string> lines;
    std::vector<std::string> channels;
};

/// The rows of "show" as one of its forms.
class CShownRows {
public:
    CShownRows(CNorvaFileUtil& store, ShowJob const& job, std::vector<int> channels)
        : m_job(job),
          m_channels(std::move(channels)),
          m_printer(store, job.fullDigits ? ValueDigits::Full : ValueDigits::AsFormatted) {}

    void AppendHeader(std::string& out, CNorvaFileUtil& store) const {
        if (m_job.csv) {
            out += "Line,Location,Deleted";
            for (int const channel : m_channels) {
                std::string const units = store.GetChannelUnits(channel);
                out += ',';
                AppendCsvCell(out, store.GetChannelName(channel) + (units.empty() ? "" : " [" + units + "]"));
            }
            out += "\r\n";
        } else if (!m_job.json) {
            for (int const channel : m_channels) m_printer.AppendTitle(out, channel);
            out += '\n';
        }
    }

    void AppendLine(std::string& out, std::string const& name) {
        m_name.clear();
        AppendCsvCell(m_name, name);
        if (!m_job.json && !m_job.csv) out += "LINE " + name + '\n';
    }

    void AppendRow(std::string& out, int line, long location, bool isDeleted) {
        if (m_job.json) {
            out += "{\"line\": " + std::to_string(line) + ", \"location\": " + std::to_string(location) +
                   ", \"deleted\": " + (isDeleted ? "true" : "false") + ", \"values\": [";
            for (std::size_t i = 0; i < m_channels.size(); ++i) {
                if (i > 0) out += ", ";
                m_printer.AppendJson(out, m_channels[i], line, location);
            }
            out += "]}\n";
        } else if (m_job.csv) {
            out += m_name + ',' + std::to_string(location) + (isDeleted ? ",1" : ",0");
            for (std::size_t i = 0; i < m_channels.size(); ++i) {
                std::string const& text = m_printer.CellText(m_channels[i], line, location);
                out += ',';
                if (text != "*") AppendCsvCell(out, text);
            }
            out += "\r\n";
        } else {
            for (int const channel : m_channels) m_printer.AppendCell(out, channel, line, location);
            out += isDeleted ? "  (deleted)\n" : "\n";
        }
    }

private:
    ShowJob const& m_job;
    std::vector<int> m_channels;
    CValuePrinter m_printer;
    std::string m_name;
};

int RunShow(ShowJob const& job) {
    if (job.json && job.csv) throw CommandError("--json and --csv exclude each other", kExitUsage);
    CNorvaFileUtil store;
    OpenStore(store, job.store);
    std::vector<int> const lines = FindListed(LineNames(store), job.lines, 0, "line");
    std::vector<int> channels = FindListed(ChannelNames(store), job.channels, 0, "channel");
    for (int& channel : channels) channel = store.GetFileChanIndex(channel);

    CShownRows rows(store, job, std::move(channels));
    std::string out;
    rows.AppendHeader(out, store);
    for (int const line : lines) {
        LineInfo const info = LineOf(store, line);
        rows.AppendLine(out, info.name);
        for (long location = 0; location < info.locations; ++location) {
            rows.AppendRow(out, line, location, store.IsLocMarkedToDelete(line, location) != 0);
            if (out.size() > 64 * 1024) {
                ThrowIfInterrupted();
                std::cout.write(out.data(), static_cast<std::streamsize>(out.size()));
                out.clear();
            }
        }
    }
    std::cout.write(out.data(), static_cast<std::streamsize>(out.size()));
    std::cout.flush();
    return std::cout ? kExitDone : kExitFailed;
}

struct MarkJob {
    std::string store;
    std::string line;
    std::string rows;
    bool remove = false;
    bool restore = false;
    std::optional<int> flag{};
};

long RowNumber(std::string_view text, long count) {
    long row = -1;
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), row);
    if (error != std::errc{} || end != text.data() + text.size() || row < 0) {
        throw CommandError("--rows: '" + std::string(text) + "' is not a row number", kExitUsage);
    }
    if (row >= count) {
        throw CommandError("--rows: there is no row " + std::to_string(row) + ", the line has " +
                           std::to_string(count) + " (counted from 0)");
    }
    return row;
}

int RunMark(MarkJob const& job) {
    CNorvaFileUtil store;
    OpenStore(store, job.store);
    int const line = FindNamed(LineNames(store), job.line, 0, "line");
    if (job.rows.empty() && !job.flag) throw CommandError("mark needs --rows or --flag", kExitUsage);
    if (!job.rows.empty()) {
        if (job.remove == job.restore) throw CommandError("--rows needs --delete or --restore", kExitUsage);
        long const count = LineOf(store, line).locations;
        for (std::string const& range : SplitNames(job.rows)) {
            std::size_t const dash = range.find('-');
            long const first = RowNumber(std::string_view(range).substr(0, dash), count);
            long const last =
                dash == std::string::npos ? first : RowNumber(std::string_view(range).substr(dash + 1), count);
            if (last < first) throw CommandError("--rows: '" + range + "' runs backwards", kExitUsage);
            for (long row = first; row <= last; ++row) store.MarkLocToDelete(line, row, job.remove ? 1 : 0);
        }
    }
    if (job.flag) store.SetProfileFlag(line, *job.flag);
    if (store.CloseCurFile() == 0) throw CommandError(job.store + ": " + GetLastErrorText());
    return kExitDone;
}

}  // namespace

void AddShowCommand(CCommands& commands) {
    auto const job = std::make_shared<ShowJob>();
    CLI::App& command =
        commands.Add("show", "Print the values of a store",
                     "norva show survey.nvt --line 1000 --channel Mag --channel Time", [job] { return RunShow(*job); });
    command.add_option("STORE", job->store, "Store to look at")->required();
    command.add_flag("--json", job->json, "Print one JSON object per location");
    command.add_flag("--csv", job->csv, "Print comma-separated values, the line's name first; no-data is empty");
    command.add_flag("--full-digits", job->fullDigits, "Print every digit that a number needs to read back the same");
    command.add_option("--line", job->lines, "Name or number (from 0) of a line (repeatable; default: all)")
        ->expected(1)
        ->take_all();
    command.add_option("--channel", job->channels, "Name or number (from 0) of a channel (repeatable)")
        ->expected(1)
        ->take_all();
}

void AddMarkCommand(CCommands& commands) {
    auto const job = std::make_shared<MarkJob>();
    CLI::App& command =
        commands.Add("mark", "Mark locations as deleted or not, set a line's flag",
                     "norva mark survey.nvt --line 1000 --rows 0,3-5 --delete", [job] { return RunMark(*job); });
    command.add_option("STORE", job->store, "Store to change")->required();
    command.add_option("--line", job->line, "Name or number (from 0) of the line")->required();
    command.add_option("--rows", job->rows, "Locations, counted from 0: 0,3-5");
    command.add_flag("--delete", job->remove, "Mark them as deleted");
    command.add_flag("--restore", job->restore, "Take the marks away");
    command.add_option("--flag", job->flag, "Flag of the line (0: shown)");
}

}  // namespace norva
