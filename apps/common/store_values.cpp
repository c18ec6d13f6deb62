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

CValuePrinter::CValuePrinter(CNorvaFileUtil& store, ValueDigits digits) : m_store(store), m_texts(digits) {
    for (int n = 0; n < store.ChannelCount; ++n) {
        int const index = store.GetFileChanIndex(n);
        if (static_cast<std::size_t>(index) >= m_channels.size())
            m_channels.resize(static_cast<std::size_t>(index) + 1);
        Channel& channel = m_channels[static_cast<std::size_t>(index)];
        channel.title = store.GetChannelFullName(index);
        channel.dataType = store.GetChannelDataType(index);
        channel.arraySize = store.GetChannelArraySize(index);
        channel.format = ValueFormat::Of(store, index);
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
    m_cell.clear();
    if (m_value.Read(m_store, channel, profile, location)) {
        m_texts.Append(m_cell, shown.format, m_value);
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
    if (!m_value.Read(m_store, channel, profile, location) || m_value.IsMissing()) {
        out += "null";
        return;
    }
    switch (m_value.dataType) {
        case DataType::kFloat:
            AppendFinite(out, m_value.single);
            break;
        case DataType::kDouble:
            AppendFinite(out, m_value.number);
            break;
        case DataType::kText:
            out += nlohmann::json(m_value.text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
            break;
        default:
            AppendNumber(out, m_value.Whole());
    }
}

}  // namespace norva
