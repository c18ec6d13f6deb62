#include "norva/converters.h"

#include <benchmark/benchmark.h>

#include <string>

namespace norva {
namespace {

void ReadDates(benchmark::State& state) {
    CNorvaDateTime const converter;
    double value = 0;
    for (auto _ : state) {
        converter.GetDoubleDate("2024/10/31", 0, value);
        benchmark::DoNotOptimize(value);
    }
}
BENCHMARK(ReadDates);

void ReadTimes(benchmark::State& state) {
    CNorvaDateTime const converter;
    double value = 0;
    for (auto _ : state) {
        converter.GetDoubleTime("13:07:59.250", 2, 3, value);
        benchmark::DoNotOptimize(value);
    }
}
BENCHMARK(ReadTimes);

void ReadCoordinates(benchmark::State& state) {
    CNorvaGeographic const converter;
    double value = 0;
    int decimals = 0;
    for (auto _ : state) {
        converter.GetDoubleData("-105.03.07.250", 0, value, decimals);
        benchmark::DoNotOptimize(value);
    }
}
BENCHMARK(ReadCoordinates);

void WriteDates(benchmark::State& state) {
    CNorvaDateTime const converter;
    std::string text;
    double value = 2024.0;
    for (auto _ : state) {
        converter.GetStringDate(value += 1.0 / 4096, 0, text);
        benchmark::DoNotOptimize(text.data());
        if (value > 2025) value = 2024;
    }
}
BENCHMARK(WriteDates);

void WriteTimes(benchmark::State& state) {
    CNorvaDateTime const converter;
    std::string text;
    double value = 0;
    for (auto _ : state) {
        converter.GetStringTime(value += 1.0 / 36001, 2, 3, text);
        benchmark::DoNotOptimize(text.data());
        if (value > 24) value = 0;
    }
}
BENCHMARK(WriteTimes);

void WriteCoordinates(benchmark::State& state) {
    CNorvaGeographic const converter;
    std::string text;
    double value = -180;
    for (auto _ : state) {
        converter.GetString(value += 1.0 / 36001, 0, 3, text);
        benchmark::DoNotOptimize(text.data());
        if (value > 180) value = -180;
    }
}
BENCHMARK(WriteCoordinates);

}  // namespace
}  // namespace norva
