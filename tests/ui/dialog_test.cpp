#include "ui/control_ids.h"
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
    for (Case const& c : std::vector<Case>{
             {"", "0", 0, "0"},
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
             {"1 s3 d6", "6", 6, "6"},
         }) {
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

}  // namespace
}  // namespace norva
