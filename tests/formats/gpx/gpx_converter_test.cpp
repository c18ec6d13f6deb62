#include "formats/gpx/gpx_converter.h"

#include "platform/text.h"
#include "support/conversion.h"

#include <gtest/gtest.h>

#include <string>

namespace norva {
namespace {

using test::Conversion;

Conversion Convert(std::string const& text) {
    return test::ConvertText<CGpxConverter>(text);
}

std::string const kNeat = R"(<?xml version="1.0" encoding="UTF-8"?>
<gpx version="1.1" creator="a b">
<metadata>
<time>2001-01-01T00:00:00Z</time>
</metadata>
<wpt lat="1.5" lon="-2.5">
<ele>10</ele>
<name>ignored</name>
</wpt>
<wpt lat="1.75" lon="-2.25">
</wpt>
<trk>
<name>Caf)"
                          "\xC3\xA9"
                          R"(&amp;Co</name>
<trkseg>
<trkpt lat="45.1" lon="-75.2">
<ele>12.5</ele>
<time>2007-01-02T03:04:05Z</time>
</trkpt>
<trkpt lat="45.123456789012" lon="-75.2">
<time>2007-01-02T03:04:06.125Z</time>
</trkpt>
</trkseg>
</trk>
<wpt lat="3" lon="4">
</wpt>
<rte>
<name>R1</name>
<rtept lat="5" lon="6">
</rtept>
</rte>
</gpx>
)";

std::string const kNeatOutput =
    "//Data from GPX format \n"
    "/       Latitude      Longitude   Elevation(m)           Date           Time\n"
    "Line  waypoint \n"
    "            1.5           -2.5          10           *           *\n"
    "           1.75          -2.25           *           *           *\n"
    "Line  Caf\xC3\xA9&Co \n"
    "           45.1          -75.2        12.5  2007-01-02    03:04:05\n"
    " 45.123456789012          -75.2           *  2007-01-02 03:04:06.125\n"
    "Line  waypoint \n"
    "              3              4           *           *           *\n"
    "Line  R1 \n"
    "              5              6           *           *           *\n";

TEST(GpxConverter, WritesEveryLayoutOfATrackLikeItsNeatTwin) {
    std::string const crlf = ReplaceAll(kNeat, "\n", "\r\n");
    std::string const tags = ReplaceAll(ReplaceAll(kNeat, "<", "<g:"), "<g:/", "</g:");
    struct Case {
        char const* name;
        std::string text;
    };
    Case const cases[] = {
        {"neat", kNeat},
        {"CR LF", crlf},
        {"CR", ReplaceAll(kNeat, "\n", "\r")},
        {"minified", ReplaceAll(kNeat, "\n", "")},
        {"indented", ReplaceAll(kNeat, "\n", "\t \n\n  \t")},
        {"byte order mark", "\xEF\xBB\xBF" + kNeat},
        {"attributes on own lines", ReplaceAll(crlf, "\" lon", "\"\r\n    lon")},
        {"single quotes", ReplaceAll(kNeat, "\"", "'")},
        {"longitude first", ReplaceAll(kNeat, "lat=\"5\" lon=\"6\"", "lon=\"6\" lat=\"5\"")},
        {"blanks around =", ReplaceAll(kNeat, "=", " = ")},
        {"empty elements", ReplaceAll(ReplaceAll(kNeat, "\">\n</rtept>", "\"/>"), "\">\n</wpt>", "\" />")},
        {"text on own lines", ReplaceAll(ReplaceAll(kNeat, "</na", "\n</na"), "<name>", "<name>\n")},
        {"prefixed", ReplaceAll(tags, "<g:?", "<?")},
        {"numeric entity", ReplaceAll(kNeat, "\xC3\xA9", "&#xE9;")},
        {"CDATA", ReplaceAll(kNeat, "Caf\xC3\xA9&amp;Co", "<![CDATA[Caf\xC3\xA9&Co]]>")},
        {"comments", ReplaceAll(kNeat, "<t", "<!-- <trkpt lat='0' lon='0'> --><t")},
        {"ISO-8859-1", ReplaceAll(ReplaceAll(kNeat, "UTF-8", "ISO-8859-1"), "\xC3\xA9", "\xE9")}};
    for (Case const& c : cases) {
        Conversion const conversion = Convert(c.text);
        EXPECT_EQ(conversion.status.Text(), "") << c.name;
        EXPECT_EQ(conversion.output, kNeatOutput) << c.name;
    }
}

