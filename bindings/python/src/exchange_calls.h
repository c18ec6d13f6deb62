#pragma once

#include "settings.h"

#include <string>

namespace norva::python {

/// Imports a file into a new store. `progress` is None or a callable of (step, channel, percent), which cancels by
/// returning False. Gives (report as JSON text, settings that were used, messages).
pybind11::tuple ImportIntoStore(std::string const& path, std::string const& store, std::string const& format,
                                ImportSettings const& settings, bool replace, bool checksum,
                                pybind11::object const& progress);

/// Writes a store in the form that the extension of `path` names. Gives the messages.
pybind11::list ExportFromStore(std::string const& store, std::string const& path, ExportSettings const& settings,
                               bool replace, pybind11::object const& progress);

/// What a file of any format holds, without importing it, as (format, facts, tables, problem).
pybind11::tuple Describe(std::string const& path, std::string const& format);

}  // namespace norva::python
