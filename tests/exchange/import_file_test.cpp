#include "norva/column_text.h"
#include "norva/contents.h"
#include "norva/exchange.h"
#include "norva/import_export.h"
#include "support/play.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace norva::test {
namespace {

/// The same choice made twice: by settings, and by what a person does in the windows.
struct SameImport {
    char const* what;
    char const* sample;
    char const* format;   ///< label in the format list
    int row;              ///< in the format list
    char const* answers;  ///< of the windows after the save dialog
    ImportSettings settings;
};

std::string WindowsScript(SameImport const& same) {
    return R"j({"operation": "import", "level": 1, "answers": [
              {"dialog": 4063, "do": [{"select": "Formats", "row": )j" +
           std::to_string(same.row) + R"j(}, {"click": 1}]},
              {"open": "{dir}/{sample}"}, {"save": "{dir}/windows.nvt"})j" +
           same.answers + "]}";
}

/// The settings of a sample of column text, changed without its window.
template <typename Change>
ColumnTextSettings TextSettings(char const* sample, Change const& change) {
    TextPreview preview;
    Status status = ReadTextPreview(std::string(NORVA_SAMPLES "/") + sample, "", preview);
    EXPECT_TRUE(status) << status.Text();
    CColumnTextDraft draft(std::move(preview));
    status = change(draft);
    EXPECT_TRUE(status) << status.Text();
    return draft.Settings();
}

/// What a person does in "Import: Set Channels" below.
Status ChangeSurvey(CColumnTextDraft& draft) {
    Status status = draft.TakeHeaderLine(1, draft.UsualDelimiters());
    if (status) status = draft.SetType(0, ColumnType::Double);
    if (status) status = draft.SetType(9, ColumnType::Text);
    if (status) status = draft.SetTextSize(9, 12);
    if (status) status = draft.SetType(5, ColumnType::Skipped);
    draft.SetName(1, "North");
    draft.SetUnits(1, "ft");
    return status;
}

Status ChangeCsv(CColumnTextDraft& draft) {
    draft.SetLabelColumn(0);
    Status status = draft.SetSkip(3);
    return status ? draft.SetType(1, ColumnType::Long) : status;
}

Status KeepAll(CColumnTextDraft&) {
    return {};
}

std::vector<SameImport> SameImports() {
    using Format = RecordChannel::Format;
    std::vector<RecordChannel> const base{{"Time", "", Format::Double, DataType::kDouble},
                                          {"Mag", "nT", Format::Float, DataType::kDouble},
                                          {"Ch3", "", Format::Int16, DataType::kLong}};
    std::string const base4004 = R"j(, {"dialog": 4004, "do": [
        {"set": "Number of Channels in a record:", "to": "3"}, {"click": "Set"},
        {"select": "Channels:", "row": 0}, {"click": "64-bit float"}, {"click": "Set for Selected"},
        {"select": "Channels:", "row": 1}, {"click": "32-bit float"},
        {"click": "Float point (double precision)"}, {"click": "Set for Selected"},
        {"select": "Channels:", "row": 2}, {"click": "16-bit integer (signed)"},
        {"click": "Long Integer (4 bytes)"}, {"click": "Set for Selected"},
        {"edit": "Channels:", "row": 0, "column": 1, "to": "Time"},
        {"edit": "Channels:", "row": 1, "column": 1, "to": "Mag"},
        {"edit": "Channels:", "row": 1, "column": 2, "to": "nT"})j";
    static std::string const baseAll = base4004 + R"j(, {"click": 1}]})j";
    static std::string const baseCut = base4004 + R"j(, {"set": "Total Records in File:", "to": "250"},
        {"set": "Split into lines at (points)", "to": "100"}, {"set": "Sampling Frequency (Hz):", "to": "10"},
        {"click": 1}]})j";
    static std::string const baseNone = base4004 + R"j(, {"set": "Total Records in File:", "to": "-5"},
        {"click": "Add Fiducial Channel"}, {"click": 1}]})j";
    GbnSettings chosen;
    chosen.channels = std::vector<int>{1, 2, 4};
    chosen.lines = std::vector<int>{0, 2};
    chosen.changes = {{1, "North", "m", {}}, {2, {}, {}, DataType::kLong}};
    chosen.lineNames = {{2, "last"}};
    chosen.fiducial = false;
    Cg3Settings dump;
    dump.columns = std::vector<int>{1, 8, 9, 10};
    dump.sortByTime = false;
    dump.timeFormat = 0;
    return {
        {"CG3 as the window opens",
         "cg3.dmp",
         "Scintrex CG3",
         5,
         R"j(, {"dialog": 4062, "do": [{"click": 4079}]})j",
         {}},
        {"CG3, other columns", "cg3.dmp", "Scintrex CG3", 5,
         R"j(, {"dialog": 4062, "do": [{"select": 4075, "rows": [0, 2]}, {"click": "<"},
            {"select": 4074, "rows": [7]}, {"click": ">"}, {"set": 4081, "to": 0},
            {"set": 4082, "to": false}, {"click": 4079}]})j",
         dump},
        {"GBN as the window opens",
         "survey.gbn",
         "Geosoft GBN",
         4,
         R"j(, {"dialog": 4059, "do": [{"click": 1}]})j",
         {}},
        {"GBN, some of it", "survey.gbn", "Geosoft GBN", 4,
         R"j(, {"dialog": 4059, "do": [{"tick": "Channels:", "row": 0, "on": false},
            {"tick": "Channels:", "row": 3, "on": false}, {"tick": "Lines:", "row": 1, "on": false},
            {"edit": "Channels:", "row": 1, "column": 2, "to": "North"},
            {"edit": "Channels:", "row": 1, "column": 3, "to": "m"},
            {"edit": "Lines:", "row": 2, "column": 2, "to": "last"}, {"select": "Channels:", "row": 2},
            {"click": "Set for Selected"}, {"click": "Import Fiducial as a separate channel"}, {"click": 1}]})j",
         chosen},
        {"records, all", "base.bin", "Binary XYZ", 3, baseAll.c_str(), RecordSettings{base, {}, {}, true, 1}},
        {"records, some", "base.bin", "Binary XYZ", 3, baseCut.c_str(), RecordSettings{base, 250, 100, true, 10}},
        {"records, none", "base.bin", "Binary XYZ", 3, baseNone.c_str(), RecordSettings{base, 0, 600, false, 1}},
        {"TKI", "airborne.p01", "Tarko", 9, "", {}},
        {"XYZ as the window opens", "survey.xyz", "ASCII XYZ", 0, R"j(, {"dialog": 4003, "do": [{"click": 1}]})j", {}},
        {"XYZ, changed", "survey.xyz", "ASCII XYZ", 0,
         R"j(, {"dialog": 4003, "do": [{"double": "File Header", "row": 1},
            {"select": "Data Preview", "column": 0}, {"click": 4021},
            {"select": "Data Preview", "column": 9}, {"click": 4019}, {"set": 4061, "to": "12"},
            {"select": "Data Preview", "column": 5}, {"click": 4024},
            {"select": "Data Preview", "column": 1}, {"set": "Name:", "to": "North"}, {"set": "Units:", "to": "ft"},
            {"click": 1}]}, {"message": "Do you want to change the column labels?", "answer": "yes"})j",
         TextSettings("survey.xyz", ChangeSurvey)},
        {"CSV as the window opens", "survey.csv", "ASCII CSV", 1, R"j(, {"dialog": 4003, "do": [{"click": 1}]})j", {}},
        {"CSV, labels and rows skipped", "survey.csv", "ASCII CSV", 1,
         R"j(, {"dialog": 4003, "do": [{"select": "Data Preview", "column": 0}, {"click": 4025},
            {"set": 4073, "to": "3"}, {"select": "Data Preview", "column": 1}, {"click": 4023}, {"click": 1}]})j",
         TextSettings("survey.csv", ChangeCsv)},
        {"IPR_12", "ipr12.dmp", "Scintrex IPR_12", 7, R"j(, {"dialog": 4003, "do": [{"click": 1}]})j",
         TextSettings("ipr12.dmp", KeepAll)},
        {"SeaSPY", "seaspy.mag", "SeaSPY(Marine Magnetics)", 8,
         R"j(, {"message": "Do you want to import interpolated coordinates? ", "answer": "yes"},
            {"dialog": 4003, "do": [{"select": "Data Preview", "column": 7}, {"click": 4024}, {"click": 1}]})j",
         SeaSpySettings{
             TextSettings("seaspy.mag", [](CColumnTextDraft& draft) { return draft.SetType(7, ColumnType::Skipped); })
                 .columns,
             true}},
        {"GPX", "tracks.gpx", "GPS Exchange Format(GPX)", 10, R"j(, {"dialog": 4003, "do": [{"click": 1}]})j",
         TextSettings("tracks.gpx", KeepAll)},
    };
}

