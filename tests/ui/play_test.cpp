#include "support/play.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>

namespace norva {
namespace {

TEST(Play, TellsAStoreNameThatWasHandedBackFromOneThatWasNot) {
    std::string const folder = std::filesystem::current_path().string();
    struct Case {
        char const* answers;
        char const* store;
    };
    for (Case const& c : std::vector<Case>{
             {R"({"dialog": 4063, "do": [{"close": true}]})", ""},
             {R"({"dialog": 4063, "do": [{"click": 1}]}, {"open": null})", ""},
             {R"({"dialog": 4063, "do": [{"click": 1}]}, {"open": "none.xyz"}, {"save": null})", "/none.nvt"},
             {R"({"dialog": 4063, "do": [{"click": 1}]}, {"open": "none.xyz"}, {"save": "other"})", "/other.nvt"}}) {
        // The proposal is the very name that comes back in the third case.
        PlayRun const run =
            Play(R"({"operation": "import", "store": "none.nvt", "answers": [)" + std::string(c.answers) + "]}", {},
                 {.defaults = true});
        EXPECT_EQ(run.failure, "") << c.answers;
        EXPECT_EQ(run.value, 0) << c.answers;
        EXPECT_EQ(run.store, *c.store == '\0' ? "" : folder + c.store) << c.answers;
        nlohmann::json const last = nlohmann::json::parse(run.trace.back());
        EXPECT_EQ(last.dump(), nlohmann::json({{"event", "result"}, {"value", 0}, {"store", run.store}}).dump());
    }
}

TEST(Play, RefusesAStoreThatCannotBeRead) {
    try {
        Play(R"({"operation": "export", "store": "/none/here.nvt"})");
        FAIL() << "it played";
    } catch (std::runtime_error const& error) {
        EXPECT_STREQ(error.what(), "Couldn't open the store : /none/here.nvt\nNo such file or directory");
    }
}

}  // namespace
}  // namespace norva
