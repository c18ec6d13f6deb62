#include "commands.h"
#include "common/column_template.h"
#include "common/settings_json.h"
#include "common/store_values.h"
#include "input_file.h"
#include "jobs.h"
#include "norva/import_export.h"
#include "scratch_folder.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <vector>

namespace norva {

namespace {

namespace fs = std::filesystem;

constexpr long kRowsAtOnce = 1L << 12;
constexpr std::size_t kMostDifferences = 10;

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
        OpenStore(m_store, store);
        OpenStore(m_again, again);
        Compare();
    }
    std::vector<std::string> const& Differences() const { return m_differences; }

private:
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
            return Differ(where + ", location " + std::to_string(location) + ", " + m_store.GetChannelName(index) +
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

/// The settings in a report of an earlier version, which kept the choices for the columns as a template.
ImportSettings SettingsOfTemplate(nlohmann::json const& report, std::string const& source, std::string const& format) {
    TextPreview preview;
    if (Status const status = ReadTextPreview(source, format, preview); !status) throw CommandError(status.Text());
    bool const isLog = preview.isSeaSpy;
    CColumnTextDraft draft(std::move(preview));
    ApplyTemplate(TemplateFromJson(report.at("template"), "template"), draft, TemplateFit::Trusted);
    if (!isLog) return draft.Settings();
    bool const isInterpolated = report.at("settings").value("interpolated coordinates", "") == "imported";
    return SeaSpySettings{draft.Settings().columns, isInterpolated};
}

/// The current folder, which imports of some formats write files into, changed for a while.
class CCurrentFolder {
public:
    explicit CCurrentFolder(fs::path const& folder) : m_before(fs::current_path()) { fs::current_path(folder); }
    CCurrentFolder(CCurrentFolder const&) = delete;
    CCurrentFolder& operator=(CCurrentFolder const&) = delete;
    ~CCurrentFolder() {
        std::error_code ignored;
        fs::current_path(m_before, ignored);
    }

private:
    fs::path m_before;
};

/// Imports the source again as the report says it was. What imports write beside their input goes into a folder of its
/// own.
void ImportAgain(std::string const& source, std::string const& store, nlohmann::json const& report) {
    CScratchFolder const beside;
    fs::path const link = beside.Path() / fs::path(source).filename();
    fs::create_symlink(fs::absolute(source), link);
    CCurrentFolder const current(beside.Path());
    ImportRequest request{.inputPath = link.string(), .storePath = store};
    request.format = report.at("format").get<std::string>();
    CConsole quiet(true);
    if (report.contains("import_settings")) {
        request.settings = SettingsFromJson(report.at("import_settings"));
    } else if (!report.at("template").at("columns").empty()) {
        request.settings = SettingsOfTemplate(report, request.inputPath, request.format);
    } else {
        ImportOptions options = ParseImportOptions(report.at("options").get<std::vector<std::string>>());
        options.format = request.format;
        options.asItStands = true;
        RunImport({request.inputPath, store, options}, quiet);
        return;
    }
    RunImport(std::move(request), source, quiet);
}

int RunVerify(VerifyJob const& job) {
    CConsole console(job.quiet);
    nlohmann::json const report = ReadReport(job.report);
    std::vector<std::string> differences;
    try {
        nlohmann::json const& told = report.at("source");
        std::string const source = job.source.empty() ? told.at("path").get<std::string>() : job.source;
        std::error_code error;
        CInputFile const input(source);
        auto const size = fs::file_size(input.Path(), error);
        if (error) throw CommandError(source + ": " + error.message());
        if (size != told.at("size").get<std::uintmax_t>()) {
            differences.push_back(source + ": has " + std::to_string(size) + " bytes, the report says " +
                                  told.at("size").dump());
        }
        std::string digits;
        if (GetFileSha256(input.Path(), digits) == 0) throw CommandError(source + ": " + GetLastErrorText());
        if (digits != told.at("sha256").get<std::string>()) {
            differences.push_back(source + ": has the SHA-256 " + digits + ", the report says " +
                                  told.at("sha256").get<std::string>());
        }
        CScratchFolder const scratch;
        std::string const again = scratch.StorePath("again.x");
        try {
            ImportAgain(input.Path(), again, report);
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
