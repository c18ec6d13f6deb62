#pragma once

#include <string>

namespace norva {

/// Shows what an exception said, to be called while it is handled: `failure` says what failed. Never throws.
void ShowCurrentException(std::string const& failure) noexcept;

/// Result of `operation`, or 0 after a message when it throws.
template <typename Operation>
int RunGuarded(char const* failure, std::string const& subject, Operation&& operation) noexcept {
    try {
        return operation();
    } catch (...) {
        try {
            ShowCurrentException(failure + subject);
        } catch (...) {  // no memory for the text either
        }
        return 0;
    }
}

}  // namespace norva
