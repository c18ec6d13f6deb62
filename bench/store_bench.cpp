// What the store's calls cost: writing a column at once and value by value, and reading row by row.

#include "exchange/column_files.h"
#include "support/store_samples.h"
#include "support/temporary_folder.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <utility>

namespace {

using namespace norva;
using norva::test::CTemporaryFolder;

constexpr long kLocations = 2'500'000;

void Check(bool isTrue) {
    if (!isTrue) std::abort();
}

/// A store of one line, ready for its values.
void Describe(CNorvaFileUtil& store, std::string const& path, int channels, long locations) {
    Check(store.SetFileName(path, kCreateStore, nullptr) != 0);
    store.AddProfileToStructure("L1", locations);
    for (int channel = 0; channel < channels; ++channel) {
        store.AddChannelToStructure("C" + std::to_string(channel), "nT", DataType::kDouble, 0, 1, 0, 0, 2, -1);
    }
    Check(store.SaveProfileStructure() != 0 && store.SaveChannelStructure() != 0 && store.StartWriteData() != 0);
}

void WriteHugeColumns(benchmark::State& state) {
    CTemporaryFolder folder;
    std::vector<double> const column(kLocations, 48000.5);
    CNorvaFileUtil store;
    for (auto _ : state) {
        state.PauseTiming();
        Describe(store, folder / "a.nvt", 8, kLocations);
        state.ResumeTiming();
        for (int channel = 0; channel < 8; ++channel) {
            Check(store.WriteHuge(column.data(), column.size() * sizeof(double)) != 0);
        }
        state.PauseTiming();
        store.CloseCurFile();
        state.ResumeTiming();
    }
    state.SetBytesProcessed(state.iterations() * 8 * kLocations * 8);
}
BENCHMARK(WriteHugeColumns)->Unit(benchmark::kMillisecond);

void SaveDataValues(benchmark::State& state) {
    CTemporaryFolder folder;
    CNorvaFileUtil store;
    CNorvaFileUtil* volatile hidden = &store;  // as a caller sees it, who does not know which store it has
    CNorvaFileUtil* const called = hidden;
    for (auto _ : state) {
        state.PauseTiming();
        Describe(store, folder / "a.nvt", 2, kLocations);
        state.ResumeTiming();
        for (long at = 0; at < 2 * kLocations; ++at) {
            auto const value = static_cast<double>(at);
            called->SaveData(DataType::kDouble, &value);
        }
        state.PauseTiming();
        store.CloseCurFile();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * 2 * kLocations);
}
BENCHMARK(SaveDataValues)->Unit(benchmark::kMillisecond);

/// The time to the disk included.
void WholeStore(benchmark::State& state) {
    CTemporaryFolder folder;
    std::vector<double> const column(kLocations, 48000.5);
    CNorvaFileUtil store;
    for (auto _ : state) {
        Describe(store, folder / "a.nvt", 8, kLocations);
        for (int channel = 0; channel < 8; ++channel) store.WriteHuge(column.data(), column.size() * sizeof(double));
        Check(store.EndWriteData() != 0 && store.CloseCurFile() != 0);
    }
    state.SetBytesProcessed(state.iterations() * 8 * kLocations * 8);
}
BENCHMARK(WholeStore)->Unit(benchmark::kMillisecond);

/// Row by row over all channels, as an export reads.
void GetDataRows(benchmark::State& state) {
    CTemporaryFolder folder;
    auto const channels = static_cast<int>(state.range(0));
    long const locations = 4'000'000 / channels;
    CNorvaFileUtil store;
    Describe(store, folder / "a.nvt", channels, locations);
    std::vector<double> const column(static_cast<std::size_t>(locations), 48000.5);
    for (int channel = 0; channel < channels; ++channel) store.WriteHuge(column.data(), column.size() * sizeof(double));
    Check(store.EndWriteData() != 0 && store.CloseCurFile() != 0 &&
          store.SetFileName(folder / "a.nvt", kReopenStore, nullptr) != 0);
    CNorvaFileUtil* volatile hidden = &store;  // as a caller sees it, who does not know which store it has
    CNorvaFileUtil* const called = hidden;
    float single = 0;
    double number = 0;
    int integer = 0;
    long longInteger = 0;
    std::string text;
    int dataType = 0;
    for (auto _ : state) {
        double sum = 0;
        for (long at = 0; at < locations; ++at) {
            if (called->IsLocMarkedToDelete(0, at) != 0) continue;
            for (int channel = 0; channel < channels; ++channel) {
                called->GetData(channel, 0, at, single, number, integer, longInteger, text, dataType);
                sum += number;
            }
        }
        benchmark::DoNotOptimize(std::as_const(sum));
    }
    state.SetItemsProcessed(state.iterations() * locations * channels);
}
BENCHMARK(GetDataRows)->Arg(1)->Arg(8)->Arg(5000)->Unit(benchmark::kMillisecond);

/// Opening a store of 1 GB, as "norva info" does.
void OpenLargeStore(benchmark::State& state) {
    CTemporaryFolder folder;
    CNorvaFileUtil store;
    constexpr long kLines = 12'500'000;
    Describe(store, folder / "a.nvt", 10, kLines);
    std::vector<double> const column(kLines, 48000.5);
    for (int channel = 0; channel < 10; ++channel) store.WriteHuge(column.data(), column.size() * sizeof(double));
    Check(store.EndWriteData() != 0);
    for (auto _ : state) Check(store.SetFileName(folder / "a.nvt", kReopenStore, nullptr) != 0);
}
BENCHMARK(OpenLargeStore)->Unit(benchmark::kMicrosecond);

/// Rows of values into the files of many columns, and from there into nothing.
void ColumnFilesAppend(benchmark::State& state) {
    CTemporaryFolder folder;
    auto const columns = static_cast<int>(state.range(0));
    long const rows = 4'000'000 / columns;
    for (auto _ : state) {
        CColumnFiles files;
        Check(files.Create(folder / "c", columns, "").IsGood());
        for (long row = 0; row < rows; ++row) {
            auto const value = static_cast<double>(row);
            for (int column = 0; column < columns; ++column) {
                if (char* const room = files.Append(column, sizeof value)) std::memcpy(room, &value, sizeof value);
            }
        }
        Check(!files.Failed());
    }
    state.SetItemsProcessed(state.iterations() * rows * columns);
}
BENCHMARK(ColumnFilesAppend)->Arg(8)->Arg(5000)->Unit(benchmark::kMillisecond);

}  // namespace
