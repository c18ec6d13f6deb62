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

std::string FileErrorText(std::string_view act, std::string_view path, int error) {
    std::string text = "Couldn't ";
    text.append(act).append(" the file : ").append(path).append("\n").append(SystemErrorText(error));
    return text;
}

std::string GetLastErrorText() {
    return lastError;
}

char const* GetLibraryVersion() {
    return NORVA_VERSION;
}

}  // namespace norva
