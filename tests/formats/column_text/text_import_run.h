#pragma once

#include "norva/file_util.h"
#include "support/play.h"
#include "support/store_text.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace norva::test {

/// One import of a file through the exported function; what it described and stored.
class CTextImportRun {
public:
    std::string fileName = "in.xyz";
    int formatRow = 0;
    /// Acts on the column dialog, each with a ";": "@3" selects a column, "4019" clicks, "4061=9" sets, "!0"
    /// double-clicks a header line. "Continue" follows.
    std::string acts;
    std::string answers;       ///< after the dialog's, each with a comma before it
    std::string beforeDialog;  ///< answers before it, likewise
    bool opensDialog = true;
    CTemporaryFolder folder;
    PlayRun run;

    PlayRun const& Run(std::string_view text) {
        WriteWholeFile(folder / fileName, text);
        return Run();
    }
    PlayRun const& Run() {
        std::string const dialog = opensDialog ? R"(, {"dialog": 4003, "do": [)" + Actions() + R"({"click": 1}]})" : "";
        run = Play(R"({"operation": "import", "level": 1, "answers": [{"dialog": 4063, "do": [{"select": "Formats",
                    "row": )" +
                       std::to_string(formatRow) + R"(}, {"click": 1}]}, {"open": "{dir}/)" + fileName +
                       R"("}, {"save": "{dir}/out.nvt"})" + beforeDialog + dialog + answers + "]}",
                   {{"dir", folder.Path()}});
        EXPECT_EQ(run.failure, "") << acts;
        return run;
    }

    /// Arguments of the store calls of that name, each call one JSON list.
    std::vector<std::string> Calls(std::string_view call) const {
        std::vector<std::string> found;
        for (nlohmann::json const& event : run.Events("store")) {
            if (event.at("call") == call) found.push_back(event.at("args").dump());
        }
        return found;
    }

    /// A field of a control of the column dialog, as it opened or as it was closed.
    nlohmann::json Field(std::string_view event, int id, char const* name) const {
        nlohmann::json const control = run.Control(event, run.Events(event).size() - 1, id);
        return control.at(name);
    }

    /// Values of a channel over all lines, separated by blanks; "-" for no-data, "|" between lines, texts in quotes.
    std::string Values(int channel) const {
        CNorvaFileUtil store;
        if (store.SetFileName(folder / "out.nvt", kReopenStore, nullptr) == 0) return "no store";
        std::string values;
        for (int profile = 0; profile < store.ProfileCount; ++profile) {
            if (profile > 0) values += " |";
            for (long location = 0; location < store.GetProfileLocationNum(profile, 0); ++location) {
                values += (values.empty() ? "" : " ") + Value(store, channel, profile, location);
            }
        }
        return values;
    }

private:
    std::string Actions() const {
        std::string actions;
        for (std::size_t at = 0; at < acts.size();) {
            std::string const act = acts.substr(at, acts.find(';', at) - at);
            at += act.size() + 1;
            std::size_t const equals = act.find('=');
            if (act[0] == '@') {
                actions += R"({"select": "Data Preview", "column": )" + act.substr(1);
            } else if (act[0] == '!') {
                actions += R"({"double": "File Header", "row": )" + act.substr(1);
            } else if (equals != std::string::npos) {
                bool const isLabel = act[0] > '9';
                actions += R"({"set": )" + (isLabel ? '"' + act.substr(0, equals) + '"' : act.substr(0, equals));
                actions += R"(, "to": ")" + act.substr(equals + 1) + '"';
            } else {
                actions += R"({"click": )" + act;
            }
            actions += "}, ";
        }
        return actions;
    }

    static std::string Value(CNorvaFileUtil& store, int channel, int profile, long location) {
        float single = 0;
        double number = 0;
        int integer = 0;
        long longInteger = 0;
        std::string text;
        int type = -1;
        store.GetData(store.GetFileChanIndex(channel), profile, location, single, number, integer, longInteger, text,
                      type);
        std::string const value = ValueText(type, single, number, integer, text);
        return value == "*" ? "-" : value;
    }
};

}  // namespace norva::test
