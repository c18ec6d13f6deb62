#include "norva/import_report.h"
#include "formats/column_text/text_import_run.h"

#include <map>
#include <random>

namespace norva::test {

namespace {

constexpr int kCleanRows = 40;  // what the column dialog looks at

std::string TextOf(ReportFinding const& finding) {
    std::string text = std::to_string(finding.count);
    for (ReportPlace const& place : finding.places) {
        text += " " + std::to_string(place.line) + ":" + std::to_string(place.column) + "'" + place.text + "'";
    }
    return text;
}

/// The law, and what the store holds, which no count of the report was taken from.
void ExpectAccounted(CTextImportRun const& run, std::string const& input) {
    ImportReport report;
    ASSERT_EQ(GetImportReport(report, 0), 1) << input;
    EXPECT_TRUE(report.IsAccounted()) << input;
    EXPECT_EQ(report.sourceSize, std::filesystem::file_size(report.sourcePath)) << input;
    for (std::size_t i = 0; i < report.channels.size(); ++i) {
        ReportChannel const& channel = report.channels[i];
        if (channel.settings.dataType == DataType::kText) continue;
        std::string const values = " " + run.Values(static_cast<int>(i)) + " ";
        std::uint64_t noData = 0;
        for (std::size_t at = 0; (at = values.find(" - ", at)) != std::string::npos; ++at) ++noData;
        std::uint64_t expected = channel.noData.count + channel.missing.count + channel.outOfRange.count;
        if (channel.settings.displayFormat > DisplayFormat::kExponent) expected += channel.unreadable.count;
        EXPECT_EQ(noData, expected) << channel.settings.name << values << "\n" << input;
    }
}

}  // namespace

TEST(ImportReport, EveryOddityIsCountedWithItsPlace) {
    std::string text = "/ a comment\r\nLINE 10\r\n";
    for (int i = 0; i < kCleanRows; ++i) text += "1 2.5 12:00:00 abc\r\n";
    text +=
        "\r\n"
        "  12abc * 11:59:59 abcdef\r\n"  // line 44
        "99999 \"\" soon abc\r\n"        // 45
        "nil 1e31 12:00:01 abc 8\r\n"    // 46
        "1.5 1e30 12:00:02\r\n"          // 47
        "9 9 9 offline abc\r\n"          // 48, is taken as a marker
        "line 10\n"                      // 49
        "-3 -4.5 1:00:00 a";             // 50
    CTextImportRun run;
    run.acts = "@0;4022;@3;4019;4061=4";  // a short, a text of four
    run.Run(text);
    ImportReport report;
    ASSERT_EQ(GetImportReport(report, 1), 1);
    ASSERT_EQ(report.channels.size(), 4U);
    std::vector<ReportChannel> const& channels = report.channels;
    std::vector<std::pair<ReportFinding, std::string>> const cases = {
        {channels[0].withRest, "1 44:3'12abc'"},
        {channels[0].outOfRange, "1 45:1'99999'"},
        {channels[0].unreadable, "1 46:1'nil'"},
        {channels[0].withFraction, "1 47:1'1.5'"},
        {channels[1].noData, "3 44:9'*' 45:7'\"\"' 47:5'1e30'"},
        {channels[1].outOfRange, "1 46:5'1e31'"},
        {channels[2].backwards, "1 44:11'11:59:59'"},
        {channels[2].unreadable, "1 45:10'soon'"},
        {channels[3].cut, "1 44:20'abcdef'"},
        {channels[3].missing, "1 47:18''"},
        {report.fewerValues, "1 47:1'1.5 1e30 12:00:02'"},
        {report.moreValues, "1 46:1'nil 1e31 12:00:01 abc 8'"},
        {report.doubtfulMarkers, "1 48:1'9 9 9 offline abc'"},
    };
    for (auto const& [finding, expected] : cases) EXPECT_EQ(TextOf(finding), expected);
    EXPECT_EQ(report.LossCount(), 10U);
    EXPECT_EQ((std::pair{channels[0].minimum, channels[0].maximum}), (std::pair{-3.0, 12.0}));
    EXPECT_EQ((std::pair{channels[1].minimum, channels[1].maximum}), (std::pair{-4.5, 2.5}));
    std::map<std::string, std::uint64_t> parts;
    for (ReportPart const& part : report.parts) parts[part.name] = part.count;
    EXPECT_EQ(parts, (decltype(parts){
                         {"empty", 1}, {"comments", 0}, {"markers", 2}, {"data rows", 45}, {"skipped at the top", 2}}));
    ASSERT_EQ(report.lines.size(), 2U);
    EXPECT_EQ(report.lines[0].locations, 44U);
    EXPECT_TRUE(report.lines[1].isRepeated);
    EXPECT_EQ(report.lines[1].sourceLine, 50U);
    EXPECT_EQ(report.sourceSha256.size(), 64U);
    ExpectAccounted(run, text);

    run.acts.clear();
    run.answers = R"(, {"message": "There are no data rows in the file : {dir}/in.xyz", "answer": "ok"})";
    run.Run("LINE 1\n");  // fails: the report of the import before is gone
    EXPECT_EQ(GetImportReport(report, 0), 0);
}

TEST(ImportReport, UntidyTextIsAccountedFor) {
    char const* const pieces[] = {"1",           "-2.5", "1e40",   "*",  "\"\"",     "nan",  "7up", "1e30",
                                  "99999999999", ",",    "\t",     " ",  "\r",       "\n",   "\n",  "\r\n",
                                  "line ",       "/",    "L5",     "\n", "12:00:00", "\xff", "0.1", "9.99999999e29",
                                  "45.10.20.5",  "\\",   "\n1 2 3"};
    std::mt19937 random(7);
    for (int i = 0; i < 150; ++i) {
        std::string text = i % 3 == 0 ? "\xEF\xBB\xBF"
                                        "1 2 3\n"
                                      : "1 2 3 4\n";
        for (int n = 0; n < 60; ++n) text += pieces[random() % std::size(pieces)];
        CTextImportRun run;
        run.fileName = i % 2 == 0 ? "in.xyz" : "in.csv";
        run.formatRow = i % 2;
        if (i % 5 == 0) run.acts = "4073=1";  // skip
        run.Run(text);
        if (run.run.value == 1) ExpectAccounted(run, text);
    }
}

TEST(ImportReport, SamplesAreAccountedFor) {
    struct Case {
        char const* name;
        int row;
        char const* question;
        std::uint64_t losses;  ///< remarks longer than the first ones
    };
    for (Case const& sample :
         {Case{"survey.xyz", 0, "", 6}, Case{"survey.csv", 1, "", 6},
          Case{"seaspy.mag", 8, R"(, {"message": "Do you want to import interpolated coordinates? ", "answer": "no"})",
               0}}) {
        CTextImportRun run;
        run.fileName = sample.name;
        run.formatRow = sample.row;
        run.beforeDialog = sample.question;
        run.Run(ReadWholeFile(NORVA_SAMPLES "/" + std::string(sample.name)));
        ASSERT_EQ(run.run.value, 1) << sample.name;
        ExpectAccounted(run, sample.name);
        ImportReport report;
        GetImportReport(report, 0);
        EXPECT_EQ(report.LossCount(), sample.losses) << sample.name;
    }
}

}  // namespace norva::test
