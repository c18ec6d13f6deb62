#pragma once

#include <pybind11/numpy.h>

#include <cstdint>

/// Values of a column as a store has them (contiguous, not aligned, little-endian), made into what Python works with.
namespace norva::python {

namespace py = pybind11;

/// Whether any value is the no-data value of its type.
bool HasMissing(py::array const& values);
/// Which values are no-data; of texts one boolean each.
py::array MissingMask(py::array const& values);
/// A copy with NaN for no-data; whole numbers become doubles.
py::array FilledWithNan(py::array const& values);
/// Decimal years as days since 1970-01-01 in milliseconds; "not a time" for no-data and what is no date.
py::array DatesOf(py::array const& values);
/// Hours as microseconds, rounded; "not a time" for no-data and for more than 64 bits hold.
py::array TimesOf(py::array const& values);
/// Texts without their trailing blanks as an array of str objects; None for no-data, or "" when asked.
py::array TextsOf(py::array const& values, bool missingAsNone);
/// The same as an array of fixed-width characters, "" for no-data; None when the texts are not all ASCII.
py::object AsciiTextsOf(py::array const& values);
/// Days since 1970-01-01 (64-bit integers) as decimal years; no-data for "not a time" and for years before 0.
py::array DecimalYearsOf(py::array_t<std::int64_t> const& days);

}  // namespace norva::python
