#include "common/script_json.h"
#include "formats/column_text/set_channels_template.h"
#include "formats/gbn/gbn_import_template.h"
#include "formats/records/binary_import_template.h"
#include "norva/trace.h"
#include "ui/messages.h"
#include "ui/test_dialog.h"

#include <gtest/gtest.h>

#include <optional>

namespace norva {
namespace {

std::vector<ScriptAnswer> Answers(std::string const& json) {
    return ParseScript(R"({"operation": "import", "answers": )" + json + "}", {}).answers;
}

/// Makes a scripted toolkit the current one.
class ScriptTest : public testing::Test {
protected:
    ~ScriptTest() override { SetToolkit(nullptr); }

    void Script(std::string const& answers, bool defaults = false) {
        m_lines.clear();
        m_toolkit.emplace(Answers(answers), defaults, &m_trace);
        SetToolkit(&*m_toolkit);
    }
    std::string Failure() const { return m_toolkit->Failure(); }

    std::vector<std::string> m_lines;
    CTrace m_trace{[this](std::string_view line) { m_lines.emplace_back(line); }};
    std::optional<CScriptedToolkit> m_toolkit;
};

TEST(ControlNames, AreNumbersOrLabelsOfTheirOwn) {
    struct Case {
        int dialog;
        ControlName name;
        int id;  ///< 0: none
        char const* why;
    };
    for (Case const& c :
         std::vector<Case>{{4063, "Formats", 5000, ""},
                           {4063, 5000, 5000, ""},
                           {4063, 9, 0, "dialog 4063 \"Import Formats\" has no control 9"},
                           {4063, "formats", 0, "dialog 4063 \"Import Formats\" has no control \"formats\""},
                           {4003, "Data Preview", 5001, ""},
                           {4003, "General Text  ", 4019, ""},
                           {4003, "Date", 4062, ""},
                           {4003, "rows", 0, "dialog 4003 \"Import: Set Channels\" has no control \"rows\""},
                           {4060, "", 0, "dialog 4060 \"Delimiters\" has no control \"\""},
                           {4000, ">>", 0,
                            "dialog 4000 \"Export\" has several controls \">>\": name one by its number, 4007 or "
                            "4011"},
                           {4000, "Lines", 0, "dialog 4000 \"Export\" has no control \"Lines\""},
                           {4004, "Channels:", ids::BinaryImport::kChannels, ""},
                           {4004, "Number of Channels in a record:", ids::BinaryImport::kChannelCount, ""},
                           {4004, "32-bit float", ids::BinaryImport::kReadFloat32, ""},
                           {4059, "Unheck Selection", ids::GbnImport::kUncheckSelection, ""},
                           {4062, 1, 4079, ""},
                           {4060, 1, 1, ""}}) {
        TestDialog const dialog(c.dialog);
        std::string why;
        CControl const* const found = ResolveControl(dialog, c.name, why);
        EXPECT_EQ(found == nullptr ? 0 : found->id, c.id) << c.dialog << " " << c.why;
        EXPECT_EQ(why, c.why);
    }
}

TEST_F(ScriptTest, ActionsSetWhatTheControlTakes) {
    Script(R"([{"dialog": 4003, "do": [
        {"select": "Data Preview", "column": 1}, {"set": 4073, "to": "12"}, {"set": "char.", "to": 8},
        {"set": 4073, "to": 0}, {"set": 4025, "to": true}, {"set": 4025, "to": true}, {"click": 1}]}])");
    TestDialog channels(4003);
    channels.onInit = [&] {
        channels.SetItems(4073, {"11", "12"});
        channels.SetColumns(ids::SetChannels::kPreview, {"Ch1", "Ch2"});
    };
    std::vector<int> choices;
    channels.onEvent = [&](DialogEvent const& event) {
        if (event.kind == DialogEvent::Kind::Choice) choices.push_back(event.row);
    };
    EXPECT_EQ(channels.DoModal(), kButtonOk);
    EXPECT_EQ(choices, (std::vector<int>{1, 0}));
    EXPECT_EQ(channels.Get(4061).text, "8");
    EXPECT_EQ(channels.Get(ids::SetChannels::kPreview).column, 1);
    EXPECT_TRUE(channels.Get(4025).checked);
    EXPECT_EQ(channels.events.size(), 6U) << "a box that stands as wanted needs no click";
    EXPECT_EQ(Failure(), "");
}

