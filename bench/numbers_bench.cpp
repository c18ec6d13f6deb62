#include "norva/converters.h"
#include "platform/numbers.h"

#include <benchmark/benchmark.h>

#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace norva {
namespace {

constexpr std::size_t kCount = 4096;

/// Field readings, and doubles of any size and all digits.
std::vector<double> Values(bool readings) {
    std::mt19937_64 random(7);
    std::vector<double> values(kCount);
    for (double& value : values) {
        value = readings ? std::uniform_real_distribution(-60000.0, 60000.0)(random)
                         : std::normal_distribution(0.0, 1.0)(random) *
                               std::pow(10.0, std::uniform_int_distribution(-200, 200)(random));
    }
    return values;
}

std::vector<std::string> Texts(bool readings) {
    std::vector<std::string> texts;
    for (double const value : Values(readings)) {
        std::string& text = texts.emplace_back();
        readings ? AppendFixed(text, value, 3) : AppendShortest(text, value);
    }
    return texts;
}

template <typename Read>
void ReadNumbers(benchmark::State& state, Read read, bool readings) {
    std::vector<std::string> const texts = Texts(readings);
    for (auto _ : state) {
        double sum = 0;
        for (std::string const& text : texts) sum += read(text);
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kCount));
}

double ReadByFromChars(std::string const& text) {
    double value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

BENCHMARK_CAPTURE(ReadNumbers, Readings, ReadNumber, true);
BENCHMARK_CAPTURE(ReadNumbers, ReadingsByFromChars, ReadByFromChars, true);
BENCHMARK_CAPTURE(ReadNumbers, AnyDouble, ReadNumber, false);
BENCHMARK_CAPTURE(ReadNumbers, AnyDoubleByFromChars, ReadByFromChars, false);

template <typename Write>
void WriteNumbers(benchmark::State& state, Write write, bool readings) {
    std::vector<double> const values = Values(readings);
    auto const decimals = static_cast<int>(state.range(0));
    std::string out;
    for (auto _ : state) {
        out.clear();
        for (double const value : values) write(out, value, decimals);
        benchmark::DoNotOptimize(out.data());
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kCount));
}

void AppendByPrintf(std::string& out, double value, int decimals) {
    char buffer[512];
    out.append(buffer, static_cast<std::size_t>(std::snprintf(buffer, sizeof buffer, "%.*f", decimals, value)));
}

BENCHMARK_CAPTURE(WriteNumbers, Fixed, AppendFixed, true)->Arg(0)->Arg(2)->Arg(6)->Arg(15);
BENCHMARK_CAPTURE(WriteNumbers, FixedByPrintf, AppendByPrintf, true)->Arg(2)->Arg(6);
BENCHMARK_CAPTURE(WriteNumbers, FixedAnyDouble, AppendFixed, false)->Arg(2);
BENCHMARK_CAPTURE(WriteNumbers, Exponent, AppendExponent, true)->Arg(6);

void SplitRows(benchmark::State& state) {
    std::string row;
    for (double const value : Values(true)) {
        row.append(3, ' ');
        AppendFixed(row, value, 2);
        if (row.size() > 160) break;
    }
    std::vector<std::string_view> tokens;
    for (auto _ : state) {
        GetTokens(row, tokens, " ,\t\n");
        benchmark::DoNotOptimize(tokens.data());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(row.size()));
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(tokens.size()));
}
BENCHMARK(SplitRows);

}  // namespace
}  // namespace norva
