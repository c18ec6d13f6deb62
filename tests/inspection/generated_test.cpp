#include "generated_table.h"
#include "inspection/row_adaptor.h"
#include "norva/inspection.h"
#include "support/classic_locale.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <map>

using namespace norva;

namespace {

/// What an import would store of a file.
struct StoredTable : IAdaptedSink {
    struct Cell {
        AdaptedCell::What what;
        double value;
        std::string text;
    };
    std::vector<std::vector<Cell>> rows;
    std::vector<std::string> labels;
    std::vector<std::uint64_t> numbers;  ///< lines of the file
    std::string marker;

    bool Row(AdaptedRow const& row) override {
        rows.emplace_back();
        for (AdaptedCell const& cell : row.cells)
            rows.back().push_back({cell.what, cell.value, std::string(cell.text)});
        numbers.push_back(row.number);
        labels.emplace_back(row.label.empty() ? marker : std::string(row.label));
        return true;
    }
    bool Line(LineView const& line) override {
        if (line.kind == TableLine::Marker) marker = line.label;
        return true;
    }
};

void ReadByProposal(std::string const& path, Inspection const& proposal, StoredTable& stored) {
    CSourceLines source;
    ASSERT_TRUE(CRowAdaptor::CanRead(proposal.settings));
    ASSERT_TRUE(source.Open(path));
    CRowAdaptor adaptor(proposal.settings, stored);
    std::string_view line;
    while (source.Next(line)) adaptor.Feed(line, source.Number());
    adaptor.Finish();
}

/// A single that is shown with the fewest digits that tell it from others has to be the number of the file.
bool IsKept(double value, double truth, int dataType) {
    if (dataType != DataType::kFloat) return value == truth;
    char text[32];
    auto const end = std::to_chars(text, text + sizeof text, static_cast<float>(value));
    return std::strtod(std::string(text, end.ptr).c_str(), nullptr) == truth;
}

bool IsOfKind(NorvaChannelStruct const& channel, test::TrueColumn::Kind kind) {
    using Kind = test::TrueColumn::Kind;
    bool const isText = channel.dataType == DataType::kText;
    switch (kind) {
        case Kind::Text:
            return isText;
        case Kind::Date:
            return channel.displayFormat == DisplayFormat::kDate;
        case Kind::Time:
            return channel.displayFormat == DisplayFormat::kTime;
        case Kind::Position:
            return channel.displayFormat == DisplayFormat::kGeographic;
        default:
            return !isText && channel.displayFormat <= DisplayFormat::kExponent;
    }
}

std::string WrongCell(test::TrueColumn const& truth, std::size_t row, NorvaChannelStruct const& channel,
                      StoredTable::Cell const& cell) {
    using What = AdaptedCell::What;
    test::TrueCell const& wanted = truth.cells[row];
    std::string const where = truth.name + " in row " + std::to_string(row + 1) + ": ";
    if (wanted.isMissing) return cell.what == What::Missing ? "" : where + "is missing, but " + cell.text;
    if (truth.kind == test::TrueColumn::Kind::Text) {
        if (cell.what != What::Text || cell.text != wanted.text) return where + wanted.text + " became " + cell.text;
        return cell.text.size() <= static_cast<std::size_t>(channel.arraySize) ? "" : where + "is cut";
    }
    if (cell.what != What::Value) return where + "is not missing";
    bool const isExact = truth.kind == test::TrueColumn::Kind::Number;
    bool const isSame =
        isExact ? IsKept(cell.value, *wanted.value, channel.dataType) : std::fabs(cell.value - *wanted.value) < 1e-9;
    return isSame ? "" : where + test::Fixed(*wanted.value, 9) + " became " + test::Fixed(cell.value, 9);
}

/// Empty where the file would be stored as it is; else the first thing that would not. `line` is its line, 0 for none.
std::string FirstWrong(test::GeneratedTable const& table, Inspection const& proposal, StoredTable const& stored,
                       std::uint64_t& line) {
    std::vector<NorvaChannelStruct> const& channels = proposal.settings.columns;
    if (channels.size() != table.columns.size()) return std::to_string(channels.size()) + " columns";
    std::size_t const rows = table.columns[0].cells.size();
    if (stored.rows.size() != rows) return std::to_string(stored.rows.size()) + " rows of " + std::to_string(rows);
    for (std::size_t c = 0; c < channels.size(); ++c) {
        test::TrueColumn const& truth = table.columns[c];
        if (channels[c].name != truth.name) return "name " + channels[c].name + " of " + truth.name;
        if (channels[c].units != truth.units)
            return truth.name + " has units " + channels[c].units + ", not " + truth.units;
        if (!IsOfKind(channels[c], truth.kind)) return truth.name + " is a " + ValueTypeText(channels[c]);
        for (std::size_t row = 0; row < rows; ++row) {
            std::string wrong = WrongCell(truth, row, channels[c], stored.rows[row][c]);
            if (wrong.empty()) continue;
            line = stored.numbers[row];
            return wrong;
        }
    }
    for (std::size_t row = 0; row < rows && !table.labels.empty(); ++row) {
        if (stored.labels[row] != table.labels[row])
            return "row " + std::to_string(row + 1) + " is of line " + stored.labels[row];
    }
    return {};
}

char const* NameOf(test::TrueColumn::Kind kind) {
    static constexpr char const* kNames[] = {"number", "text", "date", "time", "position"};
    return kNames[static_cast<std::size_t>(kind)];
}

/// The table and what is in it, for other readers to be held against.
void Keep(test::GeneratedTable const& table, std::string const& verdict, std::string const& stem) {
    nlohmann::ordered_json columns = nlohmann::ordered_json::array();
    for (test::TrueColumn const& column : table.columns) {
        nlohmann::ordered_json cells = nlohmann::ordered_json::array();
        for (test::TrueCell const& cell : column.cells) {
            if (cell.isMissing) {
                cells.push_back(nullptr);
            } else if (cell.value) {
                cells.push_back(*cell.value);
            } else {
                cells.push_back(cell.text);
            }
        }
        columns.push_back({{"name", column.name}, {"kind", NameOf(column.kind)}, {"cells", std::move(cells)}});
    }
    nlohmann::ordered_json const truth = {{"layout", table.layout},
                                          {"hard", table.isHard},
                                          {"file", std::filesystem::path(stem + table.extension).filename().string()},
                                          {"norva", verdict},
                                          {"columns", std::move(columns)}};
    test::WriteWholeFile(stem + table.extension, table.bytes);
    test::WriteWholeFile(stem + ".json", truth.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace));
}