/// Does one action; why it cannot be done, or "".
std::string RefusalOf(TestDialog& dialog, std::string const& action) {
    std::string why;
    std::vector<DialogEvent> events;
    if (!EventsOf(dialog, Answers(R"([{"dialog": 1, "do": [)" + action + "]}]")[0].actions[0], events, why)) return why;
    for (DialogEvent const& event : events) {
        if (!dialog.Perform(event, why)) break;
    }
    return why;
}

TEST(Actions, ThatNobodyCouldDoAreRefusedAndChangeNothing) {
    struct Case {
        int dialog;
        char const* action;
        char const* why;
    };
    for (Case const& c : std::vector<Case>{
             {4063, R"({"click": 77})", R"(dialog 4063 "Import Formats" has no control 77)"},
             {4063, R"({"click": "Formats"})", R"(list 5000 "Formats" cannot be clicked)"},
             {4063, R"({"select": 5000, "row": 2})", R"(list 5000 "Formats" has no row 2 (it has 2))"},
             {4063, R"({"select": 5000, "rows": [-1]})", R"(list 5000 "Formats" has no row -1 (it has 2))"},
             {4063, R"({"double": 5000, "row": 9})", R"(list 5000 "Formats" has no row 9 (it has 2))"},
             {4063, R"({"tick": 5000, "row": 0, "on": true})", R"(list 5000 "Formats" cannot be ticked)"},
             {4063, R"({"set": 2, "to": "x"})", R"(button 2 "Cancel" cannot be set)"},
             {4004, R"({"set": 5017, "to": "5"})", R"(edit 5017 "Total Records in File:" is disabled)"},
             {4004, R"({"set": 5017, "to": true})", R"(edit 5017 "Total Records in File:" is set to a text)"},
             {4004, R"({"set": 5019, "to": 1})", R"(check 5019 "Add Fiducial Channel" is set to true or false)"},
             {4004, R"({"set": 5019, "to": false})", R"(check 5019 "Add Fiducial Channel" is disabled)"},
             {4004, R"({"click": 1})", R"(button 1 "Continue" is hidden)"},
             {4004, R"({"edit": 5004, "row": 0, "column": 3, "to": "x"})",
              R"(the cells of column 3 of list 5004 "Channels:" cannot be edited)"},
             {4004, R"({"edit": 5004, "row": 0, "column": 4, "to": "x"})",
              R"(list 5004 "Channels:" has no column 4 (it has 4))"},
             {4004, R"({"edit": 5004, "row": 0, "column": 1, "to": "a\nb"})",
              R"(list 5004 "Channels:" takes one line, not "a\nb")"},
             {4059, R"({"set": 5000, "to": "1"})", R"(edit 5000 "Number of Lines:" is read-only)"},
             {4060, R"({"set": 4054, "to": "é;"})", R"(edit 4054 takes 1 character at most, not "é;")"},
             {4003, R"({"set": 4073, "to": 0})", R"(combo 4073 "Skip first" has no entry 0 (it has 0))"},
             {4003, R"({"set": 4073, "to": "0"})", R"(combo 4073 "Skip first" has no entry "0")"},
             {4003, R"({"set": 4073, "to": true})",
              R"(combo 4073 "Skip first" is set to the text or the index of an entry)"},
             {4003, R"({"select": 5001, "column": 2})", R"(grid 5001 "Data Preview" has no column 2 (it has 2))"},
             {4003, R"({"select": 5001, "row": 0})", R"(grid 5001 "Data Preview" cannot be selected in by row)"}}) {
        TestDialog dialog(c.dialog);
        if (c.dialog == 4063) dialog.SetItems(5000, {"a", "b"});
        if (c.dialog == 4003) dialog.SetColumns(ids::SetChannels::kPreview, {"Ch1", "Ch2"});
        if (c.dialog == 4004) {
            dialog.SetRows(ids::BinaryImport::kChannels, {{"1", "Ch1", "", ""}});
            dialog.Enable(ids::BinaryImport::kTotalRecords, false);
            dialog.Enable(ids::BinaryImport::kAddFiducial, false);
            dialog.Change(kButtonOk).visible = false;
        }
        EXPECT_EQ(RefusalOf(dialog, c.action), c.why) << c.action;
        EXPECT_TRUE(dialog.events.empty()) << c.action;
    }
    TestDialog other(4060);
    EXPECT_EQ(RefusalOf(other, R"({"set": 4054, "to": "é"})"), "") << "one character, whatever its bytes";
}

