#pragma once

#include <pybind11/pybind11.h>

#include <string>

namespace norva::python {

/// A proposal for a text file, as a dictionary of the members of norva.Inspection. `options` has the arguments of
/// norva.inspect by name; those that are not in it are found out.
pybind11::dict InspectText(std::string const& path, pybind11::dict const& options);

}  // namespace norva::python
