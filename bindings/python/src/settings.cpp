#include "settings.h"

#include "store_handle.h"

namespace pybind11::detail {

using norva::NorvaChannelStruct;

bool type_caster<NorvaChannelStruct>::load(handle source, bool /*convert*/) {
    object const convert = module_::import("norva._survey").attr("channel_codes");
    if (!isinstance(source, module_::import("norva._survey").attr("Channel"))) return false;
    auto const codes = convert(source).cast<tuple>();
    value.name = codes[0].cast<std::string>();
    value.units = codes[1].cast<std::string>();
    value.dataType = codes[2].cast<int>();
    value.arraySize = codes[3].cast<int>();
    value.recordType = codes[4].cast<bool>() || value.dataType == norva::DataType::kText ? 1 : 0;
    value.displayFormat = codes[5].cast<int>();
    value.decimalPlaces = codes[6].cast<int>();
    value.templateFormat = codes[7].cast<int>();
    return true;
}

handle type_caster<NorvaChannelStruct>::cast(NorvaChannelStruct const& channel, return_value_policy /*policy*/,
                                             handle /*parent*/) {
    bool const isArray = channel.recordType == 1 && channel.dataType != norva::DataType::kText;
    object const convert = module_::import("norva._survey").attr("channel_of");
    return convert(norva::python::StrOf(channel.name), norva::python::StrOf(channel.units), channel.dataType,
                   channel.arraySize, isArray, channel.displayFormat, channel.decimalPlaces, channel.templateFormat)
        .release();
}

}  // namespace pybind11::detail

