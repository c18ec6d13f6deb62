#pragma once

#include "norva/settings.h"

#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

/// A channel's description is a norva.Channel in Python.
namespace pybind11::detail {

template <>
struct type_caster<norva::NorvaChannelStruct> {
    PYBIND11_TYPE_CASTER(norva::NorvaChannelStruct, const_name("norva.Channel"));

    bool load(handle source, bool convert);
    static handle cast(norva::NorvaChannelStruct const& channel, return_value_policy policy, handle parent);
};

}  // namespace pybind11::detail

namespace norva::python {

/// The settings of imports and exports as classes, each made from names and values of its members.
void BindSettings(pybind11::module_& module);

}  // namespace norva::python
