#pragma once

#include "norva/settings.h"

#include <nlohmann/json.hpp>

namespace norva {

/// Settings of an import without loss, as reports keep them: {"kind": "GBN", ...}; null for the empty state.
nlohmann::ordered_json SettingsJson(ImportSettings const& settings);
/// Throws nlohmann::json::exception or CommandError for anything else.
ImportSettings SettingsFromJson(nlohmann::json const& json);

}  // namespace norva
