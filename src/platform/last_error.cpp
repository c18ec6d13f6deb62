#include "platform/last_error.h"

#include "norva/import_export.h"

#include <cstring>
#include <utility>

namespace norva {

namespace {

thread_local std::string lastError;

}  // namespace

void SetLastErrorText(std::string text) {
    if (lastError.empty()) {
        lastError = std::move(text);
    }
}

void ClearLastErrorText() {
    lastError.clear();
}

std::string SystemErrorText(int error) {
    // Untranslated, so that a message is in one language from end to end.
    char const* const text = strerrordesc_np(error);
    return text != nullptr ? text : "Unknown error " + std::to_string(error);
}

std::string GetLastErrorText() {
    return lastError;
}

char const* GetLibraryVersion() {
    return NORVA_VERSION;
}

}  // namespace norva
