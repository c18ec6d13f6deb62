#include "support/play.h"

#include "common/script_json.h"
#include "norva/trace.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

namespace norva {

namespace {

std::string WithNames(std::string text, PlaySettings const& settings) {
    for (auto const& [name, value] : settings) {
        if (value.empty()) continue;
        std::string const mark = "{" + name + "}";
        for (std::size_t at = text.find(value); at != std::string::npos; at = text.find(value, at + mark.size())) {
            text.replace(at, value.size(), mark);
        }
    }
    return text;
}

ToolkitMaker& PlayToolkit() {
    static ToolkitMaker maker = [](std::vector<ScriptAnswer> answers, bool defaults, CTrace* trace) {
        return std::make_unique<CScriptedToolkit>(std::move(answers), defaults, trace);
    };
    return maker;
}

}  // namespace

void SetPlayToolkit(ToolkitMaker maker) {
    PlayToolkit() = std::move(maker);
}

std::vector<nlohmann::json> PlayRun::Events(std::string_view event) const {
    std::vector<nlohmann::json> found;
    for (std::string const& line : trace) {
        nlohmann::json parsed = nlohmann::json::parse(line);
        if (parsed.at("event") == event) found.push_back(std::move(parsed));
    }
    return found;
}

std::vector<std::string> PlayRun::Texts(std::string_view event) const {
    std::vector<std::string> texts;
    for (nlohmann::json const& found : Events(event)) texts.push_back(found.at("text"));
    return texts;
}

nlohmann::json PlayRun::Control(std::string_view event, std::size_t n, int id) const {
    std::vector<nlohmann::json> const events = Events(event);
    if (n >= events.size()) return nullptr;
    for (nlohmann::json const& control : events[n].at("controls")) {
        if (control.at("id") == id) return control;
    }
    return nullptr;
}

PlayRun Play(std::string const& json, PlaySettings const& settings, PlayOptions const& options) {
    Script const script = ParseScript(json, settings);
    PlayRun run;
    CTrace trace([&](std::string_view line) { run.trace.emplace_back(line.substr(0, line.size() - 1)); },
                 options.withBytes);
    std::unique_ptr<CScriptedToolkit> const toolkit = PlayToolkit()(script.answers, options.defaults, &trace);
    SetHelpFilePath(options.helpFile);
    PlayResult result = RunOperation(script, *toolkit, &trace, options.owner);
    SetHelpFilePath("");
    run.value = result.value;
    run.store = std::move(result.store);
    run.failure = std::move(result.failure);
    return run;
}

void ExpectGolden(PlayRun const& run, std::string const& file, PlaySettings const& settings) {
    if (std::getenv("NORVA_UPDATE_GOLDEN") != nullptr) {
        std::ofstream out(file, std::ios::binary);
        for (std::string const& line : run.trace) out << WithNames(line, settings) << "\n";
        ASSERT_TRUE(out.flush()) << "cannot write " << file;
        return;
    }
    std::ifstream in(file, std::ios::binary);
    ASSERT_TRUE(in) << "cannot read " << file;
    std::string expected;
    std::size_t i = 0;
    for (; std::getline(in, expected); ++i) {
        ASSERT_LT(i, run.trace.size()) << file << ":" << i + 1 << ": the trace ends before\n" << expected;
        ASSERT_EQ(WithNames(run.trace[i], settings), expected) << file << ":" << i + 1;
    }
    ASSERT_EQ(i, run.trace.size()) << file << ": the trace goes on with\n" << WithNames(run.trace[i], settings);
}

}  // namespace norva
