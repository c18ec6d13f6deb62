#include "norva/trace.h"

#include "ui/control_ids.h"
#include "ui/json_text.h"
#include "ui/test_dialog.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <nlohmann/json.hpp>

#include <cmath>
#include <limits>

namespace norva {
namespace {

TEST(JsonText, EscapesAndReplacesWhatJsonCannotHold) {
    struct Case {
        std::string text;
        char const* json;
    };
    for (Case const& c : std::vector<Case>{
             {"", R"("")"},
             {"C:\\a \"b\"/", R"("C:\\a \"b\"/")"},
             {"\b\f\n\r\t", R"("\b\f\n\r\t")"},
             {std::string("\0\x1F\x7F", 3), "\"\\u0000\\u001f\x7F\""},
             {"\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80", "\"\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80\""},
             {"caf\xE9!", "\"caf\xEF\xBF\xBD!\""},                          // Latin-1
             {"\x80\xBF", "\"\xEF\xBF\xBD\xEF\xBF\xBD\""},                  // continuation bytes alone
             {"\xC0\xAF", "\"\xEF\xBF\xBD\xEF\xBF\xBD\""},                  // overlong
             {"\xED\xA0\x80", "\"\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\""},  // surrogate
             {"\xF4\x90\x80\x80", "\"\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\""},
             {"\xE2\x82", "\"\xEF\xBF\xBD\""},  // cut short: one mark
             {"\xE2\x82\n", "\"\xEF\xBF\xBD\\n\""},
         }) {
        std::string out;
        AppendJsonText(out, c.text);
        EXPECT_EQ(out, c.json);
    }
}

TEST(JsonText, OfAnyBytesIsReadByOthersAsTheyWouldReplace) {
    EXPECT_TRUE(rc::check("any bytes", [](std::string const& bytes) {
        std::string out;
        AppendJsonText(out, bytes);
        std::string const theirs = nlohmann::json(bytes).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
        RC_ASSERT(nlohmann::json::parse(out) == nlohmann::json::parse(theirs));
    }));
}

TEST(JsonText, NumbersReadBackTheSame) {
    for (double value : {0.0, -0.0, 0.1, 1.0e30, -1.0 / 3, 5e-324, 1.7976931348623157e308, 123456789012345678.0}) {
        std::string out;
        AppendJsonNumber(out, value);
        double const back = nlohmann::json::parse(out).get<double>();
        EXPECT_EQ(back, value) << out;
        EXPECT_EQ(std::signbit(back), std::signbit(value)) << out;
    }
    std::string out;
    AppendJsonNumber(out, std::nan(""));
    AppendJsonNumber(out, -std::numeric_limits<double>::infinity());
    EXPECT_EQ(out, "nullnull");
}

/// The control of that number as the trace writes it.
std::string TracedControl(TestDialog const& dialog, int id) {
    std::string line;
    CTrace trace([&](std::string_view text) { line = text; });
    trace.DialogOpened(dialog);
    // Ordered, so that the order of the fields shows.
    nlohmann::ordered_json const event = nlohmann::ordered_json::parse(line);
    for (auto const& control : event.at("controls")) {
        if (control.at("id") == id) return control.dump();
    }
    return "";
}

TEST(Trace, ShowsEveryKindOfControl) {
    TestDialog channels(4003);
    channels.SetColumns(ids::SetChannels::kPreview, {"Ch1", "Ch2"});
    channels.SetRows(ids::SetChannels::kPreview, {{"1", "2"}, {"3"}});
    channels.SetItems(4018, {"/ header"});
    channels.SetItems(4073, {"0", "1"});
    channels.CheckRadio(4019, 4019);
    channels.Enable(4025, false);
    EXPECT_EQ(TracedControl(channels, 5001),
              R"({"id":5001,"label":"Data Preview","kind":"grid","enabled":true,"visible":true,)"
              R"("columns":["Ch1","Ch2"],"rows":[["1","2"],["3"]],"column":null})");
    channels.Change(5001).column = 1;
    EXPECT_NE(TracedControl(channels, 5001).find(R"("column":1})"), std::string::npos);
    EXPECT_EQ(TracedControl(channels, 4018),
              R"({"id":4018,"label":"File Header","kind":"list","enabled":true,"visible":true,)"
              R"("items":["/ header"],"selected":[]})");
    EXPECT_EQ(TracedControl(channels, 4073),
              R"({"id":4073,"label":"Skip first","kind":"combo","enabled":true,"visible":true,)"
              R"("items":["0","1"],"selected":[],"text":""})");
    channels.SelectRow(4073, 1);
    EXPECT_NE(TracedControl(channels, 4073).find(R"("selected":[1],"text":"1"})"), std::string::npos);
    EXPECT_EQ(TracedControl(channels, 4019),
              R"({"id":4019,"label":"General Text  ","kind":"radio","enabled":true,"visible":true,"checked":true})");
    EXPECT_EQ(TracedControl(channels, 4025), R"({"id":4025,"label":"Use a Column as a Line Label","kind":"check",)"
                                             R"("enabled":false,"visible":true,"checked":false})");
    EXPECT_EQ(TracedControl(channels, 5000),
              R"({"id":5000,"label":"rows","kind":"static","enabled":true,"visible":true,"text":"rows"})");
    EXPECT_EQ(TracedControl(channels, 4061),
              R"({"id":4061,"label":"char.","kind":"edit","enabled":true,"visible":true,"text":""})");
    EXPECT_EQ(TracedControl(channels, 2), R"({"id":2,"label":"Cancel","kind":"button","enabled":true,"visible":true})");

    TestDialog gbn(4059);
    gbn.SetRows(ids::GbnImport::kLines, {{"", "1", "L10", "5"}, {"", "2", "L20", "7"}});
    gbn.Change(ids::GbnImport::kLines).ticks[1] = true;
    gbn.SelectAllRows(ids::GbnImport::kLines);
    EXPECT_EQ(TracedControl(gbn, ids::GbnImport::kLines),
              R"({"id":5003,"label":"Lines:","kind":"list","enabled":true,"visible":true,)"
              R"("columns":["Exp","N","Name","NumLoc"],"rows":[["","1","L10","5"],["","2","L20","7"]],)"
              R"("selected":[0,1],"ticks":[false,true]})");
    EXPECT_EQ(TracedControl(gbn, ids::GbnImport::kOutputFormat),
              R"({"id":5006,"label":"Output Data Format","kind":"group","enabled":true,"visible":true})");
    TestDialog binary(4004);
    EXPECT_EQ(TracedControl(binary, ids::BinaryImport::kChannels),
              R"({"id":5004,"label":"Channels:","kind":"list","enabled":true,"visible":true,)"
              R"("columns":["N","Name","Units","Data Format"],"rows":[],"selected":[]})");
    EXPECT_EQ(TracedControl(TestDialog(4053), 4055),
              R"({"id":4055,"label":"","kind":"progress","enabled":true,"visible":true,"position":0})");
}

TEST(Trace, WritesOneLineAnEvent) {
    std::vector<std::string> lines;
    CTrace trace([&](std::string_view line) { lines.emplace_back(line); }, true);
    FileRequest const file{.title = "Import file", .filter = "a|*.a||", .flags = 0x1004, .initial = "x"};
    std::string const path = "/in/x.a";
    trace.Message({.text = "Sure?", .caption = "C", .buttons = MessageButtons::YesNo, .icon = MessageIcon::Question},
                  MessageAnswer::No);
    trace.FileOpened(file, &path);
    trace.FileSaved(file, nullptr, "");
    trace.Notice("START", "0");
    trace.Cursor(CursorShape::Wait);
    trace.StoreCall("AddProfileToStructure", {std::string("L1"), 3LL, 0.5}, 1);
    trace.StoreWriteHuge("\x01\xFF", 2, 1);
    trace.Help("h.chm::/html/a.htm");
    trace.Result(1, "/out/x.nvt");
    EXPECT_EQ(
        lines,
        (std::vector<std::string>{
            R"({"event":"message","text":"Sure?","caption":"C","buttons":"yesno","icon":"question","answer":"no"})"
            "\n",
            R"({"event":"open","title":"Import file","filter":"a|*.a||","flags":4100,"initial":"x","path":"/in/x.a"})"
            "\n",
            R"({"event":"save","title":"Import file","filter":"a|*.a||","flags":4100,"initial":"x","path":null,)"
            R"("extension":""})"
            "\n",
            R"({"event":"notice","texts":["START","0"]})"
            "\n",
            R"({"event":"cursor","shape":"wait"})"
            "\n",
            R"({"event":"store","call":"AddProfileToStructure","args":["L1",3,0.5],"result":1})"
            "\n",
            R"({"event":"store","call":"WriteHuge","args":[2],"bytes":2,"hex":"01ff","result":1})"
            "\n",
            R"({"event":"help","topic":"h.chm::/html/a.htm"})"
            "\n",
            R"({"event":"result","value":1,"store":"/out/x.nvt"})"
            "\n"}));
}

}  // namespace
}  // namespace norva
