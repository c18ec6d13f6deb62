#include "commands.h"
#include "common/command_error.h"
#include "common/line_quality.h"
#include "common/names.h"
#include "common/position_names.h"
#include "console.h"
#include "jobs.h"
#include "norva/value_text.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <iostream>
#include <memory>

namespace norva {

namespace {

struct StatsJob {
    std::string store;
    bool json = false;
    std::string x;
    std::string y;
};

QualityKeys KeysOf(CNorvaFileUtil& store, StatsJob const& job) {
    std::vector<std::string> const names = ChannelNames(store);
    auto const indexOf = [&](std::string const& name) {
        return store.GetFileChanIndex(FindNamed(names, name, 0, "channel"));
    };
    if (job.x.empty() != job.y.empty()) throw CommandError("--x and --y go together", kExitUsage);
    if (!job.x.empty()) return {indexOf(job.x), indexOf(job.y)};
    std::vector<PositionCandidate> candidates;
    for (int n = 0; n < store.ChannelCount; ++n) {
        int const index = store.GetFileChanIndex(n);
        candidates.push_back({names[static_cast<std::size_t>(n)], store.GetChannelUnits(index),
                              store.GetChannelDataType(index) != DataType::kText,
                              store.GetChannelDisplayFormat(index)});
    }
    PositionPlaces const found = FindPositions(candidates);
    if (found.x < 0) return {};
    return {store.GetFileChanIndex(found.x), store.GetFileChanIndex(found.y)};
}

/// Texts have no extremes.
QualityRow LookAtTexts(CNorvaFileUtil& store, int line, int channel) {
    QualityRow row;
    row.line = line;
    row.channel = channel;
    row.count = store.GetProfileLocationNum(line, 0);
    StoreValue value;
    for (long location = 0; location < row.count; ++location) {
        if (store.IsLocMarkedToDelete(line, location) != 0) {
            ++row.deleted;
        } else if (!value.Read(store, channel, line, location) || value.text.empty() || value.text == "*") {
            ++row.noData;
        }
    }
    return row;
}

/// A row per line and channel, in the order of the store.
std::vector<QualityRow> StatisticsOf(CNorvaFileUtil& store, StatsJob const& job) {
    std::vector<QualityRow> numbers;
    auto const ownMarks = [](int /*line*/) { return nullptr; };
    auto const goOn = [](double /*done*/) { return !WasInterrupted(); };
    if (!LookAtQuality(store, ownMarks, KeysOf(store, job), goOn, numbers)) {
        ThrowIfInterrupted();
        throw CommandError(job.store + ": " + store.LastStatus().Text());
    }
    std::vector<QualityRow> rows;
    auto next = numbers.cbegin();
    for (int line = 0; line < store.ProfileCount; ++line) {
        for (int n = 0; n < store.ChannelCount; ++n) {
            int const channel = store.GetFileChanIndex(n);
            bool const isText = store.GetChannelDataType(channel) == DataType::kText;
            rows.push_back(isText ? LookAtTexts(store, line, channel) : *next++);
        }
    }
    return rows;
}

/// A value of a single-precision channel as the number that its shortest text says.
double AsWritten(double value, bool isSingle) {
    if (!isSingle) return value;
    std::array<char, 32> digits{};
    auto const text = std::to_chars(digits.data(), digits.data() + digits.size(), static_cast<float>(value));
    std::from_chars(digits.data(), text.ptr, value);
    return value;
}

nlohmann::ordered_json JsonOf(CNorvaFileUtil& store, std::vector<std::string> const& lines, QualityRow const& row) {
    long const values = row.count - row.noData - row.deleted;
    bool const isNumber = store.GetChannelDataType(row.channel) != DataType::kText;
    auto const known = [](bool isKnown, auto value) {
        return isKnown ? nlohmann::ordered_json(value) : nlohmann::ordered_json();
    };
    bool const isSingle = store.GetChannelDataType(row.channel) == DataType::kFloat;
    bool const hasRange = isNumber && values > 0;
    return {{"line", lines[static_cast<std::size_t>(row.line)]},
            {"channel", store.GetChannelName(row.channel)},
            {"values", values},
            {"no_data", row.noData},
            {"deleted", row.deleted},
            {"minimum", known(hasRange, AsWritten(row.minimum, isSingle))},
            {"maximum", known(hasRange, AsWritten(row.maximum, isSingle))},
            {"mean", known(hasRange, row.mean)},
            {"deviation", known(hasRange, row.deviation)},
            {"duplicates", known(row.duplicates >= 0, row.duplicates)},
            {"reversals", known(row.reversals >= 0, row.reversals)}};
}

std::string CellOf(nlohmann::ordered_json const& value) {
    if (value.is_null()) return "-";
    if (value.is_string()) return value.get<std::string>();
    std::string text;
    // Seven digits tell two readings apart; the JSON has all of them.
    if (value.is_number_float()) {
        std::array<char, 32> digits{};
        int const length = std::snprintf(digits.data(), digits.size(), "%.7g", value.get<double>());
        return {digits.data(), static_cast<std::size_t>(length)};
    }
    return value.dump();
}

void PrintTable(nlohmann::ordered_json const& rows) {
    if (rows.empty()) return;
    std::vector<std::vector<std::string>> cells(1);
    for (auto const& [key, value] : rows.front().items()) cells.front().push_back(key);
    std::replace(cells.front()[3].begin(), cells.front()[3].end(), '_', ' ');
    for (auto const& row : rows) {
        cells.emplace_back();
        for (auto const& [key, value] : row.items()) cells.back().push_back(CellOf(value));
    }
    std::vector<std::size_t> widths(cells.front().size());
    for (auto const& row : cells) {
        for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], row[i].size());
    }
    std::string out;
    for (auto const& row : cells) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            std::string const blanks(widths[i] - row[i].size(), ' ');
            bool const isName = i < 2;
            if (i > 0) out += "  ";
            out += isName ? row[i] + blanks : blanks + row[i];
        }
        out += '\n';
    }
    std::cout << out;
}

int RunStats(StatsJob const& job) {
    CNorvaFileUtil store;
    OpenStore(store, job.store);
    std::vector<std::string> const lines = LineNames(store);
    nlohmann::ordered_json rows = nlohmann::ordered_json::array();
    for (QualityRow const& row : StatisticsOf(store, job)) rows.push_back(JsonOf(store, lines, row));
    if (job.json) {
        std::cout << rows.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) << "\n";
    } else {
        PrintTable(rows);
    }
    std::cout.flush();
    return std::cout ? kExitDone : kExitFailed;
}

}  // namespace

void AddStatsCommand(CCommands& commands) {
    auto const job = std::make_shared<StatsJob>();
    CLI::App& command = commands.Add(
        "stats",
        "Say for every line and channel of a store: values, no-data, deleted locations, extremes, mean and "
        "standard deviation, locations at the place or time of the one before, times that go back",
        "norva stats survey.nvt\n  norva stats survey.nvt --json", [job] { return RunStats(*job); });
    command.add_option("STORE", job->store, "Store to look at")->required();
    command.add_flag("--json", job->json, "Print JSON, with every digit");
    command.add_option("--x", job->x, "Channel of the eastings or longitudes (default: by name and unit)");
    command.add_option("--y", job->y, "Channel of the northings or latitudes");
}

}  // namespace norva
