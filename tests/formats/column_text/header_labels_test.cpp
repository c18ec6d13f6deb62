#include "formats/column_text/header_labels.h"

#include <gtest/gtest.h>

namespace norva {

TEST(HeaderLabels, SplitsALineIntoAsManyLabelsAsColumns) {
    HeaderDelimiters const blanks{.comma = true, .tab = true, .space = true};
    HeaderDelimiters const commas{.comma = true};
    HeaderDelimiters const bars{.other = true, .otherText = "|"};
    using Labels = std::vector<std::string>;
    std::tuple<char const*, HeaderDelimiters const&, bool, Labels> const cases[] = {
        {"/ X Y Mag", blanks, false, {"X", "Y", "Mag"}},
        {"//\\ X\tY,Mag \t", blanks, false, {"X", "Y", "Mag"}},
        {"X Y", blanks, false, {}},
        {"Columns: X Y Mag", blanks, false, {"X", "Y", "Mag"}},
        {"A:1 B:2 C:3", blanks, false, {"A:1", "B:2", "C:3"}},
        {"a b: X Y:Z", blanks, false, {}},
        {"X-Y-Mag", blanks, true, {"X", "Y", "Mag"}},
        {"X-Y-Mag", blanks, false, {}},
        {"---X Y--Mag", blanks, true, {"X", "Y", "Mag"}},
        {"\"East m\",\"North m\",Mag (nT)", commas, false, {"East m", "North m", "Mag (nT)"}},
        {"X||Y|Mag", bars, false, {"X", "Y", "Mag"}},
        {"X Y Mag", bars, false, {}},
        {"", blanks, false, {}}};
    for (auto const& [line, delimiters, readsHyphens, expected] : cases) {
        EXPECT_EQ(SplitHeaderLine(line, 3, delimiters, readsHyphens), expected) << line;
    }
}

TEST(HeaderLabels, SplitsNamesAndUnits) {
    // Label, name, units: "old" where the label has none.
    std::tuple<char const*, char const*, char const*> const cases[] = {{"Depth:m", "Depth", "m"},
                                                                       {"Mag (nT)", "Mag", "nT"},
                                                                       {"Mag(nT)", "Mag", "nT"},
                                                                       {"Mag (nT) x", "Mag", "nT"},
                                                                       {"Mag", "Mag", "old"},
                                                                       {"Mag (nT", "Mag", "old"},
                                                                       {"a:b:c", "a", "b"},
                                                                       {"Depth: m", "Depth", "m"},
                                                                       {"Rate (a:b)", "Rate (a", "b)"},
                                                                       {"Mag ()", "Mag", ""},
                                                                       {"", "", "old"}};
    for (auto const& [label, name, units] : cases) {
        NorvaChannelStruct column{.name = "Ch1", .units = "old"};
        SplitNameAndUnits(label, column);
        EXPECT_EQ(column.name, name) << label;
        EXPECT_EQ(column.units, units) << label;
    }
}

}  // namespace norva