TEST(GpxConverter, NamesLinesAndKeepsWhatAPointGives) {
    std::string const start = "<gpx>\n<wpt lat=\"1\" lon=\"2\">\n</wpt>\n";
    std::string const startRows = "Line waypoint\n1 2 * * *\n";
    std::string const point = "<trkpt lat=\"7\" lon=\"8\">\n</trkpt>\n";
    struct Case {
        char const* text;
        std::string body;  ///< after the first waypoint
        char const* found;
    };
    Case const cases[] = {
        {"<trk>\n<name>Track 1</name>\nP</trk>", "Line 1\n7 8 * * *\n", "rows 2, left out 1"},
        {"<trk>\n<name>a b c</name>\nP</trk>", "Line b\n7 8 * * *\n", "rows 2, left out 1"},
        {"<trk>\nP</trk>", "7 8 * * *\n", "rows 2"},
        {"<trk>\n<name>A</name>\n</trk>\n<wpt lat=\"3\" lon=\"4\">\n</wpt>\n", "Line A\nLine waypoint\n3 4 * * *\n",
         "rows 2"},
        {"<name>Tom&apos;s&lt;&gt;&quot;&amp;amp;</name>\nP", "Line Tom's<>\"&amp;\n7 8 * * *\n", "rows 2"},
        {"<name>x&#32;y</name>\nP", "Line y\n7 8 * * *\n", "rows 2, left out 1"},
        {"<name lang=\"en\">A</name>\nP", "Line A\n7 8 * * *\n", "rows 2"},
        {"<name></name>\n<name/>\n<name>\n</name>\nP", "7 8 * * *\n", "rows 2"},
        {"<trkpt lat=\"7\" lon=\"8\">\n<name>N</name>\n<ele>1</ele>\n</trkpt>\n", "7 8 1 * *\n", "rows 2, left out 1"},
        {"<trkpt lat=\"\" lon=\"8\" lat=\"9\">\n<ele></ele>\n</trkpt>\n", "* 8 * * *\n", "rows 2"},
        {"<trkpt x=\"\" y=\"8\">\n<time>2007-01-02</time>\n</trkpt>\n", "* * * * *\n", "rows 2, left out 1"},
        {"<trkpt lat=\"7\" lon=\"8\">\n<time>2007-01-02T03:04:05+02:00</time>\n</trkpt>\n",
         "7 8 * 2007-01-02 03:04:05+02:00\n", "rows 2"},
        {"<trkpt lat=\"7\" lon=\"8\">\n<ele>5</ele>\n<trkpt lat=\"9\" lon=\"8\">\n</trkpt>\n</trkpt>\n", "9 8 5 * *\n",
         "rows 2, left out 1"},
        {"<trk>\nP<trkpt lat=\"9\" lon=\"9\">\n<ele>3</ele>\n", "7 8 * * *\n", "rows 2, cut 1"},
        {"<trk>\nP<trkpt lat=\"9\" lo", "7 8 * * *\n", "rows 2, cut 1"},
        {"<ele>5</ele>\n<time>2007-01-02T03:04:05Z</time>\nP", "7 8 * * *\n", "rows 2"},
        // The end of a segment ends no line; a name of the file's own names the waypoints after it.
        {"<trk>\n<name>A</name>\n<trkseg>\nP</trkseg>\n<trkseg>\nP</trkseg>\n</trk>\n",
         "Line A\n7 8 * * *\n7 8 * * *\n", "rows 3"},
        {"<metadata>\n<name>S</name>\n</metadata>\n<wpt lat=\"3\" lon=\"4\">\n</wpt>\n", "Line S\n3 4 * * *\n",
         "rows 2"},
        // A point needs both of its coordinates.
        {"<trkpt lat=\"7\">\n<ele>5</ele>\n</trkpt>\nP", "7 8 * * *\n", "rows 2, left out 1"}};
    for (Case const& c : cases) {
        Conversion const conversion = Convert(start + ReplaceAll(c.text, "P", point));
        EXPECT_EQ(conversion.status.Text(), "") << c.text;
        EXPECT_EQ(conversion.Body(), startRows + c.body) << c.text;
        EXPECT_EQ(conversion.Found(), c.found) << c.text;
    }
}

