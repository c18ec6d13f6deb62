#include "store_writing.h"

#include "norva/file_util.h"
#include "store_error.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace norva::python {

namespace {

/// Between two pieces Python may take note of Ctrl+C.
constexpr std::size_t kPiece = std::size_t{16} * 1024 * 1024;

std::string BytesOf(py::handle const& text) {
    return py::cast<std::string>(text);
}

NorvaChannelStruct DescriptionOf(py::tuple const& channel) {
    NorvaChannelStruct description;
    description.name = BytesOf(channel[0]);
    description.units = BytesOf(channel[1]);
    description.dataType = channel[2].cast<int>();
    description.arraySize = channel[3].cast<int>();
    description.recordType = channel[4].cast<bool>() || description.dataType == DataType::kText ? 1 : 0;
    description.displayFormat = channel[5].cast<int>();
    description.decimalPlaces = channel[6].cast<int>();
    description.templateFormat = channel[7].cast<int>();
    return description;
}

void Check(int result, std::string const& path) {
    if (result == 0) ThrowLastError(path);
}

void HandOver(CNorvaFileUtil& store, std::string const& path, py::array const& values) {
    auto const* bytes = static_cast<std::byte const*>(values.data());
    auto left = static_cast<std::size_t>(values.nbytes());
    while (left > 0) {
        std::size_t const piece = std::min(left, kPiece);
        {
            py::gil_scoped_release const others;
            Check(store.WriteHuge(bytes, piece), path);
        }
        bytes += piece;
        left -= piece;
        if (PyErr_CheckSignals() != 0) throw py::error_already_set();
    }
}

}  // namespace

void WriteStore(std::string const& path, py::list const& lines, py::list const& channels) {
    std::vector<NorvaChannelStruct> descriptions;
    std::vector<py::array> columns;
    for (py::handle const channel : channels) {
        auto const parts = py::cast<py::tuple>(channel);
        descriptions.push_back(DescriptionOf(parts));
        columns.push_back(parts[8].cast<py::array>());
        if ((columns.back().flags() & py::array::c_style) == 0) throw py::value_error("the values are not contiguous");
    }
    CNorvaFileUtil store;  // closed early, it leaves nothing behind
    Check(store.SetFileName(path, kCreateStore, nullptr), path);
    for (py::handle const line : lines) {
        auto const parts = py::cast<py::tuple>(line);
        Check(store.AddProfileToStructure(BytesOf(parts[0]), parts[1].cast<long>()), path);
    }
    for (NorvaChannelStruct const& description : descriptions) Check(store.AddChannelToStructure(description), path);
    Check(store.SaveProfileStructure(), path);
    Check(store.SaveChannelStructure(), path);
    Check(store.StartWriteData(), path);
    for (py::array const& column : columns) HandOver(store, path, column);
    py::gil_scoped_release const others;
    Check(store.EndWriteData(), path);
    Check(store.CloseCurFile(), path);
}

void MarkDeleted(std::string const& path, int line, py::array const& locations, bool deleted) {
    auto const numbers = py::array_t<std::int64_t, py::array::c_style | py::array::forcecast>::ensure(locations);
    if (!numbers) throw py::error_already_set();
    std::int64_t const* const first = numbers.data();
    py::ssize_t const count = numbers.size();
    py::gil_scoped_release const others;
    CNorvaFileUtil store;
    Check(store.SetFileName(path, kReopenStore, nullptr), path);
    for (py::ssize_t i = 0; i < count; ++i) Check(store.MarkLocToDelete(line, first[i], deleted ? 1 : 0), path);
    Check(store.CloseCurFile(), path);
}

}  // namespace norva::python
