#pragma once

#include "norva/status.h"

#include <string>

namespace norva {

/// The private temporary folder of this thread, below TMPDIR or "/tmp", ending in "/": readable by its user alone,
/// created when first asked for (or when something removed it meanwhile), removed when the thread ends with all that it
/// holds. So files of fixed names are safe from imports in other threads. A forked child gets its own.
Status PrivateTemporaryFolder(std::string& folder);

}  // namespace norva