TEST_F(ScriptTest, ADialogInsideAnotherTakesTheNextAnswer) {
    Script(R"([{"dialog": 4003, "do": [{"click": 4047}, {"double": 4018, "row": 0}, {"click": 1}]},
               {"dialog": 4060, "do": [{"set": "Other:", "to": true}, {"click": 1}]},
               {"message": "Do you want to change the column labels?", "answer": "no"}])");
    TestDialog outer(4003);
    outer.onInit = [&] { outer.SetItems(4018, {"header"}); };
    bool relabel = true;
    outer.onEvent = [&](DialogEvent const& event) {
        if (event.control == 4047) {
            TestDialog inner(4060);
            EXPECT_EQ(inner.DoModal(), kButtonOk);
            EXPECT_TRUE(inner.Get(4051).checked);
        }
        if (event.kind == DialogEvent::Kind::DoubleClick)
            relabel = AskYesNo("Do you want to change the column labels?");
    };
    EXPECT_EQ(outer.DoModal(), kButtonOk);
    EXPECT_FALSE(relabel);
    EXPECT_EQ(Failure(), "");
    std::string order;
    for (std::string const& line : m_lines) order += line.substr(9, line.find(',', 32) - 9) + "\n";
    EXPECT_EQ(order,
              "\"dialog\",\"template\":4003\n\"dialog\",\"template\":4060\n\"closed\",\"template\":4060\n"
              "\"message\",\"text\":\"Do you want to change the column labels?\"\n\"closed\",\"template\":4003\n");
}

TEST_F(ScriptTest, WhatDoesNotFitIsToldAndEndsEverything) {
    struct Case {
        char const* answers;
        char const* failure;
    };
    std::string const shown =
        "dialog 4060 \"Delimiters\" with the controls\n"
        "    check 4048 \"Tab\": off\n"
        "    check 4049 \"Space\" (disabled): off\n"
        "    check 4050 \"Semicolon\": off\n"
        "    check 4052 \"Comma\": on\n"
        "    check 4051 \"Other:\": off\n"
        "    edit 4054: \";\"\n"
        "    button 1 \"Set\"\n"
        "    button 2 \"Cancel\"\n";
    for (Case const& c : std::vector<Case>{
             {"[]", "shown: DIALOGexpected: nothing more (the script has no answers left)"},
             {R"([{"dialog": 4063, "do": []}])", R"(shown: DIALOGexpected: {"dialog":4063,"do":[]})"},
             {R"([{"open": null}])", R"(shown: DIALOGexpected: {"open":null})"},
             {R"([{"dialog": 4060, "do": []}])",
              "still open after the last action\nshown: DIALOGexpected: {\"dialog\":4060,\"do\":[]}"},
             {R"([{"dialog": 4060, "do": [{"set": 4049, "to": false}]}])",
              "impossible: {\"set\":4049,\"to\":false}: check 4049 \"Space\" is disabled\nshown: DIALOGexpected: "
              "{\"dialog\":4060,\"do\":[{\"set\":4049,\"to\":false}]}"}}) {
        Script(c.answers);
        TestDialog dialog(4060);
        dialog.onInit = [&] {
            dialog.Enable(4049, false);
            dialog.Change(4052).checked = true;
            dialog.Change(4054).text = ";";
        };
        EXPECT_EQ(dialog.DoModal(), kButtonCancel) << c.answers;
        std::string expected = c.failure;
        expected.replace(expected.find("DIALOG"), 6, shown);
        EXPECT_EQ(Failure(), expected);
        // Whatever comes afterwards is cancelled too, and the first reason is kept.
        EXPECT_FALSE(AskYesNo("Go on?"));
        std::string path = "kept";
        EXPECT_FALSE(m_toolkit->ChooseFileToOpen({}, path));
        EXPECT_EQ(path, "kept");
        EXPECT_EQ(Failure(), expected);
    }

    Script(R"([{"dialog": 4060, "do": [{"click": 1}, {"click": 4048}]}])");
    EXPECT_EQ(TestDialog(4060).DoModal(), kButtonOk) << "it was closed before";
    EXPECT_EQ(Failure().substr(0, Failure().find('\n')),
              "impossible: {\"click\":4048}: dialog 4060 \"Delimiters\" is closed");

    // A failure inside a nested message ends the dialog around it as well.
    Script(R"([{"dialog": 4060, "do": [{"click": 4048}, {"click": 1}]}])");
    TestDialog outer(4060);
    outer.onEvent = [](DialogEvent const& event) {
        if (event.control == 4048) ShowMessage("Surprise");
    };
    EXPECT_EQ(outer.DoModal(), kButtonCancel);
    EXPECT_EQ(Failure(),
              "shown: message \"Surprise\" with the title \"Norva Exchange\" and the button ok\n"
              "expected: nothing more (the script has no answers left)");
    EXPECT_EQ(outer.events.size(), 1U);
}

