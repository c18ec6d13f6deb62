#pragma once

#include "norva/status.h"

#include <string>

namespace norva {

/// What the exception that is being handled says of an operation on `path` ("" for none), of which `what` says that it
/// failed. To be called while it is handled. Never throws.
Status StatusOfException(char const* what, std::string const& path) noexcept;

/// The status of `operation`, an exception's included.
template <typename Operation>
Status Guarded(char const* what, std::string const& path, Operation&& operation) noexcept {
    try {
        return operation();
    } catch (...) {
        return StatusOfException(what, path);
    }
}

/// Ends an operation at the exported edge: shows a failure that asks for a message box, keeps any failure's text as the
/// last error, and gives the fixed result.
int Conclude(Status const& status) noexcept;

/// Shows a failure at the place where its message box belongs, and returns it as one that was shown. Success and
/// cancellations pass as they are.
Status Shown(Status status);

/// Guarded() and Conclude() for an operation with the fixed results 1 and 0.
template <typename Operation>
int GuardedResult(char const* what, std::string const& path, Operation&& operation) noexcept {
    int result = 0;
    Status const status = Guarded(what, path, [&] {
        result = operation();
        return Status();
    });
    return Conclude(status) != 0 ? result : 0;
}

}  // namespace norva
