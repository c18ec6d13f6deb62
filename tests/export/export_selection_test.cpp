#include "export/export_selection_dlg.h"
#include "norva/scripted_toolkit.h"
#include "ui/control_ids.h"

#include <gtest/gtest.h>

namespace norva {
namespace {

using namespace ids::Export;
using Kind = DialogEvent::Kind;
using Modifier = DialogEvent::Modifier;

/// The dialog over lines and columns named A, B, C, ..., with store numbers 10, 11, ... for the lines.
class CDialogInTest : public CExportSelectionDlg {
public:
    explicit CDialogInTest(int count) {
        std::vector<std::string> names;
        std::vector<int> table;
        for (int i = 0; i < count; ++i) {
            names.emplace_back(1, static_cast<char>('A' + i));
            table.push_back(10 + i);
        }
        SetProfileNames(names);
        SetProfileIndexTable(table);
        SetChannelNames(names);
        Open();
    }

    void Do(Kind kind, int control, int row = -1, Modifier modifier = Modifier::None) {
        DialogEvent event;
        event.kind = kind;
        event.control = control;
        event.row = row;
        event.modifier = modifier;
        std::string why;
        EXPECT_TRUE(Perform(event, why)) << why;
    }

    std::string List(int control) const {
        std::string all;
        for (std::string const& item : FindControl(control)->items) all += item;
        return all;
    }
    std::vector<int> Selected(int control) const { return FindControl(control)->selected; }
};

struct Act {
    Kind kind;
    int control;
    int row = -1;
    Modifier modifier = Modifier::None;
};

TEST(ExportSelection, MovesKeepTheOrders) {
    struct Case {
        char const* what;
        std::vector<Act> acts;
        char const* existing;
        char const* exported;
        int selectedThere;  ///< row selected in the existing list afterwards, -1 for none
    };
    auto const click = [](int control) { return Act{Kind::Click, control}; };
    auto const select = [](int row, Modifier modifier = Modifier::None) {
        return Act{Kind::Select, kExistingColumns, row, modifier};
    };
    std::vector<Case> const cases = {
        {"nothing moved", {}, "ABCDEF", "", 0},
        {"the first is selected at the start", {click(kColumnsAdd)}, "BCDEF", "A", 0},
        {"order of moving", {select(5), click(kColumnsAdd), select(3), click(kColumnsAdd)}, "ABCE", "FD", 3},
        {"all in item order", {select(5), click(kColumnsAdd), click(kColumnsAddAll)}, "", "ABCDEF", -1},
        {"all back", {click(kColumnsAddAll), click(kColumnsRemoveAll)}, "ABCDEF", "", -1},
        {"double click", {{Kind::DoubleClick, kExistingColumns, 2}}, "ABDEF", "C", 2},
        {"last row: the one before it is selected", {select(5), click(kColumnsAdd)}, "ABCDE", "F", 4},
        {"a range", {select(2), select(5, Modifier::Shift), click(kColumnsAdd)}, "AB", "CDEF", 1},
        {"a range upwards", {select(4), select(3, Modifier::Shift), click(kColumnsAdd)}, "ABCF", "DE", 3},
        {"single items",
         {select(0), select(4, Modifier::Ctrl), select(2, Modifier::Ctrl), click(kColumnsAdd)},
         "BDF",
         "ACE",
         0},
        {"an item taken out again",
         {select(0), select(4, Modifier::Ctrl), select(0, Modifier::Ctrl), click(kColumnsAdd)},
         "ABCDF",
         "E",
         4},
        {"a plain click ends a range",
         {select(2), select(5, Modifier::Shift), select(1), click(kColumnsAdd)},
         "ACDEF",
         "B",
         1},
        {"back into item order",
         {click(kColumnsAddAll),
          {Kind::Select, kExportColumns, 3},
          click(kColumnsRemove),
          {Kind::DoubleClick, kExportColumns, 1}},
         "BD",
         "ACEF",
         0},
    };
    for (Case const& one : cases) {
        SCOPED_TRACE(one.what);
        CDialogInTest dialog(6);
        for (Act const& act : one.acts) dialog.Do(act.kind, act.control, act.row, act.modifier);
        EXPECT_EQ(dialog.List(kExistingColumns), one.existing);
        EXPECT_EQ(dialog.List(kExportColumns), one.exported);
        std::vector<int> const expected = one.selectedThere < 0 ? std::vector<int>() : std::vector{one.selectedThere};
        EXPECT_EQ(dialog.Selected(kExistingColumns), expected);
        EXPECT_EQ(dialog.List(kExistingLines), "ABCDEF");
    }
}

TEST(ExportSelection, ExportNeedsLinesAndColumnsAndHandsOverNumbers) {
    CDialogInTest dialog(3);
    CScriptedToolkit toolkit({}, true, nullptr);
    CToolkit* const before = SetToolkit(&toolkit);
    dialog.Do(Kind::Click, kButtonOk);
    EXPECT_FALSE(dialog.IsEnded());
    dialog.Do(Kind::Select, kExistingLines, 2);
    dialog.Do(Kind::Click, kLinesAdd);
    dialog.Do(Kind::Click, kLinesAdd);
    dialog.Do(Kind::Click, kButtonOk);
    EXPECT_FALSE(dialog.IsEnded());
    dialog.Do(Kind::Select, kExistingColumns, 1);
    dialog.Do(Kind::Click, kColumnsAdd);
    dialog.Do(Kind::Click, kLabelAsChannel);
    dialog.Do(Kind::Click, kButtonOk);
    SetToolkit(before);
    EXPECT_TRUE(dialog.IsEnded());
    EXPECT_EQ(dialog.Selection().profiles, (std::vector{12, 11}));
    EXPECT_EQ(dialog.Selection().channels, std::vector{1});
    EXPECT_EQ(dialog.Selection().labelAsChannel, 1);
    EXPECT_EQ(dialog.Selection().pointIdAsChannel, 0);
}

TEST(ExportSelection, LinesOfOneNameStayApart) {
    CExportSelectionDlg dialog;
    dialog.SetProfileNames({"7", "8", "7"});
    dialog.SetProfileIndexTable({4, 5, 6});
    dialog.SetChannelNames({"X"});
    dialog.Open();
    std::string why;
    for (int const control : {kLinesAddAll, kColumnsAddAll, kButtonOk}) {
        DialogEvent event;
        event.control = control;
        ASSERT_TRUE(dialog.Perform(event, why)) << why;
    }
    EXPECT_EQ(dialog.Selection().profiles, (std::vector{4, 5, 6}));
}

}  // namespace
}  // namespace norva
