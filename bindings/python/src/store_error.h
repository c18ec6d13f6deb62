#pragma once

#include <exception>
#include <string>
#include <utility>

namespace norva::python {

/// What becomes a norva.Error.
class CStoreError : public std::exception {
public:
    CStoreError(std::string what, std::string path, std::string place, std::string reason)
        : what(std::move(what)), path(std::move(path)), place(std::move(place)), reason(std::move(reason)) {}

    std::string what;    ///< what failed: "Couldn't open the store"
    std::string path;    ///< the file; empty when it is about none
    std::string place;   ///< line, channel or row; empty when it is about the whole
    std::string reason;  ///< why
    bool isCancelled = false;
};

/// Throws what the store's last operation on this thread left as its error.
[[noreturn]] void ThrowLastError(std::string const& path);

}  // namespace norva::python
