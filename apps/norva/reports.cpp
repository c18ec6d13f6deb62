#include "reports.h"

#include "common/command_error.h"
#include "common/report_text.h"
#include "common/settings_json.h"
#include "common/text_file.h"

#include <charconv>
#include <limits>

namespace norva {

void AddPlacesOption(CLI::App& command, std::size_t& places) {
    command.add_option_function<std::string>(
        "--places",
        [&places](std::string const& text) {
            places = std::numeric_limits<std::size_t>::max();
            if (text == "all") return;
            char const* const end = text.data() + text.size();
            auto const [stop, error] = std::from_chars(text.data(), end, places);
            if (error != std::errc{} || stop != end) {
                throw CLI::ValidationError("--places", "'" + text + "' is neither a number nor 'all'");
            }
        },
        "Places of each finding that the report names: a number or 'all' (default: " +
            std::to_string(ReportFinding::kUsualPlaces) + ")");
}

void RequireReportPath(std::string const& path, bool force, std::string const& source) {
    if (!path.ends_with(".json") && !path.ends_with(".html")) {
        throw CommandError(path + ": a report ends with .json or .html", kExitUsage);
    }
    RequireFree(path, force, source);
}

bool HasLoss(ImportReport const& report) {
    return report.LossCount() > 0 || !report.IsAccounted();
}

namespace {

void Tell(std::string const& summary, std::string const& path, bool isLoss, bool isStrict, CConsole& console) {
    if (isLoss && (isStrict || console.Quiet())) {
        console.Complain(path + ": " + (isStrict ? summary : summary.substr(0, summary.find('\n'))));
    } else {
        console.Say(summary);
    }
}

}  // namespace

void TellSummary(ImportReport const& report, bool isStrict, CConsole& console) {
    Tell(ReportSummary(report), report.sourcePath, HasLoss(report), isStrict, console);
}

void TellSummary(ExportReport const& report, std::string const& output, bool isStrict, CConsole& console) {
    Tell(ReportSummary(report), output, report.LossCount() > 0, isStrict, console);
}

void WriteReport(std::string const& path, ImportOutcome const& outcome, std::vector<std::string> const& options) {
    if (!path.ends_with(".json")) return WriteTextFile(path, ReportHtml(outcome.report));
    nlohmann::ordered_json json = ReportJson(outcome.report);
    json["import_settings"] = SettingsJson(outcome.settings);
    json["options"] = options;
    WriteTextFile(path, json.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + "\n");
}

}  // namespace norva
