#include "exchange/export_selection_dlg.h"
#include "exchange/export_selection_template.h"
#include "norva/scripted_toolkit.h"

#include <gtest/gtest.h>

#include <map>
#include <sstream>

namespace norva {
namespace {

using namespace ids::Export;
using Kind = DialogEvent::Kind;
using Modifier = DialogEvent::Modifier;

/// The dialog over lines and columns of one letter each, with store numbers 10, 11, ... for the lines.
class CDialogInTest : public CExportSelectionDlg {
public:
    explicit CDialogInTest(std::string const& letters) {
        std::vector<std::string> names;
        std::vector<int> table;
        for (char const letter : letters) {
            table.push_back(10 + static_cast<int>(names.size()));
            names.emplace_back(1, letter);
        }
        SetProfileNames(names);
        SetProfileIndexTable(table);
        SetChannelNames(names);
        Open();
    }

    void Do(Kind kind, int control, int row = -1, Modifier modifier = Modifier::None) {
        std::string why;
        EXPECT_TRUE(Perform({kind, control, row, -1, {}, false, modifier}, why)) << why;
    }
    void Click(int control) { Do(Kind::Click, control); }

    /// Acts on the columns: "=3" selects that existing row, "+3" with Shift, "*3" with Ctrl, "!3" double-clicks it;
    /// "e3" and "d3" select and double-click a row of the export list; the others are the buttons.
    void DoOnColumns(std::string const& acts) {
        static std::map<std::string, int> const buttons = {
            {">>", kColumnsAddAll}, {">", kColumnsAdd}, {"<", kColumnsRemove}, {"<<", kColumnsRemoveAll}};
        std::istringstream in(acts);
        for (std::string act; in >> act;) {
            char const key = act.front();
            if (buttons.contains(act)) {
                Click(buttons.at(act));
            } else {
                Do(key == '!' || key == 'd' ? Kind::DoubleClick : Kind::Select,
                   key == 'e' || key == 'd' ? kExportColumns : kExistingColumns, act.back() - '0',
                   key == '+' ? Modifier::Shift : (key == '*' ? Modifier::Ctrl : Modifier::None));
            }
        }
    }

    /// "ABC:1" for three items and the second one selected.
    std::string List(int control) const {
        std::string all;
        for (std::string const& item : FindControl(control)->items) all += item;
        for (int const row : FindControl(control)->selected) all += ":" + std::to_string(row);
        return all;
    }
};

TEST(ExportSelection, MovesKeepTheOrders) {
    struct Case {
        char const* acts;
        char const* existing;
        char const* exported;
    };
    for (Case const& one :
         {Case{"", "ABCDEF:0", ""}, Case{">", "BCDEF:0", "A:0"}, Case{"=5 > =3 >", "ABCE:3", "FD:1"},
          Case{"=5 > >>", "", "ABCDEF"}, Case{">> <<", "ABCDEF", ""}, Case{">> << >", "ABCDEF", ""},
          Case{"!2", "ABDEF:2", "C:0"}, Case{"=5 >", "ABCDE:4", "F:0"}, Case{"=2 +5 >", "AB:1", "CDEF:3"},
          Case{"=4 +3 >", "ABCF:3", "DE:1"}, Case{"=0 *4 *2 >", "BDF:0", "ACE:2"}, Case{"=0 *4 *0 >", "ABCDF:4", "E:0"},
          Case{"=2 +5 =1 >", "ACDEF:1", "B:0"}, Case{"=2 +4 > >", "AB:1", "CDEF:3"},
          Case{">> e3 < d1", "BD:0", "ACEF:1"}, Case{"=4 > =0 > e0 <", "BCDEF:3", "A:0"}}) {
        SCOPED_TRACE(one.acts);
        CDialogInTest dialog("ABCDEF");
        dialog.DoOnColumns(one.acts);
        EXPECT_EQ(dialog.List(kExistingColumns), one.existing);
        EXPECT_EQ(dialog.List(kExportColumns), one.exported);
        EXPECT_EQ(dialog.List(kExistingLines), "ABCDEF:0");
    }
}

TEST(ExportSelection, ExportNeedsLinesAndColumnsAndHandsOverNumbers) {
    CDialogInTest dialog("ABC");
    auto const says = [](char const* text) { return ScriptAnswer{.kind = ScriptAnswer::Kind::Message, .text = text}; };
    CScriptedToolkit toolkit({says("Select Profile(s) to Export"), says("Select Channel(s) to Export")}, false,
                             nullptr);
    CToolkitScope const scope(toolkit);
    dialog.Click(kButtonOk);
    dialog.Do(Kind::Select, kExistingLines, 2);
    dialog.Click(kLinesAdd);
    dialog.Click(kLinesAdd);
    dialog.Click(kButtonOk);
    EXPECT_FALSE(dialog.IsEnded());
    dialog.DoOnColumns("=1 >");
    dialog.Click(kLabelAsChannel);
    dialog.Click(kButtonOk);
    EXPECT_EQ(toolkit.Failure(), "");
    EXPECT_TRUE(dialog.IsEnded());
    EXPECT_EQ(dialog.GetSelectedProfiles(), (std::vector{12, 11}));
    EXPECT_EQ(dialog.GetSelectedChannels(), std::vector{1});
    EXPECT_EQ(dialog.labelAsChannel, 1);
    EXPECT_EQ(dialog.pointIdAsChannel, 0);
}

TEST(ExportSelection, LinesOfOneNameStayApart) {
    CDialogInTest dialog("787");
    for (int const control : {kLinesAddAll, kColumnsAddAll, kButtonOk}) dialog.Click(control);
    EXPECT_EQ(dialog.GetSelectedProfiles(), (std::vector{10, 11, 12}));
}

}  // namespace
}  // namespace norva
