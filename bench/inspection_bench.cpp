// The inspection of a text file, and the adaptor that hands on its rows: time per byte of whole passes.

#include "inspection/row_adaptor.h"
#include "norva/inspection.h"
#include "support/temporary_folder.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <random>

namespace norva {

namespace {

enum Layout { kSurvey, kCommas, kTexts, kDates };

std::string Table(Layout layout, int rows) {
    std::mt19937 random(1);
    std::uniform_real_distribution<double> draw(0, 1);
    std::string text = layout == kSurvey  ? ""
                       : layout == kDates ? "Date,Time,X,Y,Mag\n"
                       : layout == kTexts ? "Fid,Remark,X,Mag\n"
                                          : "X,Y,Mag,Grad,Alt,Sats,Fid,Cond\n";
    char row[200];
    for (int i = 0; i < rows; ++i) {
        if (layout == kSurvey && i % 5000 == 0) text += "LINE " + std::to_string(1000 + i / 5000) + "\n";
        double const x = 500000 + i * 1.25;
        double const mag = 54000 + draw(random) * 200;
        switch (layout) {
            case kDates:
                std::snprintf(row, sizeof row, "%02d/%02d/2024,%02d:%02d:%02d.%d,%.2f,%.2f,%.3f\n", 1 + i / 40000 % 28,
                              1 + i / 1200000 % 12, i / 3600 % 24, i / 60 % 60, i % 60, i % 10, x, x + 3e6, mag);
                break;
            case kTexts:
                std::snprintf(row, sizeof row, "%d,\"%s, gate %d\",%.2f,%.3f\n", i, i % 3 == 0 ? "fence" : "power line",
                              i % 50, x, mag);
                break;
            default: {
                char const* const format = layout == kSurvey ? "%.2f %.2f %.3f %.4f %.2f %d %d %.6f\n"
                                                             : "%.2f,%.2f,%.3f,%.4f,%.2f,%d,%d,%.6f\n";
                std::snprintf(row, sizeof row, format, x, 4100000 + draw(random) * 900, mag, draw(random) * 8 - 4,
                              80 + draw(random), static_cast<int>(draw(random) * 32000), i, draw(random));
            }
        }
        text += row;
    }
    return text;
}

struct Sum : IAdaptedSink {
    double values = 0;
    bool Row(AdaptedRow const& row) override {
        for (AdaptedCell const& cell : row.cells) values += cell.what == AdaptedCell::What::Value ? cell.value : 0;
        return true;
    }
    bool Line(LineView const&) override { return true; }
};

void Report(benchmark::State& state, std::size_t bytes) {
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
    state.counters["ns/byte"] = benchmark::Counter(
        static_cast<double>(bytes) * 1e-9, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void BM_Inspection(benchmark::State& state) {
    test::CTemporaryFolder const folder;
    std::string const text = Table(static_cast<Layout>(state.range(0)), 400'000);
    test::WriteWholeFile(folder / "in.txt", text);
    for (auto _ : state) {
        Inspection found;
        if (!InspectTextFile(folder / "in.txt", {}, found)) state.SkipWithError("not inspected");
        benchmark::DoNotOptimize(found.counts.rows);
    }
    Report(state, text.size());
}
BENCHMARK(BM_Inspection)->ArgName("layout")->DenseRange(kSurvey, kDates)->Unit(benchmark::kMillisecond);

void BM_Adaptor(benchmark::State& state) {
    test::CTemporaryFolder const folder;
    std::string const text = Table(static_cast<Layout>(state.range(0)), 400'000);
    test::WriteWholeFile(folder / "in.txt", text);
    Inspection found;
    if (!InspectTextFile(folder / "in.txt", {}, found)) state.SkipWithError("not inspected");
    for (auto _ : state) {
        CSourceLines source;
        Sum sum;
        if (!source.Open(folder / "in.txt")) state.SkipWithError("no file");
        CRowAdaptor adaptor(found.settings, sum);
        std::string_view line;
        while (source.Next(line)) adaptor.Feed(line, source.Number());
        adaptor.Finish();
        benchmark::DoNotOptimize(sum.values);
    }
    Report(state, text.size());
}
BENCHMARK(BM_Adaptor)->ArgName("layout")->DenseRange(kSurvey, kDates)->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace norva
