#include "platform/last_error.h"

#include "norva/import_export.h"

#include <system_error>

namespace norva {

namespace {

thread_local std::string g_lastError;

}  // namespace

void SetLastErrorText(std::string text) {
    if (g_lastError.empty()) g_lastError = std::move(text);
}

void ClearLastErrorText() {
    g_lastError.clear();
}

std::string SystemErrorText(int error) {
    return std::generic_category().message(error);
}

std::string GetLastErrorText() {
    return g_lastError;
}

char const* GetLibraryVersion() {
    return NORVA_VERSION;
}

}  // namespace norva