TEST(GpxConverter, CountsValuesTooLongToKeep) {
    // The time of the first point has no hours, so that one value is left out anyway.
    std::string const start = "<gpx><wpt lat=\"1\" lon=\"2\"><ele>3</ele><time>2007-01-02</time></wpt>\n";
    std::string const digits((std::size_t{1} << 20) + 10, '5');
    struct Case {
        char const* text;  ///< "#" stands for more than a megabyte of digits
        char const* found;
    };
    Case const cases[] = {
        {"<wpt lat=\"1\" lon=\"2\"><ele>#</ele></wpt>", "rows 2, left out 2"},
        {"<wpt lat=\"1\" lon=\"2\"><ele><![CDATA[#]]></ele></wpt>", "rows 2, left out 2"},
        {"<wpt lat=\"1\" lon=\"2\"><time>2007-01-02T03:04:05Z #</time></wpt>", "rows 2, left out 2"},
        {"<wpt lat=\"1\" lon=\"2\"><cmt>a b #</cmt></wpt>", "rows 2, left out 2"},
        {"<wpt lat=\"1\" lon=\"2\"><cmt a=\"#\">b</cmt></wpt>", "rows 2, left out 2"},
        {"<trk><name>#</name></trk>", "rows 1, left out 2"},
        {"<trk><name>A B #</name></trk>", "rows 1, left out 2"},
        {"<wpt lat=\"#\" lon=\"2\"></wpt>", "rows 1, left out 2"},
        {"<metadata><desc>#</desc></metadata>", "rows 1, left out 1"},
    };
    for (Case const& c : cases) {
        Conversion const conversion = Convert(start + ReplaceAll(c.text, "#", digits) + "</gpx>");
        EXPECT_EQ(conversion.status.Text(), "") << c.text;
        EXPECT_EQ(conversion.Found(), c.found) << c.text;
    }
}

TEST(GpxConverter, TakesTheColumnNamesFromTheFirstPoint) {
    struct Case {
        char const* point;
        char const* header;
    };
    Case const cases[] = {
        {"<wpt lat=\"1\" lon=\"2\">\n</wpt>", "/       Latitude      Longitude\n"},
        {"<wpt lon=\"1\" lat=\"2\">\n</wpt>", "/      Longitude       Latitude\n"},
        {"<wpt lat=\"1\" foo>\n</wpt>", "/       Latitude             Ch\n"},
        {"<wpt lat=\"1\" lon=\"2\"><ele>5</ele></wpt>",
         "/       Latitude      Longitude   Elevation(m)           Date           Time\n"},
        {"<wpt lat=\"1\" lon=\"2\"><time>5</time></wpt>",
         "/       Latitude      Longitude           Date           Time\n"},
        {"<wpt lat=\"1\" lon=\"2\" x=\"3\"></wpt><rtept lat=\"1\" y=\"2\"/>", "/       Latitude              y\n"},
        {"<ele>7</ele><time>8</time><wpt lat=\"1\" lon=\"2\"><name>time</name></wpt>",
         "/       Latitude      Longitude\n"}};
    for (Case const& c : cases) {
        std::string const output = Convert(std::string("<gpx>") + c.point).output;
        std::size_t const start = output.find('\n') + 1;
        EXPECT_EQ(output.substr(start, output.find('\n', start) + 1 - start), c.header) << c.point;
    }
}

TEST(GpxConverter, SaysWhatIsWrongWithAFile) {
    std::string const notGpx = "Could not handle data format!\nPlease check the GPX format.";
    std::string const noPoints = "Could not handle GPX data format.\n";
    struct Case {
        std::string text;
        std::string error;
    };
    Case const cases[] = {{"", notGpx},
                          {std::string(3000, '\0'), notGpx},
                          {"LINE 100\n1 2 3\n", notGpx},
                          {"<kml><Placemark/></kml>", notGpx},
                          {"<trk><trkpt lat=\"1\" lon=\"2\"/></trk><gpx>", notGpx},
                          {"<gpx>", noPoints},
                          {"<gpx><trk><name>A</name></trk></gpx>", noPoints},
                          {"<gpx><trkpt lat=\"1\" lon=\"2\">", noPoints}};
    for (Case const& c : cases) {
        Conversion const conversion = Convert(c.text);
        EXPECT_EQ(conversion.status.Text(), c.error) << c.text;
        EXPECT_EQ(conversion.output, "") << c.text;
    }

    std::string text = kNeat;
    while (text.size() < 3000000) text += kNeat;
    test::ExpectFileErrors<CGpxConverter>(text);
}

TEST(GpxImport, TracesTheSampleTracks) {
    test::ExpectGoldenImport(9, "tracks.gpx", "gpx.jsonl");
}

}  // namespace
}  // namespace norva
