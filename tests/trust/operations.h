#pragma once

#include "common/script_json.h"
#include "norva/import_export.h"
#include "norva/toolkit.h"
#include "support/store_samples.h"
#include "support/temporary_folder.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace norva::test {

/// Something that a host does with the files of a folder, which makes or changes one of them.
struct Operation {
    std::string name;
    std::string target;                                         ///< the file that is made or changed
    std::vector<std::pair<std::string, std::string>> inputs{};  ///< name and bytes of files that stand there before
    std::vector<ScriptAnswer> answers{};
    std::function<bool()> run{};
};

inline std::string ImportScript(int row, std::string const& input, std::string const& dialog) {
    return R"({"operation": "import", "answers": [{"dialog": 4063, "do": [{"double": "Formats", "row": )" +
           std::to_string(row) + R"(}]}, {"open": "{dir}/)" + input + R"("}, {"save": "{dir}/out.nvt"})" + dialog +
           "]}";
}

/// Imports, with the column dialogs as they come up, of every format; exports of every type; a mark and a sort. The
/// files stand in `folder`.
inline std::vector<Operation> AllOperations(std::string const& folder) {
    auto const answers = [folder](std::string const& script) { return ParseScript(script, {{"dir", folder}}).answers; };
    std::vector<Operation> all;
    auto const import = [&](std::string const& name, int row, std::string const& input, std::string bytes,
                            std::string const& dialog = "") {
        Operation one{"Import" + name, "out.nvt", {{input, std::move(bytes)}}};
        one.answers = answers(ImportScript(row, input, dialog));
        one.run = [] {
            CNorvaFileUtil store;
            std::string made;
            return Import_Data_File(&store, made, nullptr, 1) != 0;
        };
        all.push_back(std::move(one));
    };
    auto const seed = [](std::string const& name) { return ReadWholeFile(NORVA_SEEDS "/" + name); };
    std::string const text = "/ X Y Mag Date\nLINE 10\n1 2 3.5 2024/01/31\n2 3 * 2024/02/01\nLINE 20\n4 5 6 *\n";
    import("Xyz", 0, "in.xyz", text);
    import("Csv", 1, "in.csv", "Line,X,Remark\n1,2.5,a\n1,3.5,b\n2,4.5,c\n");
    import("Cg5", 6, "in.txt", text);
    // More than the buffers of its columns hold.
    import("Binary", 3, "in.bin", std::string(140'000, 'b'),
           R"(, {"dialog": 4004, "do": [{"set": 5002, "to": "2"}, {"click": 5003}, {"click": 5005}, {"click": 5009},
               {"click": 5013}, {"click": 5016}, {"click": 1}]})");
    import("Gbn", 4, "in.gbn", seed("gbn_codec/types"));
    import("Cg3", 5, "in.dmp", seed("cg3/small"));
    import("Ipr12", 7, "in.dmp", seed("ipr12/small"));
    import("SeaSpy", 8, "in.mag", seed("seaspy/small"));
    std::string log;  // longer than a reader's buffer, and read more than once
    while (log.size() < 300'000) log += seed("seaspy/small");
    import("SeaSpyLong", 8, "in.mag", log);
    import("Tki", 9, "in.p01", seed("tki/lines"));
    import("Gpx", 10, "in.gpx", seed("gpx/neat"));

    std::string const store = seed("store/every_type");
    for (std::string const target : {"out.xyz", "out.xls", "out.gbn", "out.nvt", "s.nvt"}) {
        Operation one{"Export" + target.substr(0, target.find('.')) + target.substr(target.find('.') + 1),
                      target,
                      {{"s.nvt", store}}};
        one.answers =
            answers(R"({"operation": "export", "store": "", "name": "", "answers": [{"save": "{dir}/)" + target +
                    R"("}, {"dialog": 4000, "do": [{"click": 4007}, {"click": 4011}, {"click": 1}]}]})");
        one.run = [folder] {
            CNorvaFileUtil source;
            std::string made;
            return source.SetFileName(folder + "/s.nvt", kReopenStore, nullptr) != 0 &&
                   Export_Data_File(&source, "", made, nullptr) != 0;
        };
        all.push_back(std::move(one));
    }
    auto const change = [&](char const* name, bool (*act)(CNorvaFileUtil&)) {
        Operation one{name, "s.nvt", {{"s.nvt", store}}};
        one.run = [folder, act] {
            CNorvaFileUtil changed;
            return changed.SetFileName(folder + "/s.nvt", kReopenStore, nullptr) != 0 && act(changed) &&
                   changed.CloseCurFile() != 0;
        };
        all.push_back(std::move(one));
    };
    change("Mark", [](CNorvaFileUtil& s) { return s.MarkLocToDelete(1, 2, 1) != 0 && s.SetProfileFlag(0, 1) != 0; });
    change("Sort", [](CNorvaFileUtil& s) { return s.SortByChannel(nullptr, 1, 1, -1, 1, -1) != 0; });
    return all;
}

}  // namespace norva::test
