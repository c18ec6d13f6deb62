// Column text: the profile scan, the conversion of values by type, and the stages of a whole import.

#include "formats/column_text/profile_detection.h"
#include "formats/column_text/row_converter.h"
#include "formats/column_text/text_line.h"
#include "norva/import_export.h"
#include "norva/scripted_toolkit.h"
#include "support/temporary_folder.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <random>

namespace norva {

namespace {

using Clock = std::chrono::steady_clock;

/// Rows of eight columns as a magnetometer survey has them, a marker line every 5,000 rows.
std::string SurveyText(int rows) {
    std::mt19937 random(1);
    std::uniform_real_distribution<double> draw(0, 1);
    std::string text;
    char row[200];
    for (int i = 0; i < rows; ++i) {
        if (i % 5000 == 0) text += "LINE " + std::to_string(1000 + i / 5000) + "\n";
        std::snprintf(row, sizeof row, "%.2f %.2f %.3f %.4f %.2f %d %d %.6f\n", 500000 + i * 1.25,
                      4100000 + draw(random) * 900, 54000 + draw(random) * 200, draw(random) * 8 - 4, 80 + draw(random),
                      static_cast<int>(draw(random) * 32000), i, draw(random));
        text += row;
    }
    return text;
}

void BM_ProfileScan(benchmark::State& state) {
    test::CTemporaryFolder const folder;
    std::string const text = SurveyText(200'000);
    test::WriteWholeFile(folder / "in.xyz", text);
    CLineReader file;
    if (!file.Open(folder / "in.xyz")) state.SkipWithError("no file");
    bool const byLabel = state.range(0) != 0;
    for (auto _ : state) {
        auto const profiles =
            byLabel ? FindProfilesByLabel(file, 0, 6, nullptr) : FindProfilesByMarker(file, 0, nullptr);
        benchmark::DoNotOptimize(profiles.size());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}
BENCHMARK(BM_ProfileScan)->ArgName("by_label")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

struct ColumnCase {
    char const* name;
    char const* token;
    int dataType;
    int displayFormat;
    int templateFormat;
};
constexpr ColumnCase kColumnCases[] = {
    {"float", "54210.1234", DataType::kFloat, DisplayFormat::kFixed, -1},
    {"double", "4100123.25", DataType::kDouble, DisplayFormat::kFixed, -1},
    {"double, exponent", "5.4210E+04", DataType::kDouble, DisplayFormat::kExponent, -1},
    {"short", "12345", DataType::kShort, DisplayFormat::kFixed, -1},
    {"long", "1234567", DataType::kLong, DisplayFormat::kFixed, -1},
    {"text", "basalt", DataType::kText, DisplayFormat::kFixed, -1},
    {"date", "2024/06/14", DataType::kDouble, DisplayFormat::kDate, 0},
    {"time", "09:12:02.1", DataType::kDouble, DisplayFormat::kTime, 2},
    {"geographic", "45.13.02.629", DataType::kDouble, DisplayFormat::kGeographic, 0},
    {"missing", "*", DataType::kDouble, DisplayFormat::kFixed, -1},
};

void BM_ColumnConversion(benchmark::State& state) {
    constexpr int kColumns = 8;
    constexpr int kRows = 20'000;
    ColumnCase const& column = kColumnCases[state.range(0)];
    NorvaChannelStruct settings;
    settings.dataType = column.dataType;
    settings.displayFormat = column.displayFormat;
    settings.templateFormat = column.templateFormat;
    settings.arraySize = 8;
    std::vector<NorvaChannelStruct> const columns(kColumns, settings);
    std::string row;
    for (int i = 0; i < kColumns; ++i) row += std::string(i > 0 ? " " : "") + column.token;

    test::CTemporaryFolder const folder;
    CNorvaDateTime const dateTime;
    CNorvaGeographic const geographic;
    for (auto _ : state) {
        CColumnFiles files;
        if (!files.Create(folder / "column", kColumns, "")) state.SkipWithError("no column files");
        CRowReport report(columns);
        CRowConverter converter(columns, kRowDelimiters, CRowConverter::Forms(), dateTime, geographic, files, report);
        for (int i = 0; i < kRows; ++i) converter.Row(row);
    }
    state.SetLabel(column.name);
    state.SetItemsProcessed(state.iterations() * kRows * kColumns);
}
BENCHMARK(BM_ColumnConversion)->DenseRange(0, std::size(kColumnCases) - 1)->Unit(benchmark::kMillisecond);

/// Answers everything by default and notes when the progress window changes its title or goes.
class CStageToolkit : public CScriptedToolkit {
public:
    explicit CStageToolkit(std::vector<ScriptAnswer> answers) : CScriptedToolkit(std::move(answers), true, nullptr) {}
    void WindowTitled(CModelessDialog&) override { times.push_back(Clock::now()); }
    void WindowDestroyed(CModelessDialog&) override { times.push_back(Clock::now()); }
    std::vector<Clock::time_point> times;
};

/// A whole import of 2.5 million rows, from the column dialog's end to the closed store.
void BM_ImportStages(benchmark::State& state) {
    test::CTemporaryFolder const folder;
    std::string const text = SurveyText(static_cast<int>(state.range(0)));
    test::WriteWholeFile(folder / "in.xyz", text);
    // Titled and destroyed while the preview is read, then titled at the start of each stage and destroyed.
    enum Event { kPreview, kPreviewEnd, kScan, kConversion, kHandOver, kEnd, kEvents };
    double seconds[kEvents] = {};
    for (auto _ : state) {
        ScriptAnswer open, save;
        open.kind = ScriptAnswer::Kind::Open;
        open.path = folder / "in.xyz";
        save.kind = ScriptAnswer::Kind::Save;
        save.path = folder / "out.nvt";
        CStageToolkit toolkit({open, save});
        SetToolkit(&toolkit);
        CNorvaFileUtil store;
        std::string path;
        int const result = Import_Data_File(&store, path, nullptr, 0);
        SetToolkit(nullptr);
        if (result == 0 || toolkit.times.size() != kEvents) {
            state.SkipWithError("the import failed");
            break;
        }
        for (int stage = kScan; stage < kEnd; ++stage) {
            auto const index = static_cast<std::size_t>(stage);
            seconds[stage] += std::chrono::duration<double>(toolkit.times[index + 1] - toolkit.times[index]).count();
        }
    }
    auto const runs = static_cast<double>(state.iterations());
    state.counters["scan_s"] = seconds[kScan] / runs;
    state.counters["conversion_s"] = seconds[kConversion] / runs;
    state.counters["hand_over_s"] = seconds[kHandOver] / runs;
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}
BENCHMARK(BM_ImportStages)->Arg(2'500'000)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace

}  // namespace norva
