#pragma once

#include "norva/file_util.h"
#include "platform/numbers.h"
#include "store/value_rules.h"
#include "support/play.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace norva::test {

inline std::string const kContinue = R"({"click": 1})";

/// One import of a file through the exported function; what it described and stored.
class CTextImportRun {
public:
    std::string fileName = "in.xyz";
    int formatRow = 0;
    std::string actions = kContinue;  ///< of the column dialog
    std::string answers;              ///< after it, each with a comma before it
    std::string beforeDialog;         ///< answers before it, each with a comma behind it
    bool opensDialog = true;

    PlayRun const& Run(std::string_view text) {
        WriteWholeFile(folder / fileName, text);
        return Run();
    }
    PlayRun const& Run() {
        std::string const dialog = opensDialog ? R"(, {"dialog": 4003, "do": [)" + actions + "]}" : "";
        run = Play(R"({"operation": "import", "level": 1, "answers": [{"dialog": 4063, "do": [{"select": "Formats",
                    "row": )" +
                       std::to_string(formatRow) + R"(}, {"click": 1}]}, {"open": "{dir}/)" + fileName +
                       R"("}, {"save": "{dir}/out.nvt"})" + beforeDialog + dialog + answers + "]}",
                   {{"dir", folder.Path()}});
        EXPECT_EQ(run.failure, "");
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

    CTemporaryFolder folder;
    PlayRun run;

private:
    static std::string Value(CNorvaFileUtil& store, int channel, int profile, long location) {
        float single = 0;
        double number = 0;
        int integer = 0;
        long longInteger = 0;
        std::string text;
        int type = -1;
        if (store.GetData(store.GetFileChanIndex(channel), profile, location, single, number, integer, longInteger,
                          text, type) == 0) {
            return "none";
        }
        std::string out;
        if (type == DataType::kText) return "'" + text + "'";
        if (type == DataType::kFloat) {
            if (IsNoData(single)) return "-";
            AppendShortest(out, single);
        } else if (type == DataType::kDouble) {
            if (IsNoData(number)) return "-";
            AppendShortest(out, number);
        } else {
            if (integer == (type == DataType::kShort ? kNoDataShort : kNoDataLong)) return "-";
            AppendInteger(out, integer);
        }
        return out;
    }
};

}  // namespace norva::test
