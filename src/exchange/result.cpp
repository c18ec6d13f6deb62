#include "exchange/result.h"

#include "norva/import_export.h"

namespace norva {

Status ResultOf(int result) {
    if (result != 0) return {};
    return Status::Failure(GetLastErrorText()).Silent();
}

}  // namespace norva
