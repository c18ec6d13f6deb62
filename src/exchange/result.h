#pragma once

#include "norva/status.h"

namespace norva {

/// The status behind one of the fixed results: success for 1; for 0 a failure that was shown where it had to be, with
/// the last error as its text.
Status ResultOf(int result);

}  // namespace norva
