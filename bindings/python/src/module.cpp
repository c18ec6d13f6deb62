#include "column_values.h"
#include "exchange_calls.h"
#include "inspection.h"
#include "settings.h"
#include "store_error.h"
#include "store_handle.h"
#include "store_writing.h"

#include "norva/import_export.h"

#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

namespace norva::python {

namespace {

/// Raises norva.Error, which is a class of Python's.
void RaiseStoreError(std::exception_ptr thrown) {
    try {
        if (thrown) std::rethrow_exception(thrown);
    } catch (CStoreError const& error) {
        py::object const kind = py::module_::import("norva._error").attr(error.isCancelled ? "Cancelled" : "Error");
        py::object const raised = kind(StrOf(error.what), StrOf(error.path), StrOf(error.place), StrOf(error.reason));
        PyErr_SetObject(kind.ptr(), raised.ptr());
    }
}

}  // namespace

PYBIND11_MODULE(_norva, module) {
    module.doc() = "Stores of survey lines and channels; see the package norva.";
    module.attr("library_version") = GetLibraryVersion();
    py::register_exception_translator(&RaiseStoreError);

    py::class_<CStoreHandle>(module, "Store")
        .def(py::init<std::string>(), py::arg("path"))
        .def("close", &CStoreHandle::Close)
        .def_property_readonly("closed", &CStoreHandle::IsClosed)
        .def("verify", &CStoreHandle::Verify)
        .def("lines", &CStoreHandle::Lines)
        .def("channels", &CStoreHandle::Channels)
        .def("values", &CStoreHandle::Values, py::arg("channel"), py::arg("mapped"))
        .def("kept", &CStoreHandle::Kept);
    BindSettings(module);
    module.def("import_into_store", &ImportIntoStore);
    module.def("export_from_store", &ExportFromStore);
    module.def("describe", &Describe);
    module.def("inspect_text", &InspectText);
    module.def("has_missing", &HasMissing, py::arg("values"));
    module.def("missing_mask", &MissingMask, py::arg("values"));
    module.def("filled", &FilledWithNan, py::arg("values"));
    module.def("dates", &DatesOf, py::arg("values"));
    module.def("times", &TimesOf, py::arg("values"));
    module.def("texts", &TextsOf, py::arg("values"), py::arg("missing_as_none"));
    module.def("ascii_texts", &AsciiTextsOf, py::arg("values"));
    module.def("decimal_years", &DecimalYearsOf, py::arg("days"));
    module.def("write_store", &WriteStore, py::arg("path"), py::arg("lines"), py::arg("channels"));
    module.def("mark_deleted", &MarkDeleted, py::arg("path"), py::arg("line"), py::arg("locations"),
               py::arg("deleted"));
}

}  // namespace norva::python
