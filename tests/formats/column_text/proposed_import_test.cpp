#include "inspection/generated_table.h"
#include "inspection/row_adaptor.h"
#include "inspection/source_lines.h"
#include "norva/exchange.h"
#include "norva/inspection.h"
#include "support/classic_locale.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace norva::test {

namespace {

namespace fs = std::filesystem;

/// What the reader of rows hands out, as texts: the value of each channel, and the line of the survey.
struct ReadRows : IAdaptedSink {
    std::vector<NorvaChannelStruct> channels;
    std::vector<std::string> rows{};
    std::string label{};

    bool Row(AdaptedRow const& row) override {
        std::string text = "[" + (row.label.empty() ? label : std::string(row.label)) + "]";
        if (!row.label.empty()) label = row.label;
        for (std::size_t i = 0; i < row.cells.size(); ++i) {
            AdaptedCell const& cell = row.cells[i];
            using What = AdaptedCell::What;
            bool const isSingle = channels[i].dataType == DataType::kFloat;
            text += ' ';
            if (cell.what == What::Text) text += cell.text;
            if (cell.what == What::Value) text += Fixed(isSingle ? static_cast<float>(cell.value) : cell.value, 3);
            if (cell.what == What::Missing || cell.what == What::Unreadable) text += '*';
        }
        rows.push_back(text);
        return true;
    }
    bool Line(LineView const& line) override {
        if (line.kind == TableLine::Marker) label = line.label;
        return true;
    }
};

/// The rows of a store in the same form.
std::vector<std::string> StoredRows(std::string const& path) {
    CNorvaFileUtil store;
    std::vector<std::string> rows;
    if (store.SetFileName(path, kReopenStore, nullptr) == 0) return {"no store"};
    for (int profile = 0; profile < store.ProfileCount; ++profile) {
        std::string name;
        long count = 0;
        int flag = 0;
        store.GetProfileInfo(profile, name, count, flag);
        for (long location = 0; location < count; ++location) {
            std::string text = "[" + (name.starts_with("LINE") ? "" : name) + "]";
            for (int channel = 0; channel < store.ChannelCount; ++channel) {
                float single = 0;
                double number = 0;
                int integer = 0, type = 0;
                long longInteger = 0;
                std::string cell;
                store.GetData(channel, profile, location, single, number, integer, longInteger, cell, type);
                if (type == DataType::kFloat) number = single;
                if (type == DataType::kLong || type == DataType::kShort) number = integer;
                bool const isMissing = type == DataType::kShort  ? integer == kNoDataShort
                                       : type == DataType::kLong ? integer == kNoDataLong
                                                                 : number > 0.9e30;
                text += ' ' + (type == DataType::kText ? cell : isMissing ? "*" : Fixed(number, 3));
            }
            rows.push_back(text);
        }
    }
    return rows;
}

/// Proposes, imports and compares; gives the result.
ImportResult ExpectStoredAsRead(std::string const& path, std::string const& storePath) {
    Inspection proposal;
    EXPECT_TRUE(InspectTextFile(path, {}, proposal)) << path;
    ReadRows read;
    read.channels = proposal.settings.columns;
    CSourceLines source;
    EXPECT_TRUE(source.Open(path));
    CRowAdaptor adaptor(proposal.settings, read);
    std::string_view line;
    while (source.Next(line)) adaptor.Feed(line, source.Number());
    adaptor.Finish();

    ImportResult result;
    ImportRequest request{.inputPath = path, .storePath = storePath, .format = "ASCII XYZ"};
    request.settings = proposal.settings;
    request.replace = true;
    Status const status = ImportFile(request, result);
    EXPECT_EQ(status.IsGood(), proposal.counts.rows > 0) << path << status.Text();
    if (!status) return result;
    EXPECT_EQ(result.messages, std::vector<std::string>());
    std::vector<std::string> stored = StoredRows(storePath);
    // Trailing blanks of a text are not kept, and a row's last cell may be one.
    for (std::vector<std::string>* rows : {&stored, &read.rows}) {
        for (std::string& row : *rows) row.erase(row.find_last_not_of(' ') + 1);
    }
    EXPECT_EQ(stored, read.rows) << path;

    InspectionCounts const& counts = proposal.counts;
    EXPECT_TRUE(result.report.IsAccounted()) << path;
    EXPECT_EQ(result.report.LocationCount(), counts.rows) << path;
    EXPECT_EQ(result.report.unitsRead, counts.lines) << path;
    EXPECT_EQ(result.report.leftOut.count, counts.leftOut + counts.otherTable) << path;
    EXPECT_EQ(result.report.mended.count, counts.mended) << path;
    EXPECT_EQ(result.report.sourceSize, fs::file_size(path)) << path;
    return result;
}

}  // namespace

