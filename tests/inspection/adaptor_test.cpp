#include "inspection/row_adaptor.h"
#include "norva/inspection.h"
#include "reference_reader.h"
#include "support/classic_locale.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <functional>

using namespace norva;

namespace {

/// Rows as they come, one text per cell: "*" for a missing one, "!" for one that cannot be read.
struct Rows : IAdaptedSink {
    std::vector<std::string> rows;
    std::vector<std::uint64_t> numbers;
    std::vector<std::string> markers;
    std::vector<std::string> labels;
    std::size_t stopAfter = static_cast<std::size_t>(-1);

    bool Row(AdaptedRow const& row) override {
        std::string text;
        for (AdaptedCell const& cell : row.cells) {
            if (!text.empty()) text += " | ";
            char number[40];
            std::snprintf(number, sizeof number, "%.10g", cell.value);
            switch (cell.what) {
                case AdaptedCell::What::Missing:
                    text += "*";
                    break;
                case AdaptedCell::What::Unreadable:
                    text += "!";
                    break;
                case AdaptedCell::What::Value:
                    text += number;
                    break;
                case AdaptedCell::What::Text:
                    text += cell.text;
                    break;
            }
        }
        rows.push_back(text);
        numbers.push_back(row.number);
        labels.emplace_back(row.label);
        return rows.size() < stopAfter;
    }
    bool Line(LineView const& line) override {
        if (line.kind == TableLine::Marker)
            markers.push_back(std::to_string(line.number) + ":" + std::string(line.label));
        return true;
    }
};

void Read(std::string const& path, ColumnTextSettings const& settings, Rows& rows) {
    CSourceLines source;
    ASSERT_TRUE(source.Open(path));
    CRowAdaptor adaptor(settings, rows);
    std::string_view line;
    while (source.Next(line) && adaptor.Feed(line, source.Number())) {
    }
    adaptor.Finish();
}

struct AdaptorCase {
    char const* what;
    std::string bytes;
    std::vector<std::string> rows;
    std::vector<std::uint64_t> numbers{};
    std::vector<std::string> markers{};
};

class InspectionAdaptor : public testing::Test {
protected:
    std::string Write(std::string const& bytes) {
        std::string const path = m_folder / "in.txt";
        test::WriteWholeFile(path, bytes);
        return path;
    }
    Inspection Proposal(std::string const& bytes, InspectionOptions const& options = {}) {
        Inspection found;
        EXPECT_TRUE(InspectTextFile(Write(bytes), options, found));
        return found;
    }
    test::CTemporaryFolder m_folder;
};

}  // namespace

