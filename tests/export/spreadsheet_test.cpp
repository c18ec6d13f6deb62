#include "export/spreadsheet.h"
#include "export_run.h"

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

TEST(Spreadsheet, RecordsByteForByte) {
    CSpreadsheet sheet;
    EXPECT_EQ(BytesOf(sheet), kBof + kEof);
    sheet.Cell(0, 0).SetText("LINE");
    CSpreadsheet::CCellRef number = sheet.Cell(2, 1);
    number.SetNumber(1.5);
    number.SetFormatIndex(3);
    std::string const label("\x04\x00\x0C\x00\x00\x00\x00\x00\x00\x00\x00\x04LINE", 16);
    std::string const value("\x03\x00\x0F\x00\x02\x00\x01\x00\x00\x03\x00\x00\x00\x00\x00\x00\x00\xF8\x3F", 19);
    EXPECT_EQ(BytesOf(sheet), kBof + value + label + kEof);
    sheet.Cell(0, 0).SetText(std::string(300, 'x'));
    std::string const longest("\x04\x00\x07\x01\x00\x00\x00\x00\x00\x00\x00\xFF", 12);
    EXPECT_EQ(BytesOf(sheet), kBof + value + longest + std::string(255, 'x') + kEof);
    CSpreadsheet far;
    far.Cell(0x10002, 3).SetText("a");
    EXPECT_EQ(BytesOf(far), kBof +
                                std::string("\x04\x00\x09\x00\x02\x00\x03\x00\x00\x00\x00\x01"
                                            "a",
                                            13) +
                                kEof);
}

TEST(Spreadsheet, AnotherProgramReadsTheRowsOfAnExport) {
    CTemporaryFolder folder;
    ASSERT_TRUE(WriteSampleStore(folder / "s.nvt"));
    // Columns stand in the store's order, whatever the order of choosing.
    PlayRun const run = Export(folder, "out.xls", R"({"click": 4007}, {"double": 4001, "row": 4},
        {"double": 4001, "row": 0}, {"click": 4015}, {"click": 4046}, {"click": 1})");
    ASSERT_EQ(run.value, 1) << run.failure;
    if (std::system("command -v libreoffice >/dev/null 2>&1") != 0) GTEST_SKIP() << "libreoffice is not installed";
    std::string const command = "HOME='" + folder.Path() + "' libreoffice --headless --convert-to csv --outdir '" +
                                folder.Path() + "' '" + (folder / "out.xls") + "' >/dev/null 2>&1";
    ASSERT_EQ(std::system(command.c_str()), 0);
    std::string const text = ReadWholeFile(folder / "out.csv");
    EXPECT_TRUE(text.starts_with("LINE,POINT_ID,X,Station\nL10,1_1,1000,S0\nL10,1_2,*,*\n")) << text;
}

TEST(Spreadsheet, ASheetBeyondItsReadersIsAskedAboutBeforeAnythingIsTouched) {
    CTemporaryFolder folder;
    StoreSample sample;
    sample.lines = {{"A", 16383}};
    sample.channels = {{{"X", "", DataType::kShort, 0, 0, 1, 0, 2, -1, 0}, std::string(2 * 16383, '\0')}};
    CNorvaFileUtil store;
    ASSERT_TRUE(WriteSample(store, folder / "s.nvt", sample));
    WriteWholeFile(folder / "out.xls", "older");
    std::string const question =
        R"(, {"message": "The sheet will have 16385 rows and 1 columns.\nPrograms that read this format hold at most )"
        R"(16384 rows and 256 columns.\nDo you want to write it?", "answer": ")";
    std::string const all = R"({"click": 4007}, {"click": 4011}, {"click": 1})";
    PlayRun const refused = Export(folder, "out.xls", all, question + "no\"}");
    EXPECT_EQ(refused.failure, "");
    EXPECT_EQ(refused.value, 0);
    EXPECT_EQ(ReadWholeFile(folder / "out.xls"), "older");
    EXPECT_EQ(Export(folder, "out.xls", all, question + "yes\"}").value, 1);
    // With the label in a column of its own it fits.
    PlayRun const fits =
        Export(folder, "out.xls", R"({"click": 4007}, {"click": 4011}, {"click": 4015}, {"click": 1})");
    EXPECT_EQ(fits.failure, "");
    EXPECT_EQ(fits.value, 1);
}

}  // namespace
}  // namespace norva
