#include "entry/import_format_template.h"
#include "exchange/export_selection_template.h"
#include "formats/gbn/gbn_import_template.h"
#include "formats/records/binary_import_template.h"
#include "ui/test_dialog.h"

#include <gtest/gtest.h>

#include <sstream>

namespace norva {
namespace {

using Kind = DialogEvent::Kind;
using Modifier = DialogEvent::Modifier;
constexpr int kLines = ids::Export::kExistingLines;

std::string Joined(std::vector<int> const& numbers) {
    std::string out;
    for (int number : numbers) out += (out.empty() ? "" : " ") + std::to_string(number);
    return out;
}

/// Clicks as a person writes them down: "2 s5 c3" is a plain click on row 2, Shift on 5, Ctrl on 3, "d4" a double
/// click.
void Clicks(TestDialog& dialog, int list, std::string const& clicks) {
    std::istringstream words(clicks);
    for (std::string word; words >> word;) {
        DialogEvent event{.kind = Kind::Select, .control = list};
        if (word[0] == 's') event.modifier = Modifier::Shift;
        if (word[0] == 'c') event.modifier = Modifier::Ctrl;
        if (word[0] == 'd') event.kind = Kind::DoubleClick;
        event.row = std::stoi(word.substr(std::isdigit(static_cast<unsigned char>(word[0])) != 0 ? 0 : 1));
        ASSERT_TRUE(dialog.Do(event)) << clicks << ": " << dialog.why;
    }
}

TEST(Selection, FollowsClicksWithShiftAndCtrl) {
    struct Case {
        char const* clicks;
        char const* selected;
        int caret;
        char const* chosen;  ///< what a move would act on
    };
    for (Case const& c : std::vector<Case>{{"", "0", 0, "0"},
                                           {"3", "3", 3, "3"},
                                           {"2 s5", "2 3 4 5", 5, "2 3 4 5"},
                                           {"5 s2", "2 3 4 5", 2, "2 3 4 5"},
                                           {"s3", "0 1 2 3", 3, "0 1 2 3"},
                                           {"2 s5 s3", "2 3", 3, "2 3"},
                                           {"2 s5 7", "7", 7, "7"},
                                           {"2 c5", "2 5", 5, "2 5"},
                                           {"5 c2 c7", "2 5 7", 7, "2 5 7"},
                                           {"2 c5 c2", "5", 2, "5"},
                                           {"2 c2", "", 2, ""},
                                           {"2 c5 s7", "5 6 7", 7, "5 6 7"},
                                           {"2 s4 c3", "2 4", 3, "2 4"},
                                           {"1 s3 d6", "6", 6, "6"}}) {
        TestDialog dialog(4000);
        dialog.SetItems(kLines, std::vector<std::string>(8, "line"));
        dialog.SelectRow(kLines, 0);
        Clicks(dialog, kLines, c.clicks);
        CControl const& list = dialog.Get(kLines);
        EXPECT_EQ(Joined(list.selected), c.selected) << c.clicks;
        EXPECT_EQ(list.caret, c.caret) << c.clicks;
        EXPECT_EQ(Joined(list.ChosenRows()), c.chosen) << c.clicks;
    }
}

TEST(Selection, OfOneRowIgnoresShiftAndCtrl) {
    TestDialog dialog(4063);
    dialog.SetItems(ids::ImportFormats::kFormats, {"a", "b", "c"});
    for (char const* clicks : {"0 s2", "0 c2", "2 c2"}) {
        Clicks(dialog, ids::ImportFormats::kFormats, clicks);
        EXPECT_EQ(Joined(dialog.Get(ids::ImportFormats::kFormats).selected), "2") << clicks;
    }
}

TEST(Acts, CheckOneRadioButtonOfTheGroupAndActAgain) {
    using namespace ids::BinaryImport;
    TestDialog dialog(4004);
    dialog.CheckRadio(kReadInt32, kReadInt32);
    dialog.CheckRadio(kWriteFloat, kWriteLong);
    for (int id : {kReadFloat64, kReadFloat64}) {
        ASSERT_TRUE(dialog.Do({.kind = Kind::Click, .control = id})) << dialog.why;
        EXPECT_EQ(dialog.events.back().control, id);
        EXPECT_EQ(dialog.CheckedRadio(kReadInt16), kReadFloat64);
        EXPECT_EQ(dialog.CheckedRadio(kWriteFloat), kWriteLong) << "the other group";
    }
    EXPECT_EQ(dialog.events.size(), 2U);
    dialog.CheckRadio(kReadFloat64, 0);
    EXPECT_EQ(dialog.CheckedRadio(kReadFloat32), 0);
}

TEST(Acts, ShowInTheControlsBeforeTheDialogReacts) {
    using namespace ids::GbnImport;
    TestDialog dialog(4059);
    dialog.SetRows(kChannels, {{"", "1", "Mag", "nT", "FLOAT"}, {"", "2", "Alt", "m", "INT"}});
    unsigned revision = dialog.Get(kChannels).revision;
    std::string seen;
    dialog.onEvent = [&](DialogEvent const& event) {
        CControl const& list = dialog.Get(kChannels);
        EXPECT_GT(list.revision, revision);
        revision = list.revision;
        if (event.kind == Kind::EditCell) seen += list.rows[1][kUnitsColumn];
        if (event.kind == Kind::Tick) seen += list.ticks[1] ? " on" : " off";
        if (event.kind == Kind::Select) seen += " row " + Joined(list.selected);
        if (event.kind == Kind::DoubleClick) seen += " double";
    };
    EXPECT_TRUE(
        dialog.Do({.kind = Kind::EditCell, .control = kChannels, .row = 1, .column = kUnitsColumn, .text = "km"}));
    EXPECT_TRUE(dialog.Do({.kind = Kind::Tick, .control = kChannels, .row = 1, .on = true}));
    // A tick box that stands as wanted needs no act.
    EXPECT_TRUE(dialog.Do({.kind = Kind::Tick, .control = kChannels, .row = 1, .on = true}));
    EXPECT_TRUE(dialog.Do({.kind = Kind::DoubleClick, .control = kChannels, .row = 0}));
    EXPECT_EQ(seen, "km on row 0 double");
}

TEST(Acts, OfADoubleClickEndWhenItsFirstClickTakesTheRowAway) {
    TestDialog dialog(4000);
    dialog.SetItems(kLines, {"a", "b"});
    dialog.onEvent = [&](DialogEvent const&) { dialog.SetItems(kLines, {}); };
    EXPECT_TRUE(dialog.Do({.kind = Kind::DoubleClick, .control = kLines, .row = 1}));
    EXPECT_EQ(dialog.events.size(), 1U);
}

}  // namespace
}  // namespace norva
