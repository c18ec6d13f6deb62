#include "platform/line_reader.h"
#include "platform/numbers.h"
#include "support/temporary_folder.h"

#include <benchmark/benchmark.h>

#include <string>
#include <string_view>

namespace norva {
namespace {

/// About 32 MB of rows of `columns` columns, and the same rows with each kind of line end.
std::string Rows(int columns, std::string_view lineEnd) {
    std::string text;
    for (int row = 0; text.size() < (32U << 20U); ++row) {
        for (int column = 0; column < columns; ++column) {
            text += ' ';
            AppendFixed(text, row * 0.37 + column * 1000, 2);
        }
        text += lineEnd;
    }
    return text;
}

void ReadLines(benchmark::State& state, int columns, std::string_view lineEnd) {
    test::CTemporaryFolder const folder;
    std::string const path = folder / "rows.xyz";
    std::string const text = Rows(columns, lineEnd);
    test::WriteWholeFile(path, text);
    std::size_t lines = 0;
    for (auto _ : state) {
        CLineReader reader;
        std::string_view line;
        std::size_t bytes = 0;
        lines = 0;
        for (reader.Open(path); reader.Next(line); ++lines) bytes += line.size();
        benchmark::DoNotOptimize(bytes);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(lines));
}

BENCHMARK_CAPTURE(ReadLines, EightColumns, 8, "\n");
BENCHMARK_CAPTURE(ReadLines, EightColumnsCrLf, 8, "\r\n");
BENCHMARK_CAPTURE(ReadLines, EightColumnsCr, 8, "\r");
BENCHMARK_CAPTURE(ReadLines, OneColumn, 1, "\n");
BENCHMARK_CAPTURE(ReadLines, FiveThousandColumns, 5000, "\n");

}  // namespace
}  // namespace norva