TEST(ImportFile, MakesTheStoreThatTheWindowsMake) {
    for (SameImport const& same : SameImports()) {
        CTemporaryFolder const folder;
        std::filesystem::copy_file(std::string(NORVA_SAMPLES "/") + same.sample, folder / same.sample);
        PlayRun const run = Play(WindowsScript(same), {{"dir", folder.Path()}, {"sample", same.sample}});
        EXPECT_EQ(run.failure, "") << same.what;
        ASSERT_EQ(run.value, 1) << same.what << ": " << GetLastErrorText();
        ImportReport byWindows;
        ASSERT_EQ(GetImportReport(byWindows, 0), 1) << same.what;

        ImportRequest request;
        request.inputPath = folder / same.sample;
        request.storePath = folder / "file.nvt";
        request.settings = same.settings;
        ImportResult result;
        Status const status = ImportFile(request, result);
        ASSERT_TRUE(status) << same.what << ": " << status.Text();
        EXPECT_TRUE(result.messages.empty()) << same.what << ": " << result.messages.front();
        EXPECT_TRUE(ReadWholeFile(folder / "file.nvt") == ReadWholeFile(folder / "windows.nvt")) << same.what;
        EXPECT_EQ(result.report.LossCount(), byWindows.LossCount()) << same.what;
        EXPECT_EQ(result.report.format, same.format) << same.what;
        EXPECT_TRUE(result.report.IsAccounted()) << same.what;

        // What the import ran by makes the same store once more.
        request.settings = result.settings;
        request.replace = true;
        ASSERT_TRUE(ImportFile(request, result)) << same.what;
        EXPECT_TRUE(ReadWholeFile(folder / "file.nvt") == ReadWholeFile(folder / "windows.nvt")) << same.what;
        EXPECT_EQ(result.settings, request.settings) << same.what;
        EXPECT_EQ(folder.Count(), 3U) << same.what;
    }
}

