#include "commands.h"
#include "common/report_text.h"
#include "common/store_values.h"
#include "jobs.h"
#include "norva/import_export.h"
#include "reports.h"
#include "scratch_folder.h"

#include <algorithm>
#include <fstream>
#include <iostream>
#include <memory>
#include <vector>

namespace norva {

namespace {

namespace fs = std::filesystem;

constexpr long kRowsAtOnce = 4096;
constexpr std::size_t kMostDifferences = 10;

void WriteText(std::string const& path, std::string const& text) {
    std::string const next = path + ".new";
    std::error_code error;
    {
        std::ofstream out(next, std::ios::binary);
        out << text;
        out.close();
        if (!out) error = std::make_error_code(std::errc::io_error);
    }
    if (!error) fs::rename(next, path, error);
    if (!error) return;
    std::error_code ignored;
    fs::remove(next, ignored);
    throw CommandError(path + ": cannot be written: " + error.message());
}

/// The template in the form of its file, which is how reports keep it.
nlohmann::ordered_json TemplateJson(ColumnTemplate const& columns) {
    CScratchFolder const scratch;
    std::string const path = scratch.StorePath("template");
    WriteTemplate(path, columns);
    return nlohmann::ordered_json::parse(std::ifstream(path, std::ios::binary));
}

nlohmann::json ReadReport(std::string const& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) throw CommandError(path + ": cannot be read");
    nlohmann::json report = nlohmann::json::parse(in, nullptr, false);
    if (!report.is_object() || report.value("norva", "") != "import report") {
        throw CommandError(path + ": is no import report in JSON");
    }
    return report;
}

/// What differs between the store and a new import of the source.
class CStoreComparison {
public:
    CStoreComparison(std::string const& store, std::string const& again) {
        Open(m_store, store);
        Open(m_again, again);
        Compare();
    }
    std::vector<std::string> const& Differences() const { return m_differences; }

private:
    static void Open(CNorvaFileUtil& file, std::string const& path) {
        if (file.SetFileName(path, kReopenStore, nullptr) == 0) throw CommandError(path + ": " + GetLastErrorText());
    }
    bool Differ(std::string text) {
        if (m_differences.size() < kMostDifferences) m_differences.push_back(std::move(text));
        return m_differences.size() < kMostDifferences;
    }
    bool DiffersInCount(std::string const& what, long store, long source) {
        if (store == source) return false;
        Differ(what + ": the store has " + std::to_string(store) + ", the source gives " + std::to_string(source));
        return true;
    }

    void Compare() {
        if (m_store.VerifyData() == 0) Differ("the store's own checksums: " + GetLastErrorText());
        bool const isOther = DiffersInCount("lines", m_store.ProfileCount, m_again.ProfileCount);
        if (DiffersInCount("channels", m_store.ChannelCount, m_again.ChannelCount) || isOther) return;
        for (int profile = 0; profile < m_store.ProfileCount; ++profile) {
            if (!CompareLine(profile)) return;
        }
    }

    bool CompareLine(int profile) {
        std::string names[2];
        long counts[2] = {0, 0};
        int flag = 0;
        m_store.GetProfileInfo(profile, names[0], counts[0], flag);
        m_again.GetProfileInfo(profile, names[1], counts[1], flag);
        std::string const where = "line " + names[1];
        if (names[0] != names[1] && !Differ(where + ": the store calls it " + names[0])) return false;
        if (DiffersInCount(where + ": locations", counts[0], counts[1])) return true;
        for (int n = 0; n < m_store.ChannelCount; ++n) {
            int const index = m_store.GetFileChanIndex(n);
            int const again = m_again.GetFileChanIndex(n);
            std::size_t const size = m_store.GetChannelValueSize(index);
            bool const isSame = m_store.GetChannelDataType(index) == m_again.GetChannelDataType(again) &&
                                m_store.GetChannelName(index) == m_again.GetChannelName(again) &&
                                size == m_again.GetChannelValueSize(again);
            if (!isSame) {
                return Differ("channel " + m_store.GetChannelName(index) + ": the source gives " +
                              m_again.GetChannelName(again) + " of another kind or name");
            }
            if (!CompareColumn(where, profile, n, counts[0])) return false;
        }
        return true;
    }

    bool CompareColumn(std::string const& where, int profile, int n, long count) {
        int const index = m_store.GetFileChanIndex(n);
        int const again = m_again.GetFileChanIndex(n);
        std::size_t const size = m_store.GetChannelValueSize(index);
        std::vector<char> first(size * kRowsAtOnce);
        std::vector<char> second(first.size());
        for (long at = 0; at < count; at += kRowsAtOnce) {
            long const rows = std::min(kRowsAtOnce, count - at);
            auto const bytes = static_cast<std::ptrdiff_t>(size) * rows;
            if (m_store.ReadColumn(index, profile, at, rows, first.data()) == 0 ||
                m_again.ReadColumn(again, profile, at, rows, second.data()) == 0) {
                return Differ(where + ": " + m_store.GetChannelName(index) + ": " + GetLastErrorText());
            }
            auto const found = std::mismatch(first.begin(), first.begin() + bytes, second.begin()).first;
            if (found == first.begin() + bytes) continue;
            long const location = at + (found - first.begin()) / static_cast<std::ptrdiff_t>(size);
            std::string const old = m_storeValues.Text(m_store, index, profile, location);
            return Differ(where + ", location " + std::to_string(location + 1) + ", " + m_store.GetChannelName(index) +
                          ": the store has " + old + ", the source gives " +
                          m_againValues.Text(m_again, again, profile, location));
        }
        return true;
    }

