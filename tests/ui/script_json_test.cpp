#include "common/script_json.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>

namespace norva {
namespace {

std::string ErrorOf(std::string const& json) {
    try {
        ParseScript(json, {});
    } catch (std::runtime_error const& error) {
        return error.what();
    }
    return "";
}

TEST(ScriptJson, IsReadWholeWithItsSettings) {
    Script const script = ParseScript(R"({"operation": "import", "level": 5, "store": "{out}.nvt", "answers": [
            {"dialog": 4063, "do": [{"select": "Formats", "row": 1, "with": "ctrl"}, {"set": 4073, "to": "{n}{n}"},
                                    {"edit": "Channels:", "row": 1, "column": 2, "to": "{unset} {n"}]},
            {"open": "{out}/../in.txt"}, {"save": "/abs/x", "extension": "gbn"}, {"message": "M", "answer": "yes"}]})",
                                      {{"out", "dir"}, {"n", "{out}"}});
    std::string const here = std::filesystem::current_path().string();
    EXPECT_TRUE(script.isImport);
    EXPECT_EQ(script.level, 5);
    EXPECT_EQ(script.store, here + "/dir.nvt");
    ASSERT_EQ(script.answers.size(), 4U);
    std::vector<ScriptAction> const& actions = script.answers[0].actions;
    ASSERT_EQ(actions.size(), 3U);
    EXPECT_EQ(std::get<std::string>(actions[0].control), "Formats");
    EXPECT_EQ(actions[0].modifier, DialogEvent::Modifier::Ctrl);
    EXPECT_EQ(actions[0].source, R"({"row":1,"select":"Formats","with":"ctrl"})");
    EXPECT_EQ(std::get<int>(actions[1].control), 4073);
    EXPECT_EQ(std::get<std::string>(actions[1].value), "{out}{out}") << "what was put in is not replaced again";
    EXPECT_EQ(std::get<std::string>(actions[2].value), "{unset} {n");
    EXPECT_EQ(script.answers[1].path, here + "/dir/../in.txt");
    EXPECT_EQ(script.answers[2].path, "/abs/x");
    EXPECT_EQ(script.answers[2].extension, "gbn");
    EXPECT_EQ(script.answers[3].answer, MessageAnswer::Yes);

    Script const other = ParseScript(R"({"operation": "export", "store": "s.nvt", "name": "out"})", {});
    EXPECT_FALSE(other.isImport);
    EXPECT_EQ(other.name, here + "/out");
}

TEST(ScriptJson, SaysWhatIsWrongAndWhere) {
    struct Case {
        char const* json;
        char const* error;
    };
    for (Case const& c : std::vector<Case>{
             {"[]", "must be an object, is []"},
             {"{}", "\"operation\" is missing"},
             {R"({"operation": "copy"})", R"(operation: must be one of "import", "export", is "copy")"},
             {R"({"operation": "import", "stroe": ""})", "unknown key \"stroe\""},
             {R"({"operation": "import", "level": 1.5})", "level: must be a whole number of at most 32 bits, is 1.5"},
             {R"({"operation": "export"})", "\"store\" is missing"},
             {R"({"operation": "import", "store": null})", "store: must be a text, is null"},
             {R"({"operation": "import", "answers": {}})", "answers: must be an array, is {}"}}) {
        EXPECT_EQ(ErrorOf(c.json), c.error) << c.json;
    }
    EXPECT_EQ(ErrorOf("{").rfind("is no JSON: ", 0), 0U);
    EXPECT_EQ(ErrorOf(std::string(1'000'000, '[') + std::string(1'000'000, ']')), "is nested more than 16 deep");
    for (Case const& c : std::vector<Case>{
             {R"(4)", "answers[1]: must be an object, is 4"},
             {R"({"dialogue": 4})", R"(answers[1]: is no answer: it has none of "dialog", "message", "open", "save")"},
             {R"({"open": "a", "save": "b"})", R"(answers[1]: has both "open" and "save")"},
             {R"({"open": "a", "extension": "b"})", R"(answers[1]: unknown key "extension")"},
             {R"({"message": "m", "answer": "cancel"})",
              R"(answers[1].answer: must be one of "ok", "yes", "no", is "cancel")"},
             {R"({"dialog": "4063", "do": []})",
              R"(answers[1].dialog: must be a whole number of at most 32 bits, is "4063")"},
             {R"({"dialog": 4063})", R"(answers[1]: "do" is missing)"}}) {
        EXPECT_EQ(ErrorOf(R"({"operation": "import", "answers": [{"open": null}, )" + std::string(c.json) + "]}"),
                  c.error);
    }
    for (Case const& c : std::vector<Case>{
             {"{}", R"(answers[0].do[1]: is no action: it has none of "click", "set", "select", "double", "edit", )"
                    R"("tick", "close")"},
             {R"({"click": true})", "answers[0].do[1].click: must be a control's number or label, is true"},
             {R"({"click": 1, "row": 2})", R"(answers[0].do[1]: unknown key "row")"},
             {R"({"set": 1, "to": null})",
              "answers[0].do[1].to: must be a text, a whole number, true or false, is null"},
             {R"({"set": 1, "to": 0.5})", "answers[0].do[1].to: must be a whole number of at most 32 bits, is 0.5"},
             {R"({"select": 1})", R"(answers[0].do[1]: "row", "rows" or "column" is missing)"},
             {R"({"select": 1, "rows": []})", "answers[0].do[1].rows: must name a row at least"},
             {R"({"select": 1, "row": 0, "with": "alt"})",
              R"(answers[0].do[1].with: must be one of "shift", "ctrl", is "alt")"},
             {R"({"select": 1, "column": 0, "with": "ctrl"})", R"(answers[0].do[1]: unknown key "with")"},
             {R"({"edit": 1, "row": 0, "column": 0, "to": 5})", "answers[0].do[1].to: must be a text, is 5"},
             {R"({"tick": 1, "row": 0, "on": 1})", "answers[0].do[1].on: must be true or false, is 1"},
             {R"({"close": false})", "answers[0].do[1].close: must be true"}}) {
        EXPECT_EQ(ErrorOf(R"({"operation": "import", "answers": [{"dialog": 1, "do": [{"close": true}, )" +
                          std::string(c.json) + "]}]}"),
                  c.error);
    }
}

}  // namespace
}  // namespace norva
