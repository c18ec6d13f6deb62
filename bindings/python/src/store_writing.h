#pragma once

#include <pybind11/numpy.h>

#include <string>

namespace norva::python {

namespace py = pybind11;

/// Writes a store: lines as tuples (name, locations), channels as tuples (name, units, data type, array size, is an
/// array, display format, decimals, template, packed values of all lines as a contiguous array).
void WriteStore(std::string const& path, py::list const& lines, py::list const& channels);

/// Marks locations of a line (numbers from 0, as 64-bit integers) as deleted or not, and saves the store.
void MarkDeleted(std::string const& path, int line, py::array const& locations, bool deleted);

}  // namespace norva::python
