#pragma once

#include "norva/file_util.h"
#include "norva/import_export.h"
#include "norva/status.h"
#include "platform/last_error.h"

#include <utility>

namespace norva {

/// Runs an operation on a store, which gives 0 when it fails, and makes a status of it. No message box belongs to it;
/// its reason is the text that the store has left in this call, if it has left any.
template <typename Operation>
Status CallStore(CNorvaFileUtil& store, Operation&& operation) {
    ClearLastErrorText();
    if (std::forward<Operation>(operation)() != 0) return {};
    std::string text = GetLastErrorText();
    Status status = text.empty() ? Status::Failure("Couldn't write the file", store.GetNorvaFileName())
                                 : Status::Failure(std::move(text));
    return std::move(status).Silent();
}

}  // namespace norva
