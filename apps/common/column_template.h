#pragma once

#include "norva/column_text.h"

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

/// Settings of columns that are kept in a file and used for the next survey file.
namespace norva {

struct ColumnTemplate {
    ColumnTextSettings settings;
    int headerLine = 0;      ///< line with text (from 1) that holds the columns' names; 0 for none
    std::string headerText;  ///< that line
};

/// The settings with the line that named the columns, if there is one.
ColumnTemplate TemplateOf(CColumnTextDraft const& draft);

/// How the draft's file differs from the files that the template was made for, one sentence each: another header line,
/// another number of columns, first rows that the types cannot hold. Empty when it fits.
std::vector<std::string> TemplateMisfits(ColumnTemplate const& columns, CColumnTextDraft const& draft);

/// Whether a template is held against a file first, or known to belong to it.
enum class TemplateFit { Checked, Trusted };

/// Gives the draft the template's settings; throws CommandError with the misfits, and leaves the draft as it was.
void ApplyTemplate(ColumnTemplate const& columns, CColumnTextDraft& draft, TemplateFit fit = TemplateFit::Checked);

/// As templates are kept: types and formats by their names, so that a person can change them.
nlohmann::ordered_json TemplateJson(ColumnTemplate const& columns);
/// Throws CommandError with `path` when it is none.
ColumnTemplate TemplateFromJson(nlohmann::json const& json, std::string const& path);

/// The path of a template named by its path (with a "/" or ending in ".json") or by its name in the user's folder,
/// $XDG_CONFIG_HOME/norva/templates.
std::string TemplatePath(std::string const& nameOrPath);
/// Names of the user's own templates, sorted.
std::vector<std::string> TemplateNames();

/// Both throw CommandError with the path and the reason.
ColumnTemplate ReadTemplate(std::string const& path);
void WriteTemplate(std::string const& path, ColumnTemplate const& columns);

}  // namespace norva
