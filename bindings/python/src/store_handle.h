#pragma once

#include "norva/file_util.h"

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>

#include <mutex>
#include <string>

namespace norva::python {

namespace py = pybind11;

/// An open store, which threads may share: each call has it to itself, and other Python threads run meanwhile.
class CStoreHandle {
public:
    explicit CStoreHandle(std::string path);

    std::string const& Path() const { return m_path; }
    void Close();
    bool IsClosed();
    /// Compares the values with their checksums.
    void Verify();
    /// Tuples (name, locations, locations marked deleted, flag).
    py::list Lines();
    /// Tuples (name, units, data type, array size, elements a location, display format, decimals, template).
    py::list Channels();
    /// The values of a channel as they stand, of all lines: shape (locations,) or (locations, elements), texts as
    /// bytes. Mapped, they are read-only and live as long as the array; otherwise they are read into an array of their
    /// own.
    py::array Values(int channel, bool mapped);
    /// Which locations of all lines are not marked deleted, as booleans; None when none is marked.
    py::object Kept();

private:
    template <typename Call>
    void WithStore(Call call);
    NorvaChannelStruct Description(int channel);

    std::string m_path;
    std::mutex m_mutex;
    CNorvaFileUtil m_store;
    bool m_closed = false;
};

/// Bytes of a store as a str: UTF-8, other bytes escaped the way Python's file names are.
py::str StrOf(std::string_view bytes);

}  // namespace norva::python
