#pragma once

#include "common/column_template.h"
#include "import_options.h"
#include "norva/formats.h"
#include "norva/inspection.h"

#include <nlohmann/json.hpp>

#include <string>

/// The import of a text by a proposal from the whole file. Everything throws CommandError.
namespace norva {

/// Whether files of the format are imported so where the options leave it open.
bool IsProposed(ImportFormatInfo const& format);

/// Whether this import goes by a proposal. Ends the command for options that do not go together.
bool GoesByProposal(ImportOptions const& options, ImportFormatInfo const& format);

/// The proposal for a file of the format (a label) with what the options settle; findings that they settle are no
/// doubts.
Inspection ProposeImport(ImportOptions const& options, std::string const& input, std::string const& format);

/// The separator, the line of the names, what starts a line, and every doubt, a line each.
std::string ShortText(Inspection const& proposal);
/// "norva import ..." with every choice of the proposal as an option.
std::string CommandLineOf(Inspection const& proposal, ImportOptions const& options, std::string const& input);
nlohmann::ordered_json ProposalJson(Inspection const& proposal, std::string const& command);

ColumnTemplate TemplateOf(Inspection const& proposal);

}  // namespace norva