    /// A printer made at the first difference.
    struct Values {
        std::unique_ptr<CValuePrinter> printer;
        std::string Text(CNorvaFileUtil& store, int index, int profile, long location) {
            if (!printer) printer = std::make_unique<CValuePrinter>(store);
            std::string text;
            printer->AppendJson(text, index, profile, location);
            return text;
        }
    };

    CNorvaFileUtil m_store;
    CNorvaFileUtil m_again;
    Values m_storeValues;
    Values m_againValues;
    std::vector<std::string> m_differences;
};

struct VerifyJob {
    std::string store;
    std::string report;
    std::string source;
    bool quiet = false;
};

/// Imports the source again as the report says it was.
void ImportAgain(std::string const& source, std::string const& store, nlohmann::json const& report,
                 CScratchFolder const& scratch) {
    ImportOptions options;
    nlohmann::json const& columnTemplate = report.at("template");
    if (columnTemplate.at("columns").empty()) {
        options = ParseImportOptions(report.at("options").get<std::vector<std::string>>());
    } else {
        // The choices of the column dialog hold whatever a template or an option added to them.
        options.columnTemplate = scratch.StorePath("template") + ".json";
        WriteText(options.columnTemplate, columnTemplate.dump());
        options.interpolated = report.at("settings").value("interpolated coordinates", "") == "imported";
    }
    options.format = report.at("format").get<std::string>();
    CConsole quiet(true);
    RunImport(source, store, options, quiet);
}

int RunVerify(VerifyJob const& job) {
    CConsole console(job.quiet);
    nlohmann::json const report = ReadReport(job.report);
    std::vector<std::string> differences;
    try {
        nlohmann::json const& told = report.at("source");
        std::string const source = job.source.empty() ? told.at("path").get<std::string>() : job.source;
        std::error_code error;
        auto const size = fs::file_size(source, error);
        if (error) throw CommandError(source + ": " + error.message());
        if (size != told.at("size").get<std::uintmax_t>()) {
            differences.push_back(source + ": has " + std::to_string(size) + " bytes, the report says " +
                                  told.at("size").dump());
        }
        std::string digits;
        if (GetFileSha256(source, digits) == 0) throw CommandError(source + ": " + GetLastErrorText());
        if (digits != told.at("sha256").get<std::string>()) {
            differences.push_back(source + ": has the SHA-256 " + digits + ", the report says " +
                                  told.at("sha256").get<std::string>());
        }
        CScratchFolder const scratch;
        std::string const again = scratch.StorePath("again.x");
        try {
            ImportAgain(source, again, report, scratch);
        } catch (CommandError const& failure) {
            if (differences.empty()) throw;
            differences.push_back(failure.what());
        }
        if (fs::exists(again, error)) {
            CStoreComparison const comparison(job.store, again);
            for (std::string const& text : comparison.Differences()) differences.push_back(job.store + ": " + text);
        }
    } catch (nlohmann::json::exception const& failure) {
        throw CommandError(job.report + ": is no complete import report: " + failure.what());
    }
    for (std::string const& text : differences) console.Complain(text);
    if (!differences.empty()) return kExitDiffers;
    console.Say(job.store + ": agrees with its source and the report");
    return kExitDone;
}

}  // namespace

void RequireReportPath(std::string const& path, bool force) {
    if (!path.ends_with(".json") && !path.ends_with(".html")) {
        throw CommandError(path + ": a report ends with .json or .html", kExitUsage);
    }
    RequireFree(path, force);
}

int TellReport(ReportOptions const& options, ColumnTemplate const& chosen, CConsole& console) {
    ImportReport report;
    bool const isAskedFor = !options.path.empty() || options.isStrict;
    if (GetImportReport(report, 0) == 0) {
        if (isAskedFor) throw CommandError("this format keeps no import report; the store was made");
        return kExitDone;
    }
    std::string const summary = ReportSummary(report);
    bool const isLoss = report.LossCount() > 0 || !report.IsAccounted();
    if (options.isStrict && isLoss) {
        console.Complain(report.sourcePath + ": " + summary);
    } else {
        console.Say(summary);
    }
    if (!options.path.empty()) {
        if (GetImportReport(report, 1) == 0) throw CommandError(GetLastErrorText());
        std::string text;
        if (options.path.ends_with(".json")) {
            nlohmann::ordered_json json = ReportJson(report);
            json["template"] = TemplateJson(chosen);
            json["options"] = options.importOptions;
            text = json.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";
        } else {
            text = ReportHtml(report);
        }
        WriteText(options.path, text);
        console.Say(options.path + ": written");
    }
    return options.isStrict && isLoss ? kExitLoss : kExitDone;
}

void AddVerifyCommand(CCommands& commands) {
    auto const job = std::make_shared<VerifyJob>();
    CLI::App& command =
        commands.Add("verify",
                     "Read the source of a store again and prove that source, report and store agree (status " +
                         std::to_string(kExitDiffers) + ": they do not)",
                     "norva import survey.xyz --report survey.json\n  norva verify survey.nvt survey.json",
                     [job] { return RunVerify(*job); });
    command.add_option("STORE", job->store, "Store that was imported")->required();
    command.add_option("REPORT", job->report, "Report of that import, in JSON")->required();
    command.add_option("--source", job->source, "The source, where it is not at the place that the report names");
    command.add_flag("--quiet", job->quiet, "Say only what differs");
}

}  // namespace norva