struct Score {
    int right = 0;
    int told = 0;
    int silent = 0;
    int doubted = 0;  ///< right ones with a doubt
};

}  // namespace

/// NORVA_TEST_TABLES tables (440 without it) from NORVA_TEST_SEED on, and how many of them would be stored as they are,
/// without any option. In the folder NORVA_TEST_KEEP the tables stay, each with what is in it.
TEST(InspectionGenerated, TablesAreStoredAsTheyAre) {
    test::CClassicLocale const classic;
    char const* const count = std::getenv("NORVA_TEST_TABLES");
    char const* const first = std::getenv("NORVA_TEST_SEED");
    char const* const keep = std::getenv("NORVA_TEST_KEEP");
    int const tables = count != nullptr ? std::atoi(count) : 440;
    std::uint64_t const seed = first != nullptr ? std::strtoull(first, nullptr, 10) : 1;
    test::CTemporaryFolder const folder;
    std::map<std::string, Score> scores;
    Score all;
    int shown = 0;
    for (int i = 0; i < tables; ++i) {
        test::GeneratedTable const table =
            test::CTableMaker(seed * 1000003 + static_cast<std::uint64_t>(i)).Make(i % test::CTableMaker::kLayouts);
        std::string const path = folder / ("table" + table.extension);
        test::WriteWholeFile(path, table.bytes);
        Inspection proposal;
        ASSERT_TRUE(InspectTextFile(path, {}, proposal));
        StoredTable stored;
        ReadByProposal(path, proposal, stored);
        ASSERT_EQ(stored.rows.size(), proposal.counts.rows)
            << "the adaptor takes other rows than the inspection counted\n"
            << table.bytes;
        std::uint64_t line = 0;
        std::string const wrong = FirstWrong(table, proposal, stored, line);
        bool const isListed = std::any_of(proposal.lines.begin(), proposal.lines.end(),
                                          [&](InspectedLine const& told) { return line != 0 && told.line == line; });
        bool const isTold = isListed || proposal.Doubts() > 0 || proposal.lines.size() > table.rowsThatMayDiffer;
        if (keep != nullptr) {
            Keep(table,
                 wrong.empty() ? "right"
                 : isTold      ? "told"
                               : "silent",
                 std::string(keep) + "/" + std::to_string(seed) + "_" + std::to_string(i));
        }
        Score& score = scores[table.layout];
        ++(wrong.empty() ? score.right : isTold ? score.told : score.silent);
        if (wrong.empty() && proposal.Doubts() > 0) ++score.doubted;
        if (!wrong.empty() && shown++ < 10) {
            std::cout << table.layout << ", table " << i << (isTold ? ", told: " : ", SILENT: ") << wrong << "\n"
                      << (std::getenv("NORVA_TEST_SHOW") != nullptr
                              ? table.bytes.substr(0, 1500) + "\n" + proposal.Text()
                              : "");
        }
    }
    for (auto const& [layout, score] : scores) {
        std::cout << layout << ": right " << score.right << ", told " << score.told << ", silent " << score.silent
                  << ", doubts where right " << score.doubted << "\n";
        all.right += score.right;
        all.told += score.told;
        all.silent += score.silent;
        all.doubted += score.doubted;
    }
    std::cout << "all: right " << all.right << ", told " << all.told << ", silent " << all.silent
              << ", doubts where right " << all.doubted << "\n";
    EXPECT_EQ(all.silent, 0);
    EXPECT_GE(all.right * 100, tables * 97);
}
