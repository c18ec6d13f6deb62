#pragma once

#include "common/script_json.h"
#include "norva/import_export.h"
#include "norva/toolkit.h"
#include "support/play.h"
#include "support/store_samples.h"
#include "support/temporary_folder.h"

#include <string>
#include <utility>
#include <vector>

namespace norva::test {

inline constexpr char const* kAll = R"({"click": 4007}, {"click": 4011}, {"click": 1})";

/// An export of "s.nvt" of the folder "dir" to `output` there, with the dialog's actions and the answers after it.
inline std::string ExportScript(std::string const& output, std::string const& actions, std::string const& later) {
    return R"({"operation": "export", "store": "{dir}/s.nvt", "name": "{dir}/proposed.xyz", "answers":
               [{"save": "{dir}/)" +
           output + R"("}, {"dialog": 4000, "do": [)" + actions + "]}" + later + "]}";
}

inline PlayRun Export(CTemporaryFolder const& folder, std::string const& output, std::string const& actions = kAll,
                      std::string const& later = "") {
    return Play(ExportScript(output, actions, later), {{"dir", folder.Path()}});
}

/// Exports everything of a store that a host put in the library's place.
inline int ExportStore(CNorvaFileUtil& store, CTemporaryFolder const& folder, std::string const& output) {
    CScriptedToolkit toolkit(ParseScript(ExportScript(output, kAll, ""), {{"dir", folder.Path()}}).answers, false,
                             nullptr);
    CToolkitScope const scope(toolkit);
    std::string newStore;
    return Export_Data_File(&store, "", newStore, nullptr);
}

/// Writes a store with some of its locations, given as line and location, marked deleted; false when that fails.
inline bool WriteStore(std::string const& path, StoreSample const& sample,
                       std::vector<std::pair<int, long>> const& deleted) {
    CNorvaFileUtil store;
    if (!WriteSample(store, path, sample) || store.SetFileName(path, kReopenStore, nullptr) == 0) return false;
    for (auto const& [line, location] : deleted) store.MarkLocToDelete(line, location, 1);
    return store.CloseCurFile() != 0;
}

}  // namespace norva::test
