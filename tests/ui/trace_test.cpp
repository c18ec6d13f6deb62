#include "norva/trace.h"

#include "norva/toolkit.h"
#include "ui/json_text.h"

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
    for (Case const& c :
         std::vector<Case>{{"", R"("")"},
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
                           {"\xE2\x82\n", "\"\xEF\xBF\xBD\\n\""}}) {
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

TEST(Trace, WritesOneLineAnEvent) {
    std::vector<std::string> lines;
    CTrace trace([&](std::string_view line) { lines.emplace_back(line.substr(0, line.find('\n'))); }, true);
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
            R"({"event":"message","text":"Sure?","caption":"C","buttons":"yesno","icon":"question","answer":"no"})",
            R"({"event":"open","title":"Import file","filter":"a|*.a||","flags":4100,"initial":"x","path":"/in/x.a"})",
            R"({"event":"save","title":"Import file","filter":"a|*.a||","flags":4100,"initial":"x","path":null,)"
            R"("extension":""})",
            R"({"event":"notice","texts":["START","0"]})", R"({"event":"cursor","shape":"wait"})",
            R"({"event":"store","call":"AddProfileToStructure","args":["L1",3,0.5],"result":1})",
            R"({"event":"store","call":"WriteHuge","args":[2],"bytes":2,"hex":"01ff","result":1})",
            R"({"event":"help","topic":"h.chm::/html/a.htm"})",
            R"({"event":"result","value":1,"store":"/out/x.nvt"})"}));
}

}  // namespace
}  // namespace norva
