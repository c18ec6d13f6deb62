#include "formats/worksheet/spreadsheet.h"
#include "exchange/export_run.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace norva {
namespace {

using namespace test;

std::string BytesOf(CSpreadsheet const& sheet) {
    std::string bytes;
    auto const sink = [](void* out, std::string_view part) {
        static_cast<std::string*>(out)->append(part);
        return true;
    };
    EXPECT_TRUE(sheet.Write(sink, &bytes));
    return bytes;
}

std::string const kBof("\x09\x00\x04\x00\x02\x00\x10\x00", 8);
std::string const kEof("\x0A\x00\x00\x00", 4);
std::string const kLabel("\x04\x00\x0C\x00\x00\x00\x00\x00\x00\x00\x00\x04LINE", 16);
std::string const kNumber("\x03\x00\x0F\x00\x02\x00\x01\x00\x00\x03\x00\x00\x00\x00\x00\x00\x00\xF8\x3F", 19);

TEST(Spreadsheet, RecordsByteForByte) {
    CSpreadsheet sheet;
    EXPECT_EQ(BytesOf(sheet), kBof + kEof);
    sheet.Cell(0, 0).SetText("LINE");
    CSpreadsheetCell number = sheet.Cell(2, 1);
    number.SetNumber(1.5);
    number.SetFormatIndex(3);
    sheet.Cell(0, 3);  // the row grows once a later one has cells
    EXPECT_EQ(BytesOf(sheet), kBof + kNumber + kLabel + kEof);
    sheet.Cell(0, 0).SetText(std::string(300, 'x'));
    std::string const longest("\x04\x00\x07\x01\x00\x00\x00\x00\x00\x00\x00\xFF", 12);
    EXPECT_EQ(BytesOf(sheet), kBof + kNumber + longest + std::string(255, 'x') + kEof);
    CSpreadsheet far;
    far.Cell(0x10002, 3).SetText("");
    EXPECT_EQ(BytesOf(far), kBof + std::string("\x04\x00\x08\x00\x02\x00\x03\x00\x00\x00\x00\x00", 12) + kEof);
}

/// "row,column=text" of every record, "row,column:format=number" for numbers.
std::string CellsOf(std::string const& file) {
    std::string cells;
    auto const byte = [&](std::size_t at) { return static_cast<unsigned char>(file[at]); };
    for (std::size_t at = 0; at + 4 <= file.size(); at += 4U + byte(at + 2)) {
        if (byte(at) != 3 && byte(at) != 4) continue;
        cells += std::to_string(byte(at + 4)) + "," + std::to_string(byte(at + 6));
        if (byte(at) == 4) {
            cells += "=" + file.substr(at + 12, byte(at + 11)) + " ";
            continue;
        }
        double value = 0;
        file.copy(reinterpret_cast<char*>(&value), sizeof value, at + 11);
        cells += ":" + std::to_string(byte(at + 9)) + "=" + nlohmann::json(value).dump() + " ";
    }
    return cells;
}

TEST(Spreadsheet, CellsOfAnExport) {
    CTemporaryFolder folder;
    StoreSample sample = MakeStoreSample();
    sample.channels[0].description.displayFormat = DisplayFormat::kTime;
    ASSERT_TRUE(WriteStore(folder / "s.nvt", sample, {{0, 0}, {0, 2}, {0, 3}, {0, 4}, {1, 0}, {1, 2}}));
    // Columns stand in the store's order, whatever the order of choosing.
    std::string const choose = R"({"click": 4007}, {"double": 4001, "row": 4}, {"double": 4001, "row": 3},
        {"double": 4001, "row": 0}, {"double": 4001, "row": 0}, )";
    ASSERT_EQ(Export(folder, "out.xls", choose + R"({"click": 1})").value, 1);
    EXPECT_EQ(CellsOf(ReadWholeFile(folder / "out.xls")),
              "4,1:3=47994.5 4,2:2=-6.0 0,0=X 0,1=Mag 0,2=Raw 0,3=Station 1,0=LINE L10 2,0=* 2,1=* 2,2=* 2,3=* "
              "3,0=LINE L20 4,0=1001:30:00.00 4,3=S6 ");
    ASSERT_EQ(Export(folder, "out.xls", choose + R"({"click": 4015}, {"click": 4046}, {"click": 1})").value, 1);
    EXPECT_EQ(CellsOf(ReadWholeFile(folder / "out.xls")),
              "2,3:3=47994.5 2,4:2=-6.0 0,0=LINE 0,1=POINT_ID 0,2=X 0,3=Mag 0,4=Raw 0,5=Station 1,0=L10 1,1=1_2 "
              "1,2=* 1,3=* 1,4=* 1,5=* 2,0=L20 2,1=2_2 2,2=1001:30:00.00 2,5=S6 ");

    char const* const readers[][3] = {
        {"libreoffice", " --headless --convert-to csv --outdir '{}' '{}/out.xls'",
         "LINE,POINT_ID,X,Mag,Raw,Station\nL10,1_2,*,*,*,*\nL20,2_2,1001:30:00.00,47994.5,-6,S6\n"},
        // It takes texts only from files with tables of cell formats, and starts at the first cell.
        {"ssconvert", " '{}/out.xls' '{}/out.csv'", "47994.5,-6\n"},
    };
    bool isRead = false;
    for (auto const& [program, arguments, text] : readers) {
        SCOPED_TRACE(program);
        if (std::system((std::string("command -v ") + program + " >/dev/null 2>&1").c_str()) != 0) continue;
        std::string command = std::string("HOME='{}' LC_ALL=C.UTF-8 ") + program + arguments + " >/dev/null 2>&1";
        for (std::size_t at = 0; (at = command.find("{}")) != std::string::npos;) command.replace(at, 2, folder.Path());
        ASSERT_EQ(std::system(command.c_str()), 0);
        EXPECT_EQ(ReadWholeFile(folder / "out.csv"), text);
        std::filesystem::remove(folder / "out.csv");
        isRead = true;
    }
    if (!isRead) GTEST_SKIP() << "no other program to read the sheet is installed";
}

TEST(Spreadsheet, ASheetBeyondItsReadersIsAskedAboutBeforeAnythingIsTouched) {
    CTemporaryFolder folder;
    StoreSample sample;
    sample.lines = {{"A", 16383}};
    sample.channels = {{{"X", "", DataType::kShort, 0, 0, 1, 0, 2, -1, 0}, std::string(2 * 16383, '\0')}};
    ASSERT_TRUE(WriteStore(folder / "s.nvt", sample, {}));
    WriteWholeFile(folder / "out.xls", "older");
    std::string const question =
        R"(, {"message": "The sheet will have 16385 rows and 1 columns.\nPrograms that read this format hold at most )"
        R"(16384 rows and 256 columns.\nDo you want to write it?", "answer": ")";
    EXPECT_EQ(Export(folder, "out.xls", kAll, question + "no\"}").value, 0);
    EXPECT_EQ(ReadWholeFile(folder / "out.xls"), "older");
    EXPECT_EQ(Export(folder, "out.xls", kAll, question + "yes\"}").value, 1);
    // With the label in a column of its own it fits.
    PlayRun const fits =
        Export(folder, "out.xls", R"({"click": 4007}, {"click": 4011}, {"click": 4015}, {"click": 1})");
    EXPECT_EQ(fits.failure, "");
    EXPECT_EQ(fits.value, 1);
}

}  // namespace
}  // namespace norva
