#include "formats/cg3/cg3_dump_layout.h"

#include "platform/text.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace norva {
namespace {

std::string const kDash = "----------\n";

CG3DumpLayout Layout(std::string const& text) {
    test::CTemporaryFolder const folder;
    test::WriteWholeFile(folder / "in.dmp", text);
    CLineReader file;
    EXPECT_TRUE(file.Open(folder / "in.dmp"));
    CG3DumpLayout layout;
    EXPECT_TRUE(ReadCG3DumpLayout(file, layout));
    return layout;
}

std::string Joined(std::vector<std::string> const& texts) {
    std::string joined;
    for (std::string const& text : texts) joined += (joined.empty() ? "" : "|") + text;
    return joined;
}

TEST(CG3DumpLayout, FindsBlocksWithTheirNamesAndDates) {
    struct Case {
        std::string text;  ///< "~" stands for a dash line
        char const* profiles;
        char const* dates;
    };
    Case const cases[] = {
        {"", "", ""},
        {"STATION A\n1\n2\n", "", ""},
        {"noise\n~ Line: 5. Date: 94/08/22 x\n~STATION\n1\n2\n", "5.=2", "94/08/22"},
        {"~ LINE: 5 DATE: 94/08/22 x\n~S\n1\n~ line: 6 Date: 94/08/23 x\n~S\n1\n\n \t\n2", "5=1|6=2",
         "94/08/22|94/08/23"},
        // The values need a token after them; both keywords must stand on the line; the first such line counts.
        {"~ Line: 5 Date: 94/08/22\n~S\n1\n", "5=1", ""},
        {"~ Line: 5 x\nDate: 94/08/22 x\n~S\n1\n", "LINE1=1", ""},
        {"~ Line:5 Date: Line: 7 x\n~S\n1\n", "7=1", "Line:"},
        {"~ Line: 5 Date: 1 x\nLine: 6 Date: 2 x\n~S\n1\n", "5=1", "1"},
        // A header before its first dash line does not count; one that names nothing keeps the last name.
        {"Line: 5 Date: 1 x\n~~S\n1\n~~S\n1\n~ Line: 8 Date: 1 x\n~S\n1\n~~S\n1\n", "LINE1=1|LINE2=1|8=1|8=1", "1"},
        // A-lines and blank lines are no data; a block without data is no profile, but its date counts.
        {"~ Line: 5 Date: 1 x\n~S\n  A: 3\n\n~ Line: 6 Date: 2 x\n~S\n1\nA: 3\nA\n2\n", "6=2", "1|2"},
        // Truncated in the header, after the titles, in a data line.
        {"~ Line: 5 Date: 1 x\n~S\n1\n~ Line: 6 Date: 2 x\n", "5=1", "1|2"},
        {"~ Line: 5 Date: 1 x\n~S\n1\n~ Line: 6 Date: 2 x\n~S", "5=1", "1|2"},
        {"~ Line: 5 Date: 1 x\n~S\n1\n~ Line: 6 Date: 2 x\n~S\n12", "5=1|6=1", "1|2"},
        // A dash line in place of the titles: with no data after it, it opens the next header.
        {"~ Line: 5 Date: 1 x\n~~~S\n1\n", "5=1", "1"},
        {"~ Line: 5 Date: 1 x\n~~1\n2\n~ Line: 6 Date: 2 x\n~S\n1\n", "5=2|6=1", "1|2"},
    };
    for (Case const& c : cases) {
        for (char const* const lineEnd : {"\n", "\r\n"}) {
            std::string const text = ReplaceAll(c.text, "~", kDash);
            CG3DumpLayout const layout = Layout(ReplaceAll(text, "\n", lineEnd));
            std::vector<std::string> profiles;
            for (CG3LineRecord const& profile : layout.profiles) {
                profiles.push_back(profile.name + "=" + std::to_string(profile.locationCount));
            }
            EXPECT_EQ(Joined(profiles), c.profiles) << c.text;
            EXPECT_EQ(Joined(layout.dates), c.dates) << c.text;
        }
    }
}

TEST(CG3DumpLayout, JoinsTitles) {
    struct Case {
        char const* titles;
        char const* joined;
        std::size_t values;
    };
    Case const cases[] = {
        {" Station\tGrav. SD. Tilt x Tilt y # Rej Time ", "Station|Grav.|SD.|Tilt x|Tilt y|# Rej|Time", 7},
        {"STATION TILT X", "STATION|TILT|X", 3},
        {"STATION # REJ", "STATION|#|REJ", 3},
        {"TILT STATION x", "TILT STATION|x", 2},
        {"# TILT # STATION TILT", "# TILT|# STATION|TILT", 3},
        {"Stationen,a b", "Stationen,a|b", 2},
        {"station\r\n1\r\n A: 5", "station|A:", 1},
        {"STATION\n1\nA\n", "STATION|A:", 1},
        {"STATION\n1\na: 5\n", "STATION", 1},
        {"STATION\n\n1\nA: 5\n", "STATION", 1},
        {"STATION\nA: 5", "STATION", 1},
        {"no such line\nit is the next: STATION\n1\n2", "it|is|the|next:|STATION", 5},
        {"titles\n1\n2\n", "", 0},
    };
    for (Case const& c : cases) {
        CG3DumpLayout const layout = Layout(kDash + "STATION of the header\n" + kDash + c.titles);
        EXPECT_EQ(Joined(layout.titles), c.joined) << c.titles;
        EXPECT_EQ(layout.valueCount, c.values) << c.titles;
        EXPECT_EQ(layout.hasALines, layout.titles.size() > c.values) << c.titles;
    }
}

}  // namespace
}  // namespace norva