TEST_F(InspectionAdaptor, GivesWhatAStoreTakes) {
    test::CClassicLocale const classic;
    std::vector<AdaptorCase> const cases = {
        {"decimal commas and an empty cell",
         "x;y\n450000,25;1,5\n450001,5;\n",
         {"450000.25 | 1.5", "450001.5 | *"},
         {2, 3}},
        {"marks, and numbers that stand for missing values",
         "A,B\n1.5,-9999\n2.5,-9999\nN/A,7.5\n3.5,8.5\n",
         {"1.5 | *", "2.5 | *", "* | 7.5", "3.5 | 8.5"}},
        {"marker rows keep their lines",
         "Line 10\n1.5 2.5\nTie  20\n3.5 4.5\n",
         {"1.5 | 2.5", "3.5 | 4.5"},
         {2, 4},
         {"1:10", "3:20"}},
        {"quotes", "N,T\n1,\"say \"\"no\"\"\"\n2,\"a, b\"\n3,\n", {"1 | say \"no\"", "2 | a, b", "3 | *"}},
        {"a row over two lines", "\"N\",\"T\"\n\"1\",\"a\nb\"\n\"2\",\"c\"\n", {"1 | a\nb", "2 | c"}, {2, 4}},
        {"a mended row and one that is left out",
         "D,Q,M\n2021-12-31,9,1.5\n2021-12-31,,9,2.5\n2021-12-31,8,3.5\nend of file\n",
         {"2022 | 9 | 1.5", "2022 | 9 | 2.5", "2022 | 8 | 3.5"},
         {2, 3, 4}},
        {"a suffix", "Pt Depth\n1 41.25m\n2 42.5m\n", {"1 | 41.25", "2 | 42.5"}},
        {"date-times in UTC, over midnight", "Time,F\n2021-01-01 00:30:00+01:00,1.5\n", {"2021 | 23.5 | 1.5"}},
        {"epoch seconds", "Epoch,F\n1609459199,1.5\n", {"2021 | 23.99972222 | 1.5"}},
        {"epoch milliseconds", "Epoch,F\n1609459199500,1.5\n", {"2021 | 23.99986111 | 1.5"}},
        {"month first", "Day,G\n12/31/2021,1.5\n", {"2022 | 1.5"}},
        {"compact dates and times",
         "Date,Time\n20211231,123000\n20211231,234500.5\n",
         {"2022 | 12.5", "2022 | 23.75013889"}},
        {"day of the year, and months by name", "A,B\n2021-365,31-Dec-2021\n", {"2022 | 2022"}},
        {"degrees in many forms",
         "A,B,C\n0\xC2\xB0"
         "30'S,12.30.00.0,W12 07.5\n1\xC2\xB0"
         "30'S,12.45.00.0,W12 15.0\n",
         {"-0.5 | 12.5 | -12.125", "-1.5 | 12.75 | -12.25"}},
        {"ddmm.mmmm", "Lat,Lon\n-3530.0,01815.0\n-3545.0,01830.0\n", {"-35.5 | 18.25", "-35.75 | 18.5"}},
        {"Latin-1",
         "S;V\nB\xE4r;1,5\n\xD6"
         "d;2,5\n",
         {"B\xC3\xA4r | 1.5",
          "\xC3\x96"
          "d | 2.5"}},
        {"exponents", "A,B\n1,1.5D-3\n2,2E3\n", {"1 | 0.0015", "2 | 2000"}},
    };
    for (AdaptorCase const& c : cases) {
        SCOPED_TRACE(c.what);
        Inspection const found = Proposal(c.bytes);
        ASSERT_TRUE(CRowAdaptor::CanRead(found.settings));
        Rows rows;
        Read(m_folder / "in.txt", found.settings, rows);
        EXPECT_EQ(rows.rows, c.rows) << found.Text();
        if (!c.numbers.empty()) {
            EXPECT_EQ(rows.numbers, c.numbers);
        }
        EXPECT_EQ(rows.markers, c.markers);
    }
}

TEST_F(InspectionAdaptor, APersonsWordDecides) {
    test::CClassicLocale const classic;
    Inspection found = Proposal("Day,G\n06/05/2024,-99\n06/05/2024,1.5\n", {.dates = "mdy", .noData = {-99}});
    EXPECT_EQ(found.Doubts(), 0U) << found.Text();
    EXPECT_EQ(found.settings.columnReadings[0].order, "mdy");
    EXPECT_EQ(found.settings.columnReadings[1].missing, std::vector<std::string>{"-99"});
    found = Proposal("A,B\n1.5,-9999\n2.5,-9999\n3.5,1.5\n", {.keep = {-9999}});
    EXPECT_TRUE(found.settings.columnReadings[1].missing.empty());
    found = Proposal("Line,A\n1,1.5\n2,2.5\n", {.labelColumn = -1});
    EXPECT_EQ(found.settings.labelColumn, -1);
    found = Proposal("Swath 4\n1.5 2.5\n2.5 3.5\n", {.markerWords = {"swath"}});
    EXPECT_EQ(found.surveyLines, std::vector<std::string>{"4"});
}

TEST_F(InspectionAdaptor, CellsOfAnotherTypeAreReadAnew) {
    test::CClassicLocale const classic;
    Inspection found = Proposal("A,B\n1,x\n2,3.5\n");
    found.settings.columns[0].dataType = DataType::kText;
    found.settings.columns[1].dataType = DataType::kDouble;
    Rows rows;
    Read(m_folder / "in.txt", found.settings, rows);
    EXPECT_EQ(rows.rows, (std::vector<std::string>{"1 | !", "2 | 3.5"}));
}

TEST_F(InspectionAdaptor, EndsWhenTheSinkDoes) {
    test::CClassicLocale const classic;
    Inspection const found = Proposal("A,B\n1,2\n3,4\n5,6\n");
    Rows rows;
    rows.stopAfter = 2;
    Read(m_folder / "in.txt", found.settings, rows);
    EXPECT_EQ(rows.rows.size(), 2U);
}