TEST(ImportFile, SaysWhichSettingDoesNotFit) {
    using Format = RecordChannel::Format;
    RecordChannel const field{"Mag", "nT", Format::Float, DataType::kFloat};
    struct Case {
        char const* sample;
        ImportSettings settings;
        char const* reason;
    };
    std::vector<RecordChannel> const tooMany(10001, field);
    for (Case const& c : std::vector<Case>{
             {"base.bin", {}, "name, format and data type of each channel are needed"},
             {"base.bin", GbnSettings{}, "those of another format"},
             {"base.bin", RecordSettings{.channels = tooMany}, "10000 channels at most, not 10001"},
             {"base.bin", RecordSettings{.channels = {field, {}}}, "Channel 2 \"\": it has no name"},
             {"base.bin", RecordSettings{.channels = {field, {"Q"}}}, "Channel 2 \"Q\": it has no format"},
             {"base.bin", RecordSettings{.channels = {{"T", "", Format::Int16, DataType::kText}}}, "data type is 4"},
             {"base.bin", RecordSettings{.channels = {field}, .records = -1}, "number of records is -1"},
             {"base.bin", RecordSettings{.channels = {field}, .records = 0}, "no records"},
             {"base.bin", RecordSettings{.channels = {field}, .pointsPerLine = 0}, "points per line is 0"},
             {"base.bin", RecordSettings{.channels = {field}, .frequency = 0}, "frequency is 0 Hz"},
             {"survey.gbn", Cg3Settings{}, "those of another format"},
             {"survey.gbn", GbnSettings{.lines = std::vector<int>{0, 3}}, "no line at place 3; the file has 3"},
             {"survey.gbn", GbnSettings{.lines = std::vector<int>{}}, "At least one line"},
             {"survey.gbn", GbnSettings{.channels = std::vector<int>{-1}}, "no channel at place -1; the file has 5"},
             {"survey.gbn", GbnSettings{.changes = {{5, "X", {}, {}}}}, "no channel at place 5"},
             {"survey.gbn", GbnSettings{.changes = {{0, "", {}, {}}}}, "Channel 1 has no name"},
             {"survey.gbn", GbnSettings{.changes = {{0, {}, {}, 9}}}, "Channel \"X\": its data type is 9"},
             {"survey.gbn", GbnSettings{.lineNames = {{7, "x"}}}, "no line at place 7"},
             {"cg3.dmp", Cg3Settings{.columns = std::vector<int>{11}}, "no column 12; the dump has 11"},
             {"cg3.dmp", Cg3Settings{.columns = std::vector<int>{}}, "No column is chosen"},
             {"cg3.dmp", Cg3Settings{.dateFormat = 8}, "no date format 8"},
             {"cg3.dmp", Cg3Settings{.timeFormat = -1}, "no time format -1"},
             {"airborne.p01", GbnSettings{}, "those of another format"},
             {"survey.xyz", GbnSettings{}, "those of another format"},
             {"seaspy.mag", ColumnTextSettings{}, "those of another format"},
             {"survey.xyz", ColumnTextSettings{.skip = 3, .columns = {4, NorvaChannelStruct{}}},
              "4 columns are set, but line 4, the first row, has 10: "},
             {"survey.xyz", ColumnTextSettings{.skip = 40}, "Of its first 40 lines with text, 40 cannot be skipped."},
             {"survey.xyz", ColumnTextSettings{.columns = {10, {.name = "M", .units = "", .dataType = 7}}},
              "Column 1 (\"M\"): there is no data type 7"},
             {"survey.xyz",
              ColumnTextSettings{.columns = {10, {.name = "T", .units = "", .dataType = 4, .arraySize = 0}}},
              "1 character at least"},
             {"survey.xyz", ColumnTextSettings{.columns = {10, NorvaChannelStruct{}}, .labelColumn = 10},
              "no column 11 to take the names"},
             {"seaspy.mag", SeaSpySettings{{16, NorvaChannelStruct{}}},
              "Column 1 of such a log cannot be of the type float"},
         }) {
        CTemporaryFolder const folder;
        ImportRequest request;
        request.inputPath = std::string(NORVA_SAMPLES "/") + c.sample;
        request.storePath = folder / "out.nvt";
        request.settings = c.settings;
        ImportResult result;
        Status const status = ImportFile(request, result);
        EXPECT_FALSE(status) << c.reason;
        EXPECT_EQ(status.Path(), request.inputPath) << c.reason;
        EXPECT_NE(status.Reason().find(c.reason), std::string::npos) << c.reason << ": " << status.Text();
        EXPECT_EQ(folder.Count(), 0U) << c.reason;
    }
}