TEST_F(ScriptTest, MessagesAndLeftOverAnswersMustFitToo) {
    Script(R"([{"message": "Sure?", "answer": "ok"}])");
    EXPECT_FALSE(AskYesNo("Sure?"));
    EXPECT_EQ(Failure(),
              "shown: message \"Sure?\" with the title \"Norva Exchange\" and the buttons yes, no\n"
              "expected: {\"answer\":\"ok\",\"message\":\"Sure?\"}");
    Script(R"([{"message": "Sure", "answer": "yes"}])");
    EXPECT_FALSE(AskYesNo("Sure?"));
    EXPECT_NE(Failure(), "");
    Script(R"([{"message": "Sure?", "answer": "yes"}, {"open": "a"}, {"save": null}])");
    EXPECT_TRUE(AskYesNo("Sure?"));
    std::string const left = Failure();
    EXPECT_EQ(left.substr(0, left.find('\n')), "the operation has ended, and answers are left over:");
    EXPECT_NE(left.find("{\"save\":null}"), std::string::npos);
}

TEST_F(ScriptTest, DefaultsAnswerWhatTheNextAnswerDoesNotFit) {
    Script(R"([{"message": "Later", "answer": "no"}])", true);
    EXPECT_EQ(TestDialog(4063).DoModal(), kButtonOk);
    TestDialog cannotAccept(4063);
    cannotAccept.onInit = [&] { cannotAccept.Enable(kButtonOk, false); };
    EXPECT_EQ(cannotAccept.DoModal(), kButtonCancel);
    TestDialog otherDefault(4062);
    otherDefault.onEvent = [&](DialogEvent const& event) { otherDefault.EndDialog(event.control); };
    EXPECT_EQ(otherDefault.DoModal(), 4079);
    EXPECT_TRUE(AskYesNo("Now?"));
    EXPECT_FALSE(AskYesNo("Later")) << "the answer of the script that fits";
    std::string path;
    std::string extension;
    EXPECT_FALSE(m_toolkit->ChooseFileToOpen({}, path)) << "no initial name";
    EXPECT_TRUE(
        m_toolkit->ChooseFileToSave({.filter = "NVT (*.nvt)|*.nvt|", .initial = "/out/x.xyz"}, path, extension));
    EXPECT_EQ(path + " " + extension, "/out/x.xyz xyz");
    EXPECT_EQ(Failure(), "");

    TestDialog refuses(4000);
    refuses.staysOpen = true;
    EXPECT_EQ(refuses.DoModal(), kButtonCancel) << "accepting did not close it";
    EXPECT_EQ(Failure().substr(0, Failure().find('\n')), "still open after the last action");
}

TEST_F(ScriptTest, ADialogThatEndsBeforeItShowsTakesNoAnswer) {
    Script("[]");
    TestDialog dialog(4003);
    dialog.onInit = [&] { dialog.EndDialog(kButtonCancel); };
    EXPECT_EQ(dialog.DoModal(), kButtonCancel);
    EXPECT_EQ(Failure(), "");
    EXPECT_TRUE(m_lines.empty());
}

}  // namespace
}  // namespace norva
