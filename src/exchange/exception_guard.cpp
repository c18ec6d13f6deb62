#include "exchange/exception_guard.h"

#include "norva/toolkit.h"
#include "platform/last_error.h"
#include "ui/messages.h"

#include <exception>
#include <new>
#include <utility>

namespace norva {

Status StatusOfException(char const* what, std::string const& path) noexcept {
    try {
        try {
            throw;
        } catch (OperationCancelled const&) {
            return Status::Cancelled();
        } catch (std::bad_alloc const&) {
            return Status::Failure(what, path, "There is not enough memory.");
        } catch (std::exception const& error) {
            return Status::Failure(what, path, error.what());
        } catch (...) {
            return Status::Failure(what, path);
        }
    } catch (...) {  // no memory for the text either
        return Status::Cancelled();
    }
}

int Conclude(Status const& status) noexcept {
    if (status) return 1;
    try {
        if (status.IsSilent()) {
            SetLastErrorText(status.Text());
        } else {
            ShowMessage(status.Text());
        }
    } catch (...) {  // the toolkit cannot show it: the result alone has to tell
    }
    return 0;
}

Status Shown(Status status) {
    if (status || status.IsSilent()) return status;
    ShowMessage(status.Text());
    return std::move(status).Silent();
}

}  // namespace norva
