#include "common/store_values.h"

#include <nlohmann/json.hpp>

#include <array>
#include <charconv>
#include <cmath>

namespace norva {

namespace {

constexpr std::size_t kWidth = 16;

template <typename Number>
void AppendNumber(std::string& out, Number value) {
    std::array<char, 64> digits{};
    auto const [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), value);
    if (error == std::errc{}) out.append(digits.data(), end);
}

void AppendFormatted(std::string& out, double value, int displayFormat, int decimals) {
    std::array<char, 400> digits{};
    auto const format =
        displayFormat == DisplayFormat::kExponent ? std::chars_format::scientific : std::chars_format::fixed;
    auto const [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), value, format,
                                            decimals < 0 ? 6 : std::min(decimals, 40));
    if (error == std::errc{}) out.append(digits.data(), end);
}

/// JSON has no number for these.
void AppendFinite(std::string& out, double value) {
    if (!std::isfinite(value) || value == kNoDataDouble) {
        out += "null";
    } else {
        AppendNumber(out, value);
    }
}

void AppendFinite(std::string& out, float value) {
    if (!std::isfinite(value) || value == kNoDataFloat) {
        out += "null";
    } else {
        AppendNumber(out, value);
    }
}

void AppendAligned(std::string& out, std::string const& text) {
    out += "  ";
    if (text.size() < kWidth) out.append(kWidth - text.size(), ' ');
    out += text;
}

}  // namespace

CValuePrinter::CValuePrinter(CNorvaFileUtil& store) : m_store(store) {
    for (int n = 0; n < store.ChannelCount; ++n) {
        int const index = store.GetFileChanIndex(n);
        if (static_cast<std::size_t>(index) >= m_channels.size())
            m_channels.resize(static_cast<std::size_t>(index) + 1);
        Channel& channel = m_channels[static_cast<std::size_t>(index)];
        channel.title = store.GetChannelFullName(index);
        channel.dataType = store.GetChannelDataType(index);
        channel.arraySize = store.GetChannelArraySize(index);
        channel.displayFormat = store.GetChannelDisplayFormat(index);
        channel.decimals = store.GetChannelNumDecPlaces(index);
        channel.templateFormat = store.GetChannelTemplateFormat(index);
        channel.isArray = channel.dataType != DataType::kText && store.GetChannelRecordType(index) == 1;
    }
}

void CValuePrinter::AppendTitle(std::string& out, int channel) const {
    AppendAligned(out, m_channels[static_cast<std::size_t>(channel)].title);
}

void CValuePrinter::AppendCell(std::string& out, int channel, int profile, long location) {
    AppendAligned(out, CellText(channel, profile, location));
}

std::string const& CValuePrinter::CellText(int channel, int profile, long location) {
    Channel const& shown = m_channels[static_cast<std::size_t>(channel)];
    float single = 0;
    double number = 0;
    int integer = 0;
    long longInteger = 0;
    int dataType = shown.dataType;
    m_cell.clear();
    if (m_store.GetData(channel, profile, location, single, number, integer, longInteger, m_text, dataType) != 0) {
        if (dataType == DataType::kFloat) number = single == kNoDataFloat ? kNoDataDouble : single;
        if (dataType == DataType::kText) {
            m_cell = m_text;
        } else if (dataType == DataType::kShort   ? integer == kNoDataShort
                   : dataType > DataType::kDouble ? integer == kNoDataLong
                                                  : number == kNoDataDouble) {
            m_cell = "*";
        } else if (dataType > DataType::kDouble) {
            AppendNumber(m_cell, integer);
        } else if (shown.displayFormat == DisplayFormat::kDate) {
            m_dateTime.GetStringDate(number, shown.templateFormat, m_cell);
        } else if (shown.displayFormat == DisplayFormat::kTime) {
            m_dateTime.GetStringTime(number, shown.templateFormat, shown.decimals, m_cell);
        } else if (shown.displayFormat == DisplayFormat::kGeographic) {
            m_geographic.GetString(number, shown.templateFormat, shown.decimals, m_cell);
        } else {
            AppendFormatted(m_cell, number, shown.displayFormat, shown.decimals);
        }
        if (shown.isArray && shown.arraySize > 1) m_cell += " ...";
    }
    return m_cell;
}

void CValuePrinter::AppendElements(std::string& out, int channel, int profile, long location) {
    Channel const& shown = m_channels[static_cast<std::size_t>(channel)];
    m_store.GetArrayData(channel, profile, location, m_elements);
    out += '[';
    for (std::size_t i = 0; i < m_elements.size(); ++i) {
        if (i > 0) out += ", ";
        double const element = m_elements[i];
        if (shown.dataType == DataType::kDouble) {
            AppendFinite(out, element);
        } else if (shown.dataType == DataType::kFloat) {
            AppendFinite(out, static_cast<float>(element));
        } else if (element == (shown.dataType == DataType::kShort ? kNoDataShort : kNoDataLong)) {
            out += "null";
        } else {
            AppendNumber(out, static_cast<long>(element));
        }
    }
    out += ']';
}

void CValuePrinter::AppendJson(std::string& out, int channel, int profile, long location) {
    if (m_channels[static_cast<std::size_t>(channel)].isArray) {
        AppendElements(out, channel, profile, location);
        return;
    }
    float single = 0;
    double number = 0;
    int integer = 0;
    long longInteger = 0;
    int dataType = 0;
    if (m_store.GetData(channel, profile, location, single, number, integer, longInteger, m_text, dataType) == 0) {
        out += "null";
        return;
    }
    switch (dataType) {
        case DataType::kFloat:
            AppendFinite(out, single);
            break;
        case DataType::kDouble:
            AppendFinite(out, number);
            break;
        case DataType::kText:
            out += nlohmann::json(m_text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
            break;
        default:
            if (integer == (dataType == DataType::kShort ? static_cast<int>(kNoDataShort) : kNoDataLong)) {
                out += "null";
            } else {
                AppendNumber(out, integer);
            }
    }
}

}  // namespace norva