TEST(ImportByReading, StoresWhatTheInspectionReads) {
    test::CClassicLocale const classic;
    CTemporaryFolder const folder;
    for (fs::directory_entry const& entry : fs::directory_iterator(NORVA_TEST_DATA "/inspection")) {
        if (entry.path().extension() != ".golden") ExpectStoredAsRead(entry.path().string(), folder / "out.nvt");
    }
    for (int i = 0; i < 3 * CTableMaker::kLayouts; ++i) {
        GeneratedTable const table = CTableMaker(77 + static_cast<std::uint64_t>(i)).Make(i % CTableMaker::kLayouts);
        std::string const path = folder / ("table" + table.extension);
        WriteWholeFile(path, table.bytes);
        ExpectStoredAsRead(path, folder / "out.nvt");
    }
}

TEST(ImportByReading, CountsEveryLineOfEveryEncoding) {
    test::CClassicLocale const classic;
    std::string const text = "Line,X,Note\nL1,1.5,a\nL1,2.5,\"b\nc\"\n\nL2,3.5,d\nTotal: 3\n";
    std::string wide = "\xFF\xFE";
    for (char const c : text) wide += {c, '\0'};
    CTemporaryFolder const folder;
    for (std::string const& bytes : {text, "\xEF\xBB\xBF" + text, text + "\x1A", wide}) {
        WriteWholeFile(folder / "in.csv", bytes);
        ImportResult const result = ExpectStoredAsRead(folder / "in.csv", folder / "out.nvt");
        EXPECT_EQ(result.report.lines.size(), 2U);
        EXPECT_EQ(result.report.LossCount(), 1U);
    }
}

TEST(ImportByReading, ChangedTypesAreToldWhatTheyLose) {
    test::CClassicLocale const classic;
    CTemporaryFolder const folder;
    WriteWholeFile(folder / "in.csv", "A,B,C\n1.5,70000,long text\n2.0,5,x\n");
    Inspection proposal;
    ASSERT_TRUE(InspectTextFile(folder / "in.csv", {}, proposal));
    ImportRequest request{.inputPath = folder / "in.csv", .storePath = folder / "out.nvt"};
    proposal.settings.columns[0].dataType = DataType::kShort;
    proposal.settings.columns[1].dataType = DataType::kShort;
    proposal.settings.columns[2].arraySize = 4;
    request.settings = proposal.settings;
    ImportResult result;
    ASSERT_TRUE(ImportFile(request, result));
    EXPECT_EQ(result.report.channels[0].withFraction.count, 1U);
    EXPECT_EQ(result.report.channels[1].outOfRange.count, 1U);
    EXPECT_EQ(result.report.channels[2].cut.count, 1U);
    EXPECT_EQ(result.report.channels[2].cut.places.at(0).column, 11U);

    // Settings that do not fit together are refused before anything is made.
    proposal.settings.columnReadings.pop_back();
    request.settings = proposal.settings;
    request.replace = true;
    std::string const before = ReadWholeFile(folder / "out.nvt");
    EXPECT_EQ(ImportFile(request, result).What(), "The settings do not fit together");
    EXPECT_EQ(ReadWholeFile(folder / "out.nvt"), before);
}

}  // namespace norva::test
