#pragma once

#include "common/play_script.h"

#include <nlohmann/json.hpp>

#include <map>
#include <string>
#include <string_view>
#include <vector>

/// Scripted runs inside a test:
///
///     PlayRun const run = Play(R"({"operation": "import", "answers": [ ... {"open": "{dir}/in.xyz"} ... ]})",
///                              {{"dir", folder.path()}});
///     EXPECT_EQ(run.failure, "");
///     EXPECT_EQ(run.value, 1);
///     EXPECT_EQ(run.Texts("message"), (std::vector<std::string>{"File could not be open"}));
///     ExpectGolden(run, NORVA_TEST_DATA "/entry/import.jsonl", {{"dir", folder.path()}});
namespace norva {

class CWindow;

struct PlayOptions {
    bool defaults = false;   ///< as --defaults
    bool withBytes = false;  ///< as --trace-bytes
    std::string helpFile{};  ///< as --help-file
    CWindow* owner = nullptr;
};

struct PlayRun {
    int value = 0;                   ///< of the exported function
    std::string store;               ///< store file name handed back
    std::string failure;             ///< what of the script did not fit; empty when all fitted
    std::vector<std::string> trace;  ///< one line of JSON an event, without line ends

    /// The events of that name, parsed.
    std::vector<nlohmann::json> Events(std::string_view event) const;
    /// Their "text".
    std::vector<std::string> Texts(std::string_view event) const;
    /// The control of that number in the n-th event of that name ("dialog" or "closed"); null when there is none.
    nlohmann::json Control(std::string_view event, std::size_t n, int id) const;
};

/// Plays the scripts of all tests from now on: the same tests then try another skin.
void SetPlayToolkit(ToolkitMaker maker);

using PlaySettings = std::map<std::string, std::string>;

/// Plays a script. `settings` are what --set gives. Throws std::runtime_error for a script that cannot be read.
PlayRun Play(std::string const& json, PlaySettings const& settings = {}, PlayOptions const& options = {});

/// Fails the test unless the trace is that of the file, in which `{NAME}` stands for the text of that setting.
/// With NORVA_UPDATE_GOLDEN set, writes the file instead (look at the difference before it is committed).
void ExpectGolden(PlayRun const& run, std::string const& file, PlaySettings const& settings = {});

}  // namespace norva
