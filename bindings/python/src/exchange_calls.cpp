#include "exchange_calls.h"

#include "common/report_text.h"
#include "norva/exchange.h"
#include "norva/file_description.h"
#include "norva/import_export.h"
#include "store_error.h"
#include "store_handle.h"

#include <optional>

namespace norva::python {

namespace py = pybind11;

namespace {

/// Hands progress to Python and keeps what it raises, Ctrl+C among it, until the library has ended its call.
class CProgressBridge {
public:
    explicit CProgressBridge(py::object const& callback) : m_callback(callback) {}

    ProgressCallback Callback() {
        return [this](ExchangeProgress const& progress) { return GoOn(progress); };
    }
    /// Throws what explains a failure: what was raised, that Python gave up, or what the status says.
    void Check(Status const& status, std::string const& path, std::vector<std::string> const& messages);

private:
    bool GoOn(ExchangeProgress const& progress) {
        py::gil_scoped_acquire const gil;
        if (m_raised) return false;
        try {
            if (PyErr_CheckSignals() != 0) throw py::error_already_set();
            if (m_callback.is_none()) return true;
            py::object const answer = m_callback(StrOf(progress.step), StrOf(progress.channel), progress.percent);
            m_gaveUp = answer.is(py::bool_(false));
            return !m_gaveUp;
        } catch (py::error_already_set& raised) {
            m_raised.emplace(std::move(raised));
            return false;
        }
    }

    py::object const& m_callback;
    std::optional<py::error_already_set> m_raised;
    bool m_gaveUp = false;
};

std::string Joined(std::vector<std::string> const& messages) {
    std::string all;
    for (std::string const& message : messages) all += (all.empty() ? "" : "\n") + message;
    return all;
}

void CProgressBridge::Check(Status const& status, std::string const& path, std::vector<std::string> const& messages) {
    if (m_raised) throw std::move(*m_raised);
    if (status) return;
    CStoreError error(status.What(), status.Path().empty() ? path : status.Path(), status.Place(), status.Reason());
    if (error.reason.empty()) error.reason = Joined(messages);
    error.isCancelled = m_gaveUp;
    throw error;
}

py::list ListOf(std::vector<std::string> const& texts) {
    py::list list;
    for (std::string const& text : texts) list.append(StrOf(text));
    return list;
}

py::object ValueOf(FileDescription::Value const& value) {
    if (auto const* const text = std::get_if<std::string>(&value)) return StrOf(*text);
    if (auto const* const number = std::get_if<double>(&value)) return py::float_(*number);
    return py::int_(std::get<std::int64_t>(value));
}

}  // namespace

py::tuple ImportIntoStore(std::string const& path, std::string const& store, std::string const& format,
                          ImportSettings const& settings, bool replace, bool checksum, py::object const& progress) {
    CProgressBridge bridge(progress);
    ImportRequest request;
    request.inputPath = path;
    request.storePath = store;
    request.format = format;
    request.settings = settings;
    request.replace = replace;
    request.checksum = checksum;
    request.progress = bridge.Callback();
    ImportResult result;
    std::string report;
    Status status;
    {
        py::gil_scoped_release const others;
        bool const isOpen = std::holds_alternative<std::monostate>(settings);
        if (isOpen) status = ProposeSettings(path, format, request.settings);
        if (status) status = ImportFile(request, result);
        if (status) report = ReportJson(result.report).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
    }
    bridge.Check(status, path, result.messages);
    return py::make_tuple(StrOf(report), py::cast(result.settings), ListOf(result.messages));
}

py::list ExportFromStore(std::string const& store, std::string const& path, ExportSettings const& settings,
                         bool replace, py::object const& progress) {
    CProgressBridge bridge(progress);
    ExportRequest request;
    request.storePath = store;
    request.outputPath = path;
    request.settings = settings;
    request.replace = replace;
    request.progress = bridge.Callback();
    ExportResult result;
    Status status;
    {
        py::gil_scoped_release const others;
        status = ExportStore(request, result);
    }
    bridge.Check(status, path, result.messages);
    return ListOf(result.messages);
}

py::tuple Describe(std::string const& path, std::string const& format) {
    FileDescription description;
    DescriptionSettings settings;
    settings.format = format;
    {
        py::gil_scoped_release const others;
        if (DescribeFile(path, settings, description) == 0) {
            throw CStoreError("Couldn't describe the file", path, {}, GetLastErrorText());
        }
    }
    py::dict facts;
    for (auto const& [name, value] : description.facts) facts[StrOf(name)] = ValueOf(value);
    py::dict tables;
    for (FileDescription::Table const& table : description.tables) {
        py::list rows;
        for (auto const& row : table.rows) {
            py::list cells;
            for (auto const& cell : row) cells.append(ValueOf(cell));
            rows.append(py::tuple(cells));
        }
        tables[StrOf(table.name)] = py::make_tuple(ListOf(table.columns), rows);
    }
    return py::make_tuple(StrOf(description.format), facts, tables, StrOf(description.problem));
}

}  // namespace norva::python
