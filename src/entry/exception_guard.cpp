#include "entry/exception_guard.h"

#include "ui/messages.h"

#include <exception>
#include <new>

namespace norva {

void ShowCurrentException(std::string const& failure) noexcept {
    try {
        try {
            throw;
        } catch (std::bad_alloc const&) {
            ShowMessage(failure + "\nThere is not enough memory.");
        } catch (std::exception const& error) {
            ShowMessage(failure + "\n" + error.what());
        } catch (...) {
            ShowMessage(failure);
        }
    } catch (...) {  // the toolkit cannot show it: the result alone has to tell
    }
}

}  // namespace norva
