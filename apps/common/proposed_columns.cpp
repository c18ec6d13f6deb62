#include "common/proposed_columns.h"

#include <string>

namespace norva {

namespace {

using Form = ColumnReading::Form;
using Look = ColumnLook::Kind;

void MakeNumber(NorvaChannelStruct& channel, ColumnReading& reading, ColumnType type) {
    bool const wasNumber = channel.dataType != DataType::kText && (channel.displayFormat == DisplayFormat::kFixed ||
                                                                   channel.displayFormat == DisplayFormat::kExponent);
    bool const isWhole = type == ColumnType::Short || type == ColumnType::Long;
    if (!wasNumber) channel.decimalPlaces = NorvaChannelStruct().decimalPlaces;
    if (isWhole) channel.decimalPlaces = 0;
    if (!wasNumber || isWhole) channel.displayFormat = DisplayFormat::kFixed;
    channel.dataType = type == ColumnType::Short    ? DataType::kShort
                       : type == ColumnType::Long   ? DataType::kLong
                       : type == ColumnType::Double ? DataType::kDouble
                                                    : DataType::kFloat;
    reading.form = Form::Plain;
}

Form FormOf(ColumnType type, Look look) {
    if (look == Look::DateTime && type != ColumnType::Geographic) return Form::DateTime;
    bool const isNumber = look == Look::Number;
    if (type == ColumnType::Date) return isNumber ? Form::CompactDate : Form::Date;
    if (type == ColumnType::Time) return isNumber ? Form::CompactTime : Form::Time;
    return isNumber ? Form::Plain : Form::Degrees;
}

/// "dmy" of "DD/MM/YYYY".
std::string OrderOf(std::string const& format) {
    std::string order;
    for (char const part : format) {
        char const letter = part == 'D' ? 'd' : part == 'M' ? 'm' : part == 'Y' ? 'y' : '\0';
        if (letter != '\0' && order.find(letter) == std::string::npos) order += letter;
    }
    return order;
}

}  // namespace

Status SetProposedType(ColumnTextSettings& settings, int channel, ColumnType type) {
    auto const index = static_cast<std::size_t>(channel);
    NorvaChannelStruct& column = settings.columns.at(index);
    ColumnReading& reading = settings.columnReadings.at(index);
    if (TypeOf(column) == type) return {};
    if (type == ColumnType::Text) return Status::Failure("The width of its texts is not known");
    column.recordType = 0;
    column.arraySize = 1;
    if (type == ColumnType::Skipped) {
        column.dataType = DataType::kSkipped;
        return {};
    }
    bool const isDate = type == ColumnType::Date;
    if (!isDate && type != ColumnType::Time && type != ColumnType::Geographic) {
        MakeNumber(column, reading, type);
        return {};
    }
    reading.form = FormOf(type, settings.looks.at(static_cast<std::size_t>(reading.source)).kind);
    column.dataType = DataType::kDouble;
    column.displayFormat = isDate                     ? DisplayFormat::kDate
                           : type == ColumnType::Time ? DisplayFormat::kTime
                                                      : DisplayFormat::kGeographic;
    column.templateFormat = isDate ? DateTemplates().codes.back() : 0;
    column.decimalPlaces = type == ColumnType::Geographic ? 6 : 0;
    if (reading.form == Form::CompactDate) reading.order = "ymd";
    return {};
}

Status SetProposedTemplate(ColumnTextSettings& settings, int channel, int code) {
    auto const index = static_cast<std::size_t>(channel);
    NorvaChannelStruct& column = settings.columns.at(index);
    ColumnType const type = TypeOf(column);
    if (type != ColumnType::Date && type != ColumnType::Time) {
        return Status::Failure("a template goes with the types date and time");
    }
    column.templateFormat = code;
    ColumnReading& reading = settings.columnReadings.at(index);
    bool const hasOrder = reading.form == Form::Date || reading.form == Form::DateTime;
    if (type != ColumnType::Date || !hasOrder) return {};
    ValueTemplates const& templates = DateTemplates();
    int const place = templates.IndexOf(code);
    std::string const order = place < 0 ? "" : OrderOf(templates.names[static_cast<std::size_t>(place)]);
    // The time of the same cells goes over the days as they are read here.
    for (ColumnReading& other : settings.columnReadings) {
        if (other.source == reading.source) other.order = order;
    }
    return {};
}

}  // namespace norva