TEST(InspectionAdaptorSettings, ThatDoNotFitTogetherAreRefused) {
    test::CClassicLocale const classic;
    ColumnTextSettings good;
    good.reading.emplace().width = 1;
    good.columns.resize(1);
    good.columnReadings.resize(1);
    good.looks.resize(1);
    ASSERT_TRUE(CRowAdaptor::CanRead(good));
    std::vector<std::function<void(ColumnTextSettings&)>> const faults = {
        [](auto& s) { s.reading.reset(); },
        [](auto& s) { s.looks.clear(); },
        [](auto& s) { s.columnReadings.clear(); },
        [](auto& s) { s.columnReadings[0].source = 1; },
        [](auto& s) { s.labelColumn = 1; },
        [](auto& s) { s.columnReadings[0].epochDivisor = 0; },
        [](auto& s) { s.columnReadings[0].source = -1; }};
    for (std::size_t i = 0; i < faults.size(); ++i) {
        ColumnTextSettings bad = good;
        faults[i](bad);
        EXPECT_FALSE(CRowAdaptor::CanRead(bad)) << "fault " << i;
    }
}

/// Without quotes, whatever the separator and the blanks around the cells, the cells are those of a plain reader.
TEST_F(InspectionAdaptor, CellsAreThoseOfAPlainReader) {
    test::CClassicLocale const classic;
    rc::check([&] {
        char const separator = *rc::gen::element(',', ';', '\t', '|', ' ');
        auto const rows = *rc::gen::container<std::vector<std::vector<int>>>(
            *rc::gen::inRange(2, 30), rc::gen::container<std::vector<int>>(4, rc::gen::inRange(-99000, 99000)));
        std::string bytes;
        for (auto const& row : rows) {
            for (std::size_t i = 0; i < row.size(); ++i) {
                if (i > 0) bytes += separator;
                bytes +=
                    std::string(static_cast<std::size_t>(*rc::gen::inRange(0, 3)), ' ') + std::to_string(row[i]) + ".5";
            }
            bytes += '\n';
        }
        Inspection const found = Proposal(bytes);
        struct Comparing : IAdaptedSink {
            char separator = ',';
            std::size_t count = 0;
            bool Row(AdaptedRow const& row) override {
                auto const plain = test::PlainCells(row.source, separator);
                RC_ASSERT(plain.size() == row.cells.size());
                for (std::size_t i = 0; i < plain.size(); ++i) {
                    RC_ASSERT(row.cells[i].text == plain[i]);
                    RC_ASSERT(row.cells[i].what == AdaptedCell::What::Missing ||
                              row.cells[i].value == std::stod(plain[i]));
                }
                ++count;
                return true;
            }
            bool Line(LineView const&) override { return true; }
        } comparing;
        comparing.separator = separator;
        CSourceLines source;
        RC_ASSERT(source.Open(m_folder / "in.txt"));
        CRowAdaptor adaptor(found.settings, comparing);
        std::string_view line;
        while (source.Next(line)) adaptor.Feed(line, source.Number());
        adaptor.Finish();
        RC_ASSERT(comparing.count == rows.size());
    });
}

TEST_F(InspectionAdaptor, RefusalsSayWhy) {
    test::CClassicLocale const classic;
    struct {
        std::string bytes;
        char const* reason;
    } const cases[] = {{"", "There is no text in the file"},
                       {"\x1F\x8B\x08", "gzip"},
                       {"PK\x03\x04", "zip"},
                       {"\x1A", "There is no text"},
                       {"A,B\n1,2\n" + std::string(5 << 20, '7'), "a line of more than 4 MB"},
                       {"\xFF\xFE" + std::string(10 << 20, '7'), "a line of more than 4 MB"}};
    for (auto const& c : cases) {
        Inspection found;
        std::string const text = InspectTextFile(Write(c.bytes), {}, found).Text();
        EXPECT_NE(text.find(c.reason), std::string::npos) << text;
    }
    Inspection found;
    EXPECT_EQ(InspectTextFile(m_folder / "none", {}, found).Reason(), "No such file or directory");
}
