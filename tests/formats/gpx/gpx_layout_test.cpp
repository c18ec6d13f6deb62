#include "formats/gpx/gpx_layout.h"

#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace norva {
namespace {

/// The lines of a text, with every run of blanks as one space.
std::vector<std::string> Lines(std::string const& text, std::size_t bufferSize = 64 * 1024) {
    static test::CTemporaryFolder const folder;
    test::WriteWholeFile(folder / "in.gpx", text);
    CGpxLayout layout(bufferSize);
    EXPECT_TRUE(layout.Open(folder / "in.gpx"));
    std::vector<std::string> lines;
    std::string_view line;
    while (layout.Next(line)) {
        std::string shown;
        for (char const c : line) {
            bool const isBlank = c == ' ' || c == '\n' || c == '\r' || c == '\t';
            if (!isBlank || (!shown.empty() && shown.back() != ' ')) shown.push_back(isBlank ? ' ' : c);
        }
        if (shown.back() == ' ') shown.pop_back();
        lines.push_back(shown);
    }
    EXPECT_EQ(layout.Error(), 0);
    return lines;
}

using Strings = std::vector<std::string>;

TEST(GpxLayout, GivesOneElementALine) {
    struct Case {
        std::string text;
        Strings lines;
    };
    Case const cases[] = {
        {"", {}},
        {" \r\n\t", {}},
        {"<a>\n<b>1</b>\n</a>\n", {"<a>", "<b>1</b>", "</a>"}},
        {"<a><b>1</b><c>2 3</c></a>", {"<a>", "<b>1</b>", "<c>2 3</c>", "</a>"}},
        {"<b>\r\n  1\r\n  2\r\n</b>", {"<b> 1 2 </b>"}},
        {"<trkpt\n lat=\"1\"\n lon='2'\n>", {"<trkpt lat=\"1\" lon='2'"}},
        {"<wpt lat = \"1\" lon\n=\n'a = b'/>", {"<wpt lat=\"1\" lon='a = b'", "</wpt>"}},
        {"<x:wpt lat='1'/><x:ele a='u:v'>5</x:ele>", {"<wpt lat='1'", "</wpt>", "<ele a='u:v'>5</ele>"}},
        {"<trkpt lat='1'>12</trkpt>", {"<trkpt lat='1'", "</trkpt>"}},
        {"<name></name><name> </name>", {"<name>", "</name>", "<name>", "</name>"}},
        {"<a b=\"1>2\">x</a>", {"<a b=\"1>2\">x</a>"}},
        {"<!DOCTYPE gpx [<!ENTITY a 'b'>]><?xml v?><!-- <a>--><a>", {"<a>"}},
        {"<a>1<!-- no -->2<![CDATA[<&>]]]>3</a>", {"<a>12&lt;&amp;&gt;]3</a>"}},
        {"<a><!-- no --><b>1</b></a>", {"<a>", "<b>1</b>", "</a>"}},
        {"<a><!-- no --></a>", {"<a>", "</a>"}},
        {"<x:a>1<!-- no --></x:a>", {"<a>1</a>"}},
        {"<a>one <b>two</b> three</a>", {"<a>", "<b>two</b>", "</a>"}},
        {"<a>&#233;&#x20AC;&#x1F4CD;&amp;&#;&#0;&#xD800;&#x110000;&#65</a>",
         {"<a>\xC3\xA9\xE2\x82\xAC\xF0\x9F\x93\x8D&amp;&#;&#0;&#xD800;&#x110000;&#65</a>"}},
        // Broken text.
        {"<a>5 < 6</a>", {"<a>5 < 6</a>"}},
        {"<trkpt lat=\"1 lon=\"2\">\n<ele>3</ele>", {"<trkpt lat=\"1 lon=\"2\">", "<ele>3</ele>"}},
        {"<a>1</b><c", {"<a>1", "</b>", "<c"}},
        {"<a>1", {"<a>1"}},
        {"<a>1<![CDATA[2", {"<a>12"}},
        {"<a>1<!-- ", {"<a>1"}},
        {"<a/><", {"<a", "</a>"}},
        {"plain\ntext <a>dropped", {"plain", "text", "<a>dropped"}}};
    for (Case const& c : cases) {
        EXPECT_EQ(Lines(c.text), c.lines) << c.text;
        // The smallest buffer makes its ends fall everywhere.
        if (c.text.size() >= 64) continue;
        for (std::size_t shift = 64 - c.text.size(); shift < 64; ++shift) {
            std::string const moved = std::string(shift, ' ') + c.text;
            ASSERT_EQ(Lines(moved, 64), c.lines) << shift << " blanks before " << c.text;
        }
    }
}

TEST(GpxLayout, CutsWhatIsLongerThanItsBufferAndGoesOn) {
    std::string const longText(500, 'x');
    EXPECT_EQ(Lines("<a>" + longText + "</a><b>1</b>", 64),
              (Strings{"<a>" + longText.substr(0, 61), "</a>", "<b>1</b>"}));
    EXPECT_EQ(Lines("<a b='" + longText + "'><c>1</c>", 64).back(), "<c>1</c>");
    EXPECT_EQ(Lines("<!--" + longText + "--><c>1</c>", 64), Strings{"<c>1</c>"});
    EXPECT_EQ(Lines("<a><![CDATA[" + longText + "]]></a><b>1</b>", 64).back(), "<b>1</b>");
}

std::string Utf16(std::u16string_view text, bool isBig) {
    std::string bytes;
    for (char16_t const unit : text) {
        char const low = static_cast<char>(unit & 0xFF);
        char const high = static_cast<char>(unit >> 8);
        bytes.append({isBig ? high : low, isBig ? low : high});
    }
    return bytes;
}

TEST(GpxLayout, ReadsTheEncodingsOfItsMarksAndDeclarations) {
    Strings const expected = {"<name>\xC3\xA9\xF0\x9F\x93\x8D</name>"};
    std::u16string const wide = u"\uFEFF<name>\u00E9\U0001F4CD</name>";
    EXPECT_EQ(Lines("\xEF\xBB\xBF" + expected[0]), expected);
    EXPECT_EQ(Lines(Utf16(wide, false)), expected);
    EXPECT_EQ(Lines(Utf16(wide, true) + "x"), expected);
    EXPECT_EQ(Lines(Utf16(u"\uFEFF<n>\xDC00\xD83D</n>\xD83D", true)), Strings{"<n>\xEF\xBF\xBD\xEF\xBF\xBD</n>"});

    std::string const declared = "<?xml version='1.0' encoding=\"iso-8859-1\"?>";
    EXPECT_EQ(Lines(declared + "<n>\xE9</n>"), Strings{"<n>\xC3\xA9</n>"});
    EXPECT_EQ(Lines("<?xml encoding='UTF-8'?><n>\xE9</n>"), Strings{"<n>\xE9</n>"});

    // Longer than what is converted in one go.
    std::string many = declared;
    for (int i = 0; i < 30000; ++i) many += "<n>\xE9</n>";
    Strings const lines = Lines(many);
    EXPECT_EQ(lines.size(), 30000U);
    EXPECT_EQ(lines.back(), "<n>\xC3\xA9</n>");
    std::u16string manyWide = u"\uFEFF";
    for (int i = 0; i < 30000; ++i) manyWide += u"<n>\U0001F4CD</n>";
    EXPECT_EQ(Lines(Utf16(manyWide, false)), Strings(30000, "<n>\xF0\x9F\x93\x8D</n>"));
}

}  // namespace
}  // namespace norva
