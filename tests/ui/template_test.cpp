#include "entry/library_templates.h"
#include "ui/test_dialog.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <stdexcept>

namespace norva {
namespace {

/// Controls that stand beside the check box or radio button that they belong to, or show what a label before them
/// announces.
bool HasNoLabelOfItsOwn(int dialog, int id) {
    std::set<std::pair<int, int>> const known{{4003, 4063}, {4003, 4065}, {4060, 4054}, {4053, 4058},
                                              {4053, 4055}, {4053, 4056}, {4053, 4057}};
    return known.contains({dialog, id});
}

TEST(Templates, AreWellFormed) {
    int before = 0;
    for (TemplateEntry const& entry : LibraryTemplates()) {
        SCOPED_TRACE(entry.number);
        EXPECT_GT(entry.number, before) << "in ascending order";
        before = entry.number;
        DialogTemplate const* const dialog = FindDialogTemplate(entry.number);
        ASSERT_NE(dialog, nullptr);
        EXPECT_EQ(dialog->number, entry.number);
        TestDialog const shown(entry.number);
        std::set<int> ids;
        bool inGroup = false;
        for (CControl const& control : shown.Controls()) {
            SCOPED_TRACE(control.id);
            EXPECT_GT(control.id, 0);
            EXPECT_TRUE(ids.insert(control.id).second) << "number used twice";
            EXPECT_TRUE(!control.Label().empty() || HasNoLabelOfItsOwn(entry.number, control.id));
            if (control.kind == ControlKind::Radio) {
                inGroup = inGroup || control.node->startsGroup;
                EXPECT_TRUE(inGroup) << "a radio button before the first of a group";
            }
            for (int column : control.node->editable) {
                EXPECT_LT(static_cast<std::size_t>(column), control.node->titles.size());
            }
            EXPECT_EQ(control.kind == ControlKind::Report, !control.columns.empty());
        }
        if (entry.number == 4053) continue;
        // Accepting, cancelling and Help stand last, in this order.
        std::vector<CControl> const& controls = shown.Controls();
        auto const cancel = std::ranges::find(controls, kButtonCancel, &CControl::id);
        ASSERT_NE(cancel, controls.end());
        EXPECT_EQ((cancel - 1)->id, dialog->defaultButton);
        EXPECT_TRUE(cancel + 1 == controls.end() || (cancel + 1)->Label() == "Help");
    }
}

TEST(Templates, AreKnownWhileTheirModuleIsLoaded) {
    static DialogTemplate const stranger{.number = 6000, .title = "Stranger", .root = {}};
    static TemplateEntry const entries[] = {{6000, []() -> DialogTemplate const& { return stranger; }}};
    EXPECT_EQ(FindDialogTemplate(6000), nullptr);
    {
        CTemplateModule const module(entries);
        EXPECT_EQ(FindDialogTemplate(6000), &stranger);
        EXPECT_NE(FindDialogTemplate(4000), nullptr) << "the chain goes on";
        CTemplateModule const later(entries);
    }
    EXPECT_EQ(FindDialogTemplate(6000), nullptr);
    EXPECT_THROW(TestDialog(6000), std::invalid_argument);
    EXPECT_THROW(TestDialog(4000).Get(6000), std::out_of_range);
}

}  // namespace
}  // namespace norva
