#include "exchange/cell_text.h"

#include "platform/numbers.h"
#include "store/value_rules.h"

namespace norva {

bool StoreValue::IsMissing() const {
    switch (dataType) {
        case DataType::kFloat:
            return IsNoData(single);
        case DataType::kDouble:
            return IsNoData(number);
        case DataType::kInt:
        case DataType::kLong:
            return IsNoDataLong(integer);
        case DataType::kShort:
            return IsNoDataShort(integer);
        default:
            return false;
    }
}

ExportChannel ExportChannel::Of(CNorvaFileUtil& store, int position) {
    ExportChannel channel;
    channel.position = position;
    channel.index = store.GetFileChanIndex(position);
    channel.displayFormat = store.GetChannelDisplayFormat(channel.index);
    channel.templateFormat = store.GetChannelTemplateFormat(channel.index);
    channel.decimals = store.GetChannelNumDecPlaces(channel.index);
    return channel;
}

bool ExportChannel::HasTextForm() const {
    return displayFormat == DisplayFormat::kTime || displayFormat == DisplayFormat::kDate ||
           displayFormat == DisplayFormat::kGeographic;
}

void CCellText::AppendTextForm(std::string& out, ExportChannel const& channel, double value) {
    switch (channel.displayFormat) {
        case DisplayFormat::kDate:
            m_dateTime.GetStringDate(value, channel.templateFormat, m_text);
            break;
        case DisplayFormat::kTime:
            m_dateTime.GetStringTime(value, channel.templateFormat, channel.decimals, m_text);
            break;
        default:
            m_geographic.GetString(value, channel.templateFormat, channel.decimals, m_text);
            break;
    }
    out += m_text;
}

void CCellText::Append(std::string& out, ExportChannel const& channel, StoreValue const& value) {
    if (value.dataType == DataType::kText) {
        out += value.text;
    } else if (value.IsMissing()) {
        out += '*';
    } else if (!value.IsFloating()) {
        AppendInteger(out, value.integer);
    } else if (channel.HasTextForm()) {
        AppendTextForm(out, channel, value.Floating());
    } else if (channel.displayFormat == DisplayFormat::kExponent) {
        AppendExponent(out, value.Floating(), channel.decimals);
    } else {
        AppendFixed(out, value.Floating(), channel.displayFormat == DisplayFormat::kFixed ? channel.decimals : -1);
    }
}

}  // namespace norva