TEST(ImportFile, TellsEveryPassOverTextAndCanBeCancelledThere) {
    std::string text = "LINE 7\n";
    for (int i = 0; i < 3000; ++i) text += std::to_string(i % 10) + " 1.5 2.5\n";
    CTemporaryFolder const folder;
    WriteWholeFile(folder / "in.xyz", text);
    for (int const label : {-1, 0}) {
        ImportRequest request{.inputPath = folder / "in.xyz", .storePath = folder / "out.nvt"};
        ColumnTextSettings settings = TextSettings("survey.xyz", [](CColumnTextDraft&) { return Status(); });
        settings.columns.resize(3);
        settings.labelColumn = label;
        request.settings = settings;
        // In which step the callback cancels, and from which percentage on.
        for (auto const& [step, percent] :
             {std::pair("Getting line information from the file", 0), std::pair("Loading data from the file", 50),
              std::pair("Import", 50), std::pair("Writting down data to file", 50)}) {
            request.progress = [&, step = step, percent = percent](ExchangeProgress const& progress) {
                return progress.step != step || progress.percent < percent;
            };
            ImportResult result;
            Status const status = ImportFile(request, result);
            EXPECT_TRUE(status.IsCancelled()) << step << ", lines by " << label << ": " << status.Text();
            EXPECT_EQ(folder.Count(), 1U) << step;
        }
    }
}

TEST(Contents, ListWhatSettingsChooseFrom) {
    GbnListing gbn;
    ASSERT_TRUE(ListGbnFile(NORVA_SAMPLES "/survey.gbn", gbn));
    std::string listed;
    for (NorvaChannelStruct const& channel : gbn.channels) listed += channel.name + " " + ValueTypeText(channel) + ", ";
    for (auto const& line : gbn.lines) listed += line.name + " " + std::to_string(line.locations) + ", ";
    EXPECT_EQ(listed,
              "X double, Y double, Mag float, Sat short, Note text of 8 characters, "
              "1:2000 40, 2:2010 44, 3:2020 48, ");
    Cg3Listing cg3;
    ASSERT_TRUE(ListCg3File(NORVA_SAMPLES "/cg3.dmp", cg3));
    ASSERT_EQ(cg3.columns.size(), 11U);
    EXPECT_EQ(cg3.columns[8], "# Rej");
    EXPECT_EQ(cg3.usual, (std::vector<int>{0, 1, 6, 9, 10}));
    EXPECT_FALSE(ListCg3File(NORVA_SAMPLES "/survey.gbn", cg3));
    EXPECT_FALSE(ListGbnFile(NORVA_SAMPLES "/none.gbn", gbn));
    for (char const* name : {"int32", "float", "double", "int16"}) {
        ASSERT_TRUE(FindRecordFormat(name)) << name;
        EXPECT_EQ(RecordFormatName(*FindRecordFormat(name)), name);
    }
    EXPECT_FALSE(FindRecordFormat(""));
}

}  // namespace
}  // namespace norva::test
