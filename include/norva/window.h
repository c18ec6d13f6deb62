#pragma once

#include "norva/api.h"

#include <cstdint>

namespace norva {

/// Text of a key, one space and a value, sent to a progress window; the second parameter is a `char const*`.
inline constexpr unsigned WM_PROGRESS_TEXT = 0x410;
/// Two texts sent to the owner window of an import; both parameters are a `char const*`.
inline constexpr unsigned WM_OWNER_NOTICE = 0x411;

/// A thing that takes messages: a host's main window, a dialog of the library.
class NORVA_API CWindow {
public:
    CWindow() = default;
    CWindow(CWindow const&) = delete;
    CWindow& operator=(CWindow const&) = delete;
    virtual ~CWindow();

    /// Handles `message` before it returns. The result means what the message says; 0 for messages not known.
    virtual std::intptr_t SendMessage(unsigned message, std::intptr_t first, std::intptr_t second);
};

/// Parameter of a message that carries a zero-terminated text.
inline std::intptr_t TextParameter(char const* text) {
    return reinterpret_cast<std::intptr_t>(text);
}

}  // namespace norva
