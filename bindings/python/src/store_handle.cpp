#include "store_handle.h"

#include "store_error.h"

#include <memory>
#include <span>
#include <vector>

namespace norva::python {

namespace {

py::dtype TypeOf(NorvaChannelStruct const& channel) {
    switch (channel.dataType) {
        case DataType::kFloat:
            return py::dtype("<f4");
        case DataType::kDouble:
            return py::dtype("<f8");
        case DataType::kShort:
            return py::dtype("<i2");
        case DataType::kText:
            return py::dtype("S" + std::to_string(channel.arraySize));
        default:
            return py::dtype("<i4");
    }
}

/// Keeps what a mapped array shows.
py::capsule CapsuleOf(std::shared_ptr<void const> owner) {
    auto held = std::make_unique<std::shared_ptr<void const>>(std::move(owner));
    py::capsule capsule(held.get(), [](void* kept) { delete static_cast<std::shared_ptr<void const>*>(kept); });
    static_cast<void>(held.release());
    return capsule;
}

}  // namespace

py::str StrOf(std::string_view bytes) {
    PyObject* const text = PyUnicode_DecodeUTF8(bytes.data(), static_cast<Py_ssize_t>(bytes.size()), "surrogateescape");
    if (text == nullptr) throw py::error_already_set();
    return py::reinterpret_steal<py::str>(text);
}

template <typename Call>
void CStoreHandle::WithStore(Call call) {
    py::gil_scoped_release const others;
    std::lock_guard const lock(m_mutex);
    if (m_closed) throw CStoreError("Couldn't read the store", m_path, {}, "it was closed");
    call();
}

CStoreHandle::CStoreHandle(std::string path) : m_path(std::move(path)) {
    WithStore([&] {
        if (m_store.SetFileName(m_path, kReopenStore, nullptr) == 0) ThrowLastError(m_path);
    });
}

void CStoreHandle::Close() {
    py::gil_scoped_release const others;
    std::lock_guard const lock(m_mutex);
    m_closed = true;
    m_store.CloseCurFile();
}

bool CStoreHandle::IsClosed() {
    py::gil_scoped_release const others;
    std::lock_guard const lock(m_mutex);
    return m_closed;
}

void CStoreHandle::Verify() {
    WithStore([&] {
        if (m_store.VerifyData() == 0) ThrowLastError(m_path);
    });
}

py::list CStoreHandle::Lines() {
    struct Line {
        std::string name;
        long locations = 0;
        long kept = 0;
        int flag = 0;
    };
    std::vector<Line> lines;
    WithStore([&] {
        lines.resize(static_cast<std::size_t>(m_store.ProfileCount));
        for (int at = 0; at < m_store.ProfileCount; ++at) {
            Line& line = lines[static_cast<std::size_t>(at)];
            m_store.GetProfileInfo(at, line.name, line.locations, line.flag);
            line.kept = m_store.GetProfileLocationNum(at, 1);
        }
    });
    py::list result;
    for (Line const& line : lines) {
        result.append(py::make_tuple(StrOf(line.name), line.locations, line.locations - line.kept, line.flag));
    }
    return result;
}

NorvaChannelStruct CStoreHandle::Description(int channel) {
    NorvaChannelStruct description;
    description.name = m_store.GetChannelName(channel);
    description.units = m_store.GetChannelUnits(channel);
    description.dataType = m_store.GetChannelDataType(channel);
    description.recordType = m_store.GetChannelRecordType(channel);
    description.arraySize = m_store.GetChannelArraySize(channel);
    description.displayFormat = m_store.GetChannelDisplayFormat(channel);
    description.decimalPlaces = m_store.GetChannelNumDecPlaces(channel);
    description.templateFormat = m_store.GetChannelTemplateFormat(channel);
    return description;
}

py::list CStoreHandle::Channels() {
    std::vector<NorvaChannelStruct> channels;
    WithStore([&] {
        for (int at = 0; at < m_store.ChannelCount; ++at) channels.push_back(Description(at));
    });
    py::list result;
    for (NorvaChannelStruct const& channel : channels) {
        bool const isArray = channel.recordType == 1 && channel.dataType != DataType::kText;
        result.append(py::make_tuple(StrOf(channel.name), StrOf(channel.units), channel.dataType, channel.arraySize,
                                     isArray, channel.displayFormat, channel.decimalPlaces, channel.templateFormat));
    }
    return result;
}

py::array CStoreHandle::Values(int channel, bool mapped) {
    NorvaChannelStruct description;
    std::size_t width = 0;
    py::ssize_t locations = 0;
    std::vector<long> counts;
    std::shared_ptr<void const> owner;
    std::span<std::byte const> values;
    WithStore([&] {
        if (channel < 0 || channel >= m_store.ChannelCount) {
            throw CStoreError("Couldn't read the store", m_path, "channel " + std::to_string(channel),
                              "there is no such channel");
        }
        description = Description(channel);
        width = m_store.GetChannelValueSize(channel);
        for (int line = 0; line < m_store.ProfileCount; ++line) {
            counts.push_back(m_store.GetProfileLocationNum(line, 0));
            locations += counts.back();
        }
        if (mapped && m_store.MapColumn(channel, owner, values) == 0) ThrowLastError(m_path);
    });
    py::dtype const type = TypeOf(description);
    std::vector<py::ssize_t> shape = {locations};
    auto const elements = static_cast<py::ssize_t>(width) / type.itemsize();
    if (description.recordType == 1 && description.dataType != DataType::kText) shape.push_back(elements);
    if (mapped) {
        py::array array(type, shape, values.data(), CapsuleOf(std::move(owner)));
        array.attr("flags").attr("writeable") = false;
        return array;
    }
    py::array array(type, shape);
    auto* out = static_cast<char*>(array.mutable_data());
    WithStore([&] {
        for (std::size_t line = 0; line < counts.size(); ++line) {
            if (m_store.ReadColumn(channel, static_cast<int>(line), 0, counts[line], out) == 0) ThrowLastError(m_path);
            out += static_cast<std::size_t>(counts[line]) * width;
        }
    });
    return array;
}

py::object CStoreHandle::Kept() {
    py::ssize_t locations = 0;
    bool anyMarked = false;
    WithStore([&] {
        for (int line = 0; line < m_store.ProfileCount; ++line) {
            locations += m_store.GetProfileLocationNum(line, 0);
            anyMarked = anyMarked || m_store.GetProfileLocationNum(line, 0) != m_store.GetProfileLocationNum(line, 1);
        }
    });
    if (!anyMarked) return py::none();
    py::array_t<bool> kept(locations);
    bool* out = kept.mutable_data();
    WithStore([&] {
        for (int line = 0; line < m_store.ProfileCount; ++line) {
            long const count = m_store.GetProfileLocationNum(line, 0);
            for (long at = 0; at < count; ++at) *out++ = m_store.IsLocMarkedToDelete(line, at) == 0;
        }
    });
    return kept;
}

}  // namespace norva::python
