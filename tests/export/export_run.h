#pragma once

#include "norva/toolkit.h"
#include "support/play.h"
#include "support/store_samples.h"
#include "support/temporary_folder.h"

#include <string>

namespace norva::test {

/// Exports "s.nvt" of the folder to the file `output` of it, everything or what the dialog's actions choose.
inline PlayRun Export(CTemporaryFolder const& folder, std::string const& output,
                      std::string const& actions = R"({"click": 4007}, {"click": 4011}, {"click": 1})",
                      std::string const& later = "") {
    return Play(R"({"operation": "export", "store": "{dir}/s.nvt", "name": "{dir}/proposed.xyz",
                    "answers": [{"save": "{dir}/)" +
                    output + R"("}, {"dialog": 4000, "do": [)" + actions + "]}" + later + "]}",
                {{"dir", folder.Path()}});
}

}  // namespace norva::test
