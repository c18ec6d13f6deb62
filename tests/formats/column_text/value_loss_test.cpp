#include "formats/column_text/written_digits.h"
#include "norva/column_text.h"
#include "norva/exchange.h"
#include "norva/file_util.h"
#include "platform/text.h"
#include "support/classic_locale.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <numeric>
#include <random>

namespace norva::test {

namespace {

/// "rounded 2, shifted 1": the losses of an import, as the report names them.
std::string Losses(ImportReport const& report) {
    std::string text;
    auto const add = [&text](char const* name, std::uint64_t count) {
        if (count > 0) text += (text.empty() ? "" : ", ") + std::string(name) + " " + std::to_string(count);
    };
    for (ReportKind const* kind = kReportKinds; kind->name != nullptr; ++kind) {
        std::uint64_t count = 0;
        for (ReportChannel const& channel : report.channels) count += (channel.*kind->finding).count;
        if (kind->isLoss) add(kind->name, count);
    }
    for (ReportRowKind const* kind = kReportRowKinds; kind->name != nullptr; ++kind) {
        if (kind->isLoss) add(kind->name, (report.*kind->finding).count);
    }
    return text;
}

ImportReport Import(std::string const& path, std::string const& store, ImportSettings settings = {}) {
    ImportRequest request;
    request.inputPath = path;
    request.storePath = store;
    request.settings = std::move(settings);
    ImportResult result;
    Status const status = ImportFile(request, result);
    EXPECT_TRUE(status) << status.Text();
    EXPECT_TRUE(result.report.IsAccounted());
    return result.report;
}

}  // namespace

TEST(ValueLoss, RoundedNumbersAreThoseThatReadBackAsOthers) {
    test::CClassicLocale const classic;
    std::tuple<char const*, bool, bool> const cases[] = {// exact enough in single, in double precision
                                                         {"1.5", true, true},
                                                         {"0.1", true, true},
                                                         {"123456", true, true},
                                                         {"54210.25", true, true},
                                                         {"54210.12", true, true},
                                                         {"54210.1234", false, true},
                                                         {"6200000.12", false, true},
                                                         {"16777216", true, true},
                                                         {"16777217", false, true},
                                                         {"-43968.18559", false, true},
                                                         {"0.00012345678", true, true},
                                                         {"123456789012345.6", false, true},
                                                         {"9007199254740993", false, false},
                                                         {"0.1234567890123456789", false, false},
                                                         {"1.23456784E+07", false, true},
                                                         {"1.5e300", false, true},
                                                         {"1e-50", false, true},
                                                         {"0.000", true, true},
                                                         {"1.000000000000000000000000", true, true},
                                                         {".5000000", true, true},
                                                         {"100000000", true, true}};
    for (auto const& [text, isExactSingle, isExactDouble] : cases) {
        double const value = std::strtod(text, nullptr);
        EXPECT_EQ(HasWrittenDigits(static_cast<double>(static_cast<float>(value)), text), isExactSingle) << text;
        EXPECT_EQ(HasWrittenDigits(value, text), isExactDouble) << text;
        PlainDecimal number;
        std::string_view const view(text);
        if (ReadPlainDecimal(view.data(), view.data() + view.size(), number) == view.data() + view.size()) {
            double const off = WrittenDigitsOff(static_cast<float>(value), number);
            if (std::fabs(off - 0.5) > 0.01) {
                EXPECT_EQ(off < 0.5, isExactSingle) << text;
            }
        }
    }
}

TEST(ValueLoss, EveryKindIsCounted) {
    test::CClassicLocale const classic;
    struct Case {
        char const* name;
        std::string text;
        char const* losses;
        int label = -1;
    };
    for (Case const& c : std::vector<Case>{
             {"in.xyz", "1.5 2.5 3.5\n6200000.12 43968.18559 1\n", "rounded 2"},
             {"in.csv", "X,Y,Z,Q\n1,2,4,5.5\n1,2,,5.5\n,2,3,4.5\n1,2,3,\n",
              "with_fraction 2, rows_with_fewer_values 3, shifted 2"},
             {"in.xyz", "1 2 3\n1\t\t3\t4\n1,  2,  3\n  1   2   3\n\t1\t2\t3\n", "shifted 2"},
             {"in.csv", "X,Y,Z\n1,\"54,321.5\",2\n1,\"5\",2\n", "rows_with_fewer_values 1, split 1"},
             {"in.xyz", "1 2 3 4\n1,5 2,5\n", "split 1"},
             {"in.csv", "1,2.5,3\n4,5.5,6\n", "skipped_rows 1"},
             {"in.csv", "title of LINE 3\n1,2.5,3\n4,5.5,6\n7,8.5,9\n", "skipped_rows 1"},
             {"in.csv", "R,L,M\na b,L1,5\na b,L1,6\nc,L2,7\n", "doubtful_names 2", 1},
             {"in.csv", "L,M,N\n\"L 1\",5,6\n", "with_rest 0", 0},
             {"in.xyz", "Line East\n1 2\n3 4\n", "doubtful_names 1"},
             {"in.xyz", "Line 10\n1 2\n3 pipeline\n3 4\n", "doubtful_names 1"},
             {"in.xyz", "LINE TIE\n1 2 3\n", ""},
         }) {
        CTemporaryFolder const folder;
        WriteWholeFile(folder / c.name, c.text);
        ImportSettings settings;
        if (c.label >= 0) {
            TextPreview preview;
            ASSERT_TRUE(ReadTextPreview(folder / c.name, "", preview));
            CColumnTextDraft draft(std::move(preview));
            draft.SetLabelColumn(c.label);
            settings = draft.Settings();
        }
        std::string const losses = Losses(Import(folder / c.name, folder / "out.nvt", std::move(settings)));
        if (std::string_view(c.losses) == "with_rest 0") {
            EXPECT_NE(losses.find("doubtful_names"), std::string::npos) << c.text << losses;
        } else {
            EXPECT_EQ(losses, c.losses) << c.text;
        }
    }
}

namespace {

/// A table as people write it, and what each of its cells means.
struct Table {
    std::string name;
    std::string text;
    std::vector<std::vector<std::string>> cells;
    std::vector<std::string> rows;  ///< the same as they stand there
    bool hasHeader = false;
};

Table MakeTable(std::mt19937& random) {
    auto const draw = [&random](int below) { return static_cast<int>(random() % static_cast<unsigned>(below)); };
    Table table;
    int const separatorKind = draw(5);
    char const* const separator = std::array{",", ";", "\t", " ", ", "}[static_cast<std::size_t>(separatorKind)];
    table.name = draw(2) == 0 ? "in.csv" : "in.xyz";
    int const columns = 2 + draw(4);
    int const rows = 3 + draw(60);
    bool const hasHeader = table.hasHeader = draw(2) == 0;
    int const marks = draw(4);
    bool const hasTexts = draw(3) == 0;
    bool const hasEmpty = draw(4) == 0 && separatorKind != 3;  // of blanks, any number separates
    int const surprise = draw(3) == 0 ? draw(rows) : -1;
    std::vector<int> decimals(static_cast<std::size_t>(columns));
    std::vector<int> sizes(static_cast<std::size_t>(columns));
    for (int& d : decimals) d = draw(8);
    for (int& s : sizes) s = draw(9);
    if (hasHeader) {
        for (int c = 0; c < columns; ++c)
            table.text += (c > 0 ? separator : "") + std::string("Name") + std::to_string(c);
        table.text += "\n";
    }
    for (int r = 0; r < rows; ++r) {
        std::vector<std::string> row;
        for (int c = 0; c < columns; ++c) {
            auto const at = static_cast<std::size_t>(c);
            std::string cell;
            if (hasTexts && c == columns - 1) {
                char const* const texts[] = {"basalt", "\"two words\"", "\"a,b\"", "\"x;y\"", "pipeline", "N/A"};
                cell = texts[draw(6)];
            } else if (hasEmpty && draw(10) == 0) {
                cell = "";
            } else if (draw(30) == 0 && marks > 0) {
                char const* const missing[] = {"*", "NaN", "-99999", "1e31"};
                cell = missing[marks];
            } else {
                char text[64];
                double const scale = std::pow(10.0, sizes[at]);
                double const value = (static_cast<double>(random()) / 4294967296.0 - 0.3) * scale;
                std::snprintf(text, sizeof text, "%.*f", decimals[at], value);
                cell = text;
                if (r == surprise) cell += draw(2) == 0 ? ".75" : "123456789";
            }
            row.push_back(cell);
            table.text += (c > 0 ? separator : "") + cell;
        }
        table.text += draw(20) == 0 ? "\r\n" : "\n";
        // A line of blanks is no row to any reader.
        bool const isBlank = std::ranges::all_of(row, &std::string::empty) && *separator == '\t';
        if (isBlank) continue;
        table.rows.push_back(std::accumulate(row.begin() + 1, row.end(), row.front(), [&](std::string all, auto& cell) {
            return std::move(all) + separator + cell;
        }));
        table.cells.push_back(std::move(row));
    }
    return table;
}

bool IsPlainNumber(std::string const& cell) {
    std::size_t const first = cell.starts_with('-') ? 1 : 0;
    return cell.size() > first && cell.find_first_not_of("0123456789.", first) == std::string::npos &&
           std::count(cell.begin(), cell.end(), '.') <= 1 && cell.find_first_of("0123456789") != std::string::npos;
}

/// In upper case, without quotes and blanks at the ends.
std::string Plain(std::string const& text) {
    return ToUpper(Trim(TrimOf(Trim(text), "\"")));
}

/// Whether every number of the table stands in the store, in its row and column, to its last written digit.
bool HoldsEveryNumber(Table const& table, std::string const& storePath) {
    CNorvaFileUtil store;
    if (store.SetFileName(storePath, kReopenStore, nullptr) == 0) return false;
    long rows = 0;
    std::vector<std::pair<int, long>> places;
    for (int profile = 0; profile < store.ProfileCount; ++profile) {
        long const count = store.GetProfileLocationNum(profile, 0);
        for (long i = 0; i < count; ++i) places.emplace_back(profile, i);
        rows += count;
    }
    // Titles that no number stands below are a row of texts.
    long const first = rows - static_cast<long>(table.cells.size());
    if (first < 0 || first > (table.hasHeader ? 1 : 0)) return false;
    bool const isOneText = store.ChannelCount == 1 && table.cells.front().size() > 1;
    for (std::size_t r = 0; r < table.cells.size(); ++r) {
        for (std::size_t c = 0; c < table.cells[r].size(); ++c) {
            std::string const& cell = table.cells[r][c];
            if (!IsPlainNumber(cell)) continue;
            // A separator that these formats do not know leaves the row whole, in one text.
            auto const channel = static_cast<int>(isOneText ? 0 : c);
            float single = 0;
            double number = 0;
            int integer = 0;
            long longInteger = 0;
            std::string text;
            int type = -1;
            if (store.GetData(store.GetFileChanIndex(channel), places[r + static_cast<std::size_t>(first)].first,
                              places[r + static_cast<std::size_t>(first)].second, single, number, integer, longInteger,
                              text, type) == 0) {
                return false;
            }
            if (type == DataType::kText) {
                if (Plain(text) != Plain(isOneText ? table.rows[r] : cell)) return false;
                continue;
            }
            double const stored = type == DataType::kFloat    ? static_cast<double>(single)
                                  : type == DataType::kDouble ? number
                                                              : static_cast<double>(integer);
            std::size_t const point = cell.find('.');
            int const places10 = point == std::string::npos ? 0 : static_cast<int>(cell.size() - point - 1);
            char written[512];
            std::snprintf(written, sizeof written, "%.*f", places10, stored);
            std::string plain = point == cell.size() - 1 ? cell.substr(0, point) : cell;
            if (std::string_view(written) != plain &&
                std::strtod(written, nullptr) != std::strtod(cell.c_str(), nullptr)) {
                return false;
            }
        }
    }
    return true;
}

}  // namespace

TEST(ValueLoss, EveryNumberIsStoredAsWrittenOrCounted) {
    test::CClassicLocale const classic;
    char const* const wanted = std::getenv("NORVA_TEST_TABLES");
    int const tables = wanted != nullptr ? std::atoi(wanted) : 1000;
    std::mt19937 random(11);
    CTemporaryFolder const folder;
    int kept = 0;
    for (int i = 0; i < tables; ++i) {
        Table const table = MakeTable(random);
        WriteWholeFile(folder / table.name, table.text);
        ImportRequest request;
        request.inputPath = folder / table.name;
        request.storePath = folder / "out.nvt";
        request.format = "ASCII XYZ";
        request.replace = true;
        ImportResult result;
        Status const status = ImportFile(request, result);
        if (!status) continue;  // nothing is stored, and why is said
        EXPECT_TRUE(result.report.IsAccounted()) << table.text;
        bool const isHeld = HoldsEveryNumber(table, folder / "out.nvt");
        kept += isHeld ? 1 : 0;
        ASSERT_TRUE(isHeld || result.report.LossCount() > 0) << table.name << " of seed 11, table " << i << "\n"
                                                             << table.text;
    }
    EXPECT_GT(kept, tables / 20);
}

}  // namespace norva::test