namespace norva::python {

namespace py = pybind11;

namespace {

/// The names of Channel.type.
std::string TypeName(int code) {
    return py::module_::import("norva._survey").attr("TYPES").attr("get")(code, "unknown").cast<std::string>();
}
int TypeCode(std::string const& name) {
    py::object const code = py::module_::import("norva._survey").attr("TYPE_CODES").attr("get")(name);
    if (code.is_none()) throw py::value_error("there is no type \"" + name + "\"");
    return code.cast<int>();
}

/// A class that is made with its members by name and compares by value.
template <typename Settings>
py::class_<Settings> Bind(py::module_& module, char const* name, char const* meaning) {
    py::class_<Settings> bound(module, name, meaning);
    bound.def(py::init<>([](py::kwargs const& members) {
        py::object const made = py::cast(Settings{});
        for (auto const& [member, value] : members) {
            if (!py::hasattr(made, member)) {
                throw py::type_error("there is no setting '" + py::cast<std::string>(member) + "'");
            }
            py::setattr(made, member, value);
        }
        return made.cast<Settings>();
    }));
    bound.def("__eq__", [](Settings const& one, Settings const& other) { return one == other; });
    bound.attr("__hash__") = py::none();
    return bound;
}

}  // namespace

void BindSettings(py::module_& module) {
    auto reading = Bind<TextReading>(module, "TextReading", "How a text file is read where its rows do not say it.");
    py::enum_<TextReading::Encoding>(reading, "Encoding")
        .value("UTF8", TextReading::Encoding::Utf8)
        .value("LATIN1", TextReading::Encoding::Latin1)
        .value("UTF16_LITTLE", TextReading::Encoding::Utf16Little)
        .value("UTF16_BIG", TextReading::Encoding::Utf16Big);
    reading.def_readwrite("encoding", &TextReading::encoding)
        .def_readwrite("separator", &TextReading::separator)
        .def_readwrite("quote", &TextReading::quote)
        .def_readwrite("backslash_quote", &TextReading::backslashQuote)
        .def_readwrite("quotes_every_row", &TextReading::quotesEveryRow)
        .def_readwrite("decimal_mark", &TextReading::decimalMark)
        .def_readwrite("width", &TextReading::width)
        .def_readwrite("trailing_separator", &TextReading::trailingSeparator)
        .def_readwrite("comment_marks", &TextReading::commentMarks)
        .def_readwrite("missing", &TextReading::missing)
        .def_readwrite("first_data_line", &TextReading::firstDataLine)
        .def_readwrite("first_marker_line", &TextReading::firstMarkerLine)
        .def_readwrite("header_text", &TextReading::headerText)
        .def_readwrite("marker_words", &TextReading::markerWords);

    auto column = Bind<ColumnReading>(module, "ColumnReading", "What a column needs beyond its channel.");
    py::enum_<ColumnReading::Form>(column, "Form")
        .value("PLAIN", ColumnReading::Form::Plain)
        .value("DATE", ColumnReading::Form::Date)
        .value("TIME", ColumnReading::Form::Time)
        .value("DATE_TIME", ColumnReading::Form::DateTime)
        .value("DAY_OF_YEAR", ColumnReading::Form::DayOfYear)
        .value("COMPACT_DATE", ColumnReading::Form::CompactDate)
        .value("COMPACT_TIME", ColumnReading::Form::CompactTime)
        .value("EPOCH_SECONDS", ColumnReading::Form::EpochSeconds)
        .value("DEGREES", ColumnReading::Form::Degrees)
        .value("PACKED_MINUTES", ColumnReading::Form::PackedMinutes);
    column.def_readwrite("source", &ColumnReading::source)
        .def_readwrite("form", &ColumnReading::form)
        .def_readwrite("order", &ColumnReading::order)
        .def_readwrite("missing", &ColumnReading::missing)
        .def_readwrite("epoch_divisor", &ColumnReading::epochDivisor);

    auto look = Bind<ColumnLook>(module, "ColumnLook", "What most cells of a column of the file look like.");
    py::enum_<ColumnLook::Kind>(look, "Kind")
        .value("EMPTY", ColumnLook::Kind::Empty)
        .value("TEXT", ColumnLook::Kind::Text)
        .value("NUMBER", ColumnLook::Kind::Number)
        .value("DATE", ColumnLook::Kind::Date)
        .value("TIME", ColumnLook::Kind::Time)
        .value("DATE_TIME", ColumnLook::Kind::DateTime)
        .value("POSITION", ColumnLook::Kind::Position);
    look.def_readwrite("kind", &ColumnLook::kind)
        .def_readwrite("usual_length", &ColumnLook::usualLength)
        .def_readwrite("has_blanks", &ColumnLook::hasBlanks)
        .def_readwrite("has_digits", &ColumnLook::hasDigits)
        .def_readwrite("is_quoted", &ColumnLook::isQuoted)
        .def_readwrite("suffix", &ColumnLook::suffix);

    Bind<ColumnTextSettings>(module, "ColumnTextSettings", "Columns of text: XYZ, CSV, and what becomes rows of text.")
        .def_readwrite("skip", &ColumnTextSettings::skip)
        .def_readwrite("columns", &ColumnTextSettings::columns)
        .def_readwrite("label_column", &ColumnTextSettings::labelColumn)
        .def_readwrite("reading", &ColumnTextSettings::reading)
        .def_readwrite("column_readings", &ColumnTextSettings::columnReadings)
        .def_readwrite("looks", &ColumnTextSettings::looks);
    Bind<SeaSpySettings>(module, "SeaSpySettings", "A SeaSPY log.")
        .def_readwrite("columns", &SeaSpySettings::columns)
        .def_readwrite("interpolated", &SeaSpySettings::interpolated);
    Bind<Cg3Settings>(module, "Cg3Settings", "A gravity meter dump.")
        .def_readwrite("columns", &Cg3Settings::columns)
        .def_readwrite("date_format", &Cg3Settings::dateFormat)
        .def_readwrite("time_format", &Cg3Settings::timeFormat)
        .def_readwrite("sort_by_time", &Cg3Settings::sortByTime);

    auto record = Bind<RecordChannel>(module, "RecordChannel", "One channel of a fixed-length binary record.");
    py::enum_<RecordChannel::Format>(record, "Format")
        .value("NONE", RecordChannel::Format::None)
        .value("INT32", RecordChannel::Format::Int32)
        .value("FLOAT", RecordChannel::Format::Float)
        .value("DOUBLE", RecordChannel::Format::Double)
        .value("INT16", RecordChannel::Format::Int16);
    record.def_readwrite("name", &RecordChannel::name)
        .def_readwrite("units", &RecordChannel::units)
        .def_readwrite("format", &RecordChannel::format)
        .def_property(
            "type", [](RecordChannel const& channel) { return TypeName(channel.dataType); },
            [](RecordChannel& channel, std::string const& type) { channel.dataType = TypeCode(type); });
    Bind<RecordSettings>(module, "RecordSettings", "A file of fixed-length binary records.")
        .def_readwrite("channels", &RecordSettings::channels)
        .def_readwrite("records", &RecordSettings::records)
        .def_readwrite("points_per_line", &RecordSettings::pointsPerLine)
        .def_readwrite("fiducial", &RecordSettings::fiducial)
        .def_readwrite("frequency", &RecordSettings::frequency);

    auto gbn = Bind<GbnSettings>(module, "GbnSettings", "A GBN file; lists that are None mean all.");
    Bind<GbnSettings::Channel>(module, "GbnChannel", "What a channel of a GBN file becomes other than it stands.")
        .def_readwrite("number", &GbnSettings::Channel::number)
        .def_readwrite("name", &GbnSettings::Channel::name)
        .def_readwrite("units", &GbnSettings::Channel::units)
        .def_property(
            "type",
            [](GbnSettings::Channel const& channel) {
                return channel.dataType ? std::optional(TypeName(*channel.dataType)) : std::nullopt;
            },
            [](GbnSettings::Channel& channel, std::optional<std::string> const& type) {
                channel.dataType = type ? std::optional(TypeCode(*type)) : std::nullopt;
            });
    Bind<GbnSettings::Line>(module, "GbnLine", "What a line of a GBN file is called other than in the file.")
        .def_readwrite("number", &GbnSettings::Line::number)
        .def_readwrite("name", &GbnSettings::Line::name);
    gbn.def_readwrite("lines", &GbnSettings::lines)
        .def_readwrite("channels", &GbnSettings::channels)
        .def_readwrite("changes", &GbnSettings::changes)
        .def_readwrite("line_names", &GbnSettings::lineNames)
        .def_readwrite("fiducial", &GbnSettings::fiducial);

    Bind<ExportSettings>(module, "ExportSettings", "What an export writes, and how.")
        .def_readwrite("lines", &ExportSettings::lines)
        .def_readwrite("channels", &ExportSettings::channels)
        .def_readwrite("label_as_channel", &ExportSettings::labelAsChannel)
        .def_readwrite("point_id", &ExportSettings::pointId)
        .def_readwrite("units", &ExportSettings::units)
        .def_readwrite("unit_row", &ExportSettings::unitRow)
        .def_readwrite("write_oversized", &ExportSettings::writeOversized)
        .def_readwrite("full_digits", &ExportSettings::fullDigits);
}

}  // namespace norva::python
