#include "formats/gpx/gpx_table.h"
#include "norva/exchange.h"
#include "norva/formats.h"
#include "norva/inspection.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace norva;

namespace {

std::string RowsOf(std::string const& body, std::string& findings) {
    test::CTemporaryFolder const folder;
    test::WriteWholeFile(folder / "in.gpx", "<gpx>" + body + "</gpx>");
    CGpxTable table;
    Status const status = table.ConvertToXYZ(folder / "in.gpx", folder / "out.csv");
    EXPECT_TRUE(status) << status.Text();
    findings.clear();
    for (InspectionFinding const& finding : table.TakeSource().findings)
        findings += finding.choice + " " + finding.evidence + "\n";
    std::string const text = test::ReadWholeFile(folder / "out.csv");
    EXPECT_TRUE(text.starts_with(CGpxTable::kTitles));
    return text.substr(CGpxTable::kTitles.size());
}

std::string Point(std::string const& values) {
    return "<trkpt lat=\"1.5\" lon=\"-2.25\">" + values + "</trkpt>";
}

}  // namespace

TEST(GpxTable, HasARowForEveryPoint) {
    struct Case {
        char const* what;
        std::string body;
        std::string rows;
        std::string said;
    };
    Case const cases[] = {
        {"whole names, with references",
         "<trk><name>North &amp; \"old\" loop, 2</name><trkseg>" + Point("") + "</trkseg></trk>",
         "\"North & \"\"old\"\" loop, 2\",1.5,-2.25,,,,\n", "1 tracks"},
        {"tracks without a name",
         "<trk>" + Point("") + "</trk><trk><name>A</name>" + Point("") + "</trk><trk>" + Point("") + "</trk>",
         "\"Track 1\",1.5,-2.25,,,,\n\"A\",1.5,-2.25,,,,\n\"Track 3\",1.5,-2.25,,,,\n", "2 without a name"},
        {"two of one name", "<trk><name>A</name>" + Point("") + "</trk><rte><name>A</name>" + Point("") + "</rte>",
         "\"A\",1.5,-2.25,,,,\n\"A_2\",1.5,-2.25,,,,\n", "1 of a name that came before"},
        {"elevation of the second point", "<trk>" + Point("") + Point("<ele>91.5</ele>") + "</trk>",
         "\"Track 1\",1.5,-2.25,,,,\n\"Track 1\",1.5,-2.25,91.5,,,\n", ""},
        {"times, one with a zone",
         "<trk>" + Point("<time>2024-06-14T23:30:05.25Z</time>") + Point("<time>2024-06-14T23:30:05.25-02:00</time>") +
             "</trk>",
         "\"Track 1\",1.5,-2.25,,2024-06-14,23:30:05.25,\n\"Track 1\",1.5,-2.25,,2024-06-15,01:30:05.25,\n", ""},
        {"waypoints and their names",
         "<metadata><name>file</name></metadata><wpt lon='3' lat='4'><name>Gate, old</name></wpt><wpt lat=\"5\" "
         "lon=\"6\"/>",
         "\"Waypoints\",4,3,,,,\"Gate, old\"\n\"Waypoints\",5,6,,,,\n", ""},
        {"what no column takes",
         "<trk>" + Point("<sat>7</sat><hdop>1.2</hdop><ele>none</ele><time>noon</time>") + "</trk>",
         "\"Track 1\",1.5,-2.25,,,,\n", "sat 1, hdop 1, ele 1, time 1"},
        {"a point without position", "<trk>" + Point("") + "<trkpt><ele>1</ele></trkpt></trk>",
         "\"Track 1\",1.5,-2.25,,,,\n", ""},
    };
    for (Case const& c : cases) {
        std::string said;
        EXPECT_EQ(RowsOf(c.body, said), c.rows) << c.what;
        EXPECT_NE(said.find(c.said), std::string::npos) << c.what << ": " << said;
    }
}

/// The proposal's settings import the same file: names, types, lines.
TEST(GpxTable, IsImportedByItsProposal) {
    test::CTemporaryFolder const folder;
    std::string const path = folder / "in.gpx";
    test::WriteWholeFile(path, "<gpx><trk><name>Ridge walk</name>" + Point("") + Point("<ele>91</ele>") +
                                   "</trk><trk>" + Point("<ele>92</ele>") + "</trk></gpx>");
    Inspection found;
    ASSERT_TRUE(InspectFile(path, {}, {}, found));
    EXPECT_TRUE(found.isTable && found.isConverted);
    EXPECT_EQ(found.Doubts(), 0U) << found.Text();
    std::string columns;
    for (NorvaChannelStruct const& column : found.settings.columns)
        columns += column.name + " " + std::to_string(column.dataType) + "\n";
    std::string const ofDouble = std::to_string(DataType::kDouble);
    EXPECT_EQ(columns, "Line " + std::to_string(DataType::kText) + "\nLatitude " + ofDouble + "\nLongitude " +
                           ofDouble + "\nElevation " + ofDouble + "\n");
    ImportResult result;
    Status const status =
        ImportFile({.inputPath = path, .storePath = folder / "out.nvt", .settings = found.settings}, result);
    ASSERT_TRUE(status) << status.Text();
    ASSERT_EQ(result.report.lines.size(), 2U);
    EXPECT_EQ(result.report.lines[0].name, "Ridge walk");
    EXPECT_EQ(result.report.lines[1].name, "Track 2");
    EXPECT_EQ(result.report.LocationCount(), 3U);
    test::WriteWholeFile(path, "<gpx><trk></trk></gpx>");
    Status const empty = InspectFile(path, {}, {}, found);
    EXPECT_NE(empty.Text().find("no points"), std::string::npos) << empty.Text();
}

/// The format of the dates of a gravity meter's dump is found out from all of its blocks.
TEST(ProposedSettings, OfADumpHaveTheFormatOfItsDates) {
    struct Case {
        char const* first;
        char const* second;
        int format;
    };
    for (Case const& c : {Case{"94/08/22", "94/08/23", 1},
                          {"02/03/04", "03/03/04", 1},
                          {"02/08/94", "22/08/94", 3},
                          {"08/22/94", "08/02/94", 5}}) {
        test::CTemporaryFolder const folder;
        std::string dump;
        for (char const* const date : {c.first, c.second}) {
            dump += "----------------------------\n  Line:  100.  Grid: 0.  Job: 1.  Date: " + std::string(date) +
                    "  Operator: 2.\n----------------------------\n Station  Grav.  Time\n  1000. 4286.352 08:08:15\n";
        }
        test::WriteWholeFile(folder / "in.dmp", dump);
        ImportSettings settings;
        Status const status = ProposeSettings(folder / "in.dmp", "Scintrex CG3", settings);
        ASSERT_TRUE(status) << status.Text();
        ASSERT_TRUE(std::holds_alternative<Cg3Settings>(settings));
        EXPECT_EQ(std::get<Cg3Settings>(settings).dateFormat, c.format) << c.first;
    }
}
